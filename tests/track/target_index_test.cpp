// SPDX-License-Identifier: MIT
#include "track/target_index.h"

#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <map>

using namespace quorvel::modes;

namespace {

void expectSame(TargetIndex const& index, std::map<unsigned, std::shared_ptr<ADSBTarget>> const& plain) {
    ASSERT_EQ(index.size(), plain.size());
    std::size_t place = 0;
    for (auto const& [address, target] : plain) {
        ASSERT_NE(index.find(address), nullptr);
        ASSERT_EQ(*index.find(address), target);
        ASSERT_EQ(index.placeOf(address), place);
        ASSERT_EQ(&index.at(place), target.get());
        ASSERT_EQ(index.sharedAt(place), target);
        ++place;
    }
}

} // namespace

TEST(TargetIndex, HoldsTargetsInTheOrderOfTheirAddressesAsAMapDoes) {
    test::Noise noise(7);
    TargetIndex index;
    std::map<unsigned, std::shared_ptr<ADSBTarget>> plain;
    for (int step = 0; step < 5000; ++step) {
        auto const address = static_cast<unsigned>(noise.below(400) * 0xA3C5);
        auto const known = plain.find(address);
        if (known == plain.end()) {
            auto target = std::make_shared<ADSBTarget>(address);
            index.insert(target);
            plain.emplace(address, target);
        } else if (noise.below(2) == 0) {
            ASSERT_EQ(index.remove(address), known->second);
            plain.erase(known);
        }
        if (step % 101 == 0) expectSame(index, plain);
    }
    expectSame(index, plain);
}

TEST(TargetIndex, FindsNoTargetThatIsNotThere) {
    TargetIndex index;
    EXPECT_EQ(index.find(1), nullptr);
    EXPECT_EQ(index.remove(1), nullptr);
    EXPECT_EQ(index.placeOf(1), 0U);
    index.insert(std::make_shared<ADSBTarget>(2));
    EXPECT_EQ(index.find(1), nullptr);
    EXPECT_EQ(index.placeOf(1), 0U);
    EXPECT_EQ(index.placeOf(3), 1U);
}

TEST(TargetIndex, IsTheOnlyOwnerOfItsTargets) {
    TargetIndex index;
    auto const target = std::make_shared<ADSBTarget>(2);
    index.insert(target);
    EXPECT_EQ(target.use_count(), 2);
    index.remove(2);
    EXPECT_EQ(target.use_count(), 1);
}
