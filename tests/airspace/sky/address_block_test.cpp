// SPDX-License-Identifier: MIT
#include "airspace/sky/address_block.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace quorvel::airspace;

namespace {

std::string stateOf(std::uint32_t address) {
    auto const* block = addressBlockOf(address);
    return block ? std::string(block->state) : "";
}

} // namespace

TEST(AddressBlock, EveryBorderOfEveryBlockIsItsOwn) {
    std::size_t blocks = 0;
    for (auto const& block : AddressBlocks()) {
        SCOPED_TRACE(std::string(block.state));
        ++blocks;
        EXPECT_EQ(addressBlockOf(block.first), &block);
        EXPECT_EQ(addressBlockOf(block.last()), &block);
        EXPECT_NE(addressBlockOf(block.first - 1), &block);
        EXPECT_NE(addressBlockOf(block.last() + 1), &block);
        EXPECT_EQ(block.first % (1U << block.freeBits), 0U);
        EXPECT_TRUE(std::set<int>({10, 12, 15, 18, 20}).count(block.freeBits));
    }
    EXPECT_EQ(blocks, 189U);
}

TEST(AddressBlock, EveryStateHasOneBlockAndACodeOfItsOwn) {
    std::set<std::string_view> codes;
    for (auto const& block : AddressBlocks()) {
        if (block.code.empty()) continue;
        EXPECT_EQ(block.code.size(), 2U);
        EXPECT_TRUE(codes.insert(block.code).second) << block.code;
    }
}

TEST(AddressBlock, AddressesAreOfTheStateThatAssignsThem) {
    EXPECT_EQ(stateOf(0x004000), "Zimbabwe");
    EXPECT_EQ(stateOf(0x155C3B), "Russian Federation");
    EXPECT_EQ(stateOf(0x3C6444), "Germany");
    EXPECT_EQ(stateOf(0x400159), "United Kingdom");
    EXPECT_EQ(stateOf(0x440000), "Austria");
    EXPECT_EQ(stateOf(0x43FFFF), "United Kingdom");
    EXPECT_EQ(stateOf(0x4C01E4), "Serbia");
    EXPECT_EQ(stateOf(0x4CA123), "Ireland");
    EXPECT_EQ(stateOf(0x71BE34), "Republic of Korea");
    EXPECT_EQ(stateOf(0x780A5C), "China");
    EXPECT_EQ(stateOf(0xA00001), "United States");
    EXPECT_EQ(stateOf(0xC3FFFF), "Canada");
    EXPECT_EQ(stateOf(0xE94FFF), "Bolivia");
}

TEST(AddressBlock, AddressesBetweenBlocksAreOfNoState) {
    for (auto const address : {0x000000U, 0x003FFFU, 0x004400U, 0x200000U, 0x4CB000U, 0xB00000U, 0xE95000U, 0xFFFFFFU})
        EXPECT_EQ(addressBlockOf(address), nullptr) << std::hex << address;
}

TEST(AddressBlock, TheUnitedStatesKeepWhatFollowsTheLastRegistrationForTheirForces) {
    EXPECT_FALSE(isMilitaryAddress(0xADF7C7));
    EXPECT_TRUE(isMilitaryAddress(0xADF7C8));
    EXPECT_TRUE(isMilitaryAddress(0xAFFFFF));
    EXPECT_FALSE(isMilitaryAddress(0xB00000));
}
