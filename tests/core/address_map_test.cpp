// SPDX-License-Identifier: MIT
#include "core/address_map.h"

#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

using quorvel::modes::AddressMap;
using quorvel::modes::test::Noise;

namespace {

template <class Value>
void expectSame(AddressMap<Value> const& map, std::map<unsigned, Value> const& plain, unsigned addresses) {
    ASSERT_EQ(map.size(), plain.size());
    for (unsigned address = 0; address < addresses; ++address) {
        auto const* found = map.find(address);
        auto const expected = plain.find(address);
        ASSERT_EQ(found != nullptr, expected != plain.end()) << address;
        ASSERT_TRUE(!found || *found == expected->second) << address;
    }
}

} // namespace

TEST(AddressMap, FindsNothingWhenEmpty) {
    AddressMap<int> map;
    EXPECT_EQ(map.find(0), nullptr);
    EXPECT_EQ(map.find(0xFFFFFFFF), nullptr);
    EXPECT_FALSE(map.erase(0));
    EXPECT_EQ(map.size(), 0U);
    map.eraseIf([](int) { return true; });
    EXPECT_EQ(map.find(0), nullptr);
}

TEST(AddressMap, HoldsEveryAddressFromTheFirstToTheLast) {
    AddressMap<unsigned> map;
    for (unsigned const address : {0U, 1U, 0xFFFFFFU, 0x1000000U, 0xFFFFFFFFU}) {
        map[address] = ~address;
        ASSERT_NE(map.find(address), nullptr);
        EXPECT_EQ(*map.find(address), ~address);
    }
    EXPECT_EQ(map.size(), 5U);
    EXPECT_EQ(map.find(2), nullptr);
}

TEST(AddressMap, BehavesAsAPlainMapUnderAnyChanges) {
    constexpr unsigned kAddresses = 1000;
    Noise noise(42);
    AddressMap<std::uint64_t> map;
    std::map<unsigned, std::uint64_t> plain;
    for (unsigned step = 0; step < 60'000; ++step) {
        auto const address = static_cast<unsigned>(noise.below(kAddresses));
        switch (noise.below(step % 20'000 < 10'000 ? 3 : 8)) { // grows, then shrinks
        case 0:
        case 1: map[address] = plain[address] = step; break;
        default: ASSERT_EQ(map.erase(address), plain.erase(address) == 1) << step;
        }
        if (step % 997 == 0) expectSame(map, plain, kAddresses);
    }
    expectSame(map, plain, kAddresses);
}

TEST(AddressMap, ErasesByValueAndKeepsTheRest) {
    AddressMap<std::uint64_t> map;
    std::map<unsigned, std::uint64_t> plain;
    for (unsigned address = 0; address < 5000; ++address) map[address] = plain[address] = address % 7;
    auto const isStale = [](std::uint64_t value) { return value != 3; };
    map.eraseIf(isStale);
    std::erase_if(plain, [&](auto const& entry) { return isStale(entry.second); });
    expectSame(map, plain, 5000);
}

TEST(AddressMap, HasRoomForAsManyNewOnesAsRemainAfterErasing) {
    AddressMap<int> map;
    for (unsigned address = 0; address < 3000; ++address) map[address] = static_cast<int>(address % 3);
    map.eraseIf([](int value) { return value == 0; });
    auto const remaining = map.size();
    for (unsigned address = 0; address + 1 < remaining; ++address) {
        ASSERT_FALSE(map.isFull()) << address;
        map[100'000 + address] = 1;
    }
}

TEST(AddressMap, MovesValuesThatCannotBeCopied) {
    AddressMap<std::unique_ptr<unsigned>> map;
    for (unsigned address = 0; address < 1000; ++address) map[address] = std::make_unique<unsigned>(address);
    for (unsigned address = 0; address < 1000; address += 2) EXPECT_TRUE(map.erase(address));
    for (unsigned address = 1; address < 1000; address += 2) {
        ASSERT_NE(map.find(address), nullptr);
        EXPECT_EQ(**map.find(address), address);
    }
}

TEST(AddressMap, CopiesAreIndependent) {
    AddressMap<int> map;
    map[1] = 10;
    auto copy = map;
    copy[1] = 20;
    copy[2] = 30;
    EXPECT_EQ(*map.find(1), 10);
    EXPECT_EQ(map.find(2), nullptr);
    EXPECT_EQ(*copy.find(1), 20);
}

TEST(AddressMap, ListsItsAddressesInAscendingOrder) {
    AddressMap<int> map;
    EXPECT_TRUE(map.addresses().empty());
    for (unsigned const address : {5U, 0xFFFFFFFFU, 0U, 77U, 6U}) map[address] = 1;
    map.erase(77);
    EXPECT_EQ(map.addresses(), (std::vector<std::uint32_t>{0, 5, 6, 0xFFFFFFFF}));
}

TEST(AddressMap, IsEmptyAfterClearing) {
    AddressMap<int> map;
    map[1] = 10;
    map.clear();
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map.find(1), nullptr);
    map[2] = 20;
    EXPECT_EQ(*map.find(2), 20);
}
