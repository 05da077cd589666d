// SPDX-License-Identifier: MIT
#include "core/clock.h"

#include "support/steered_clock.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

TEST(Clock, IsTheSystemClockUnlessSteered) {
    auto const before = std::chrono::system_clock::now().time_since_epoch();
    auto const now = clock::nowMilliseconds();
    auto const after = std::chrono::system_clock::now().time_since_epoch();
    EXPECT_GE(now, static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(before).count()));
    EXPECT_LE(now, static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(after).count()));
}

TEST(Clock, TruncatesToWholeSecondsAndMilliseconds) {
    test::SteeredClock clock(1'714'566'896'789);
    EXPECT_EQ(clock::nowSeconds(), 1'714'566'896);
    EXPECT_EQ(clock::nowMilliseconds(), 1'714'566'896'789U);
    clock.advanceSeconds(4);
    EXPECT_EQ(clock::nowSeconds(), 1'714'566'900);
}

TEST(Clock, GoesBackToTheSourceBefore) {
    test::SteeredClock outer(1000);
    auto const source = clock::setSource(nullptr);
    EXPECT_NE(source, nullptr);
    EXPECT_GT(clock::nowSeconds(), 1'000'000);
    EXPECT_EQ(clock::setSource(source), nullptr);
    EXPECT_EQ(clock::nowSeconds(), 1);
}
