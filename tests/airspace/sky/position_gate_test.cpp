// SPDX-License-Identifier: MIT
#include "airspace/sky/position_gate.h"

#include <gtest/gtest.h>

#include <limits>

using namespace quorvel::airspace;
using Verdict = PositionGate::Verdict;

namespace {

constexpr Place kMunich{48.35, 11.79};
constexpr Place kZurich{47.46, 8.55}; // 140 NM away
constexpr TimeMs kNow = 1'000'000;

} // namespace

TEST(PositionGate, ShowsAFlight) {
    PositionGate gate;
    EXPECT_FALSE(gate.shown());
    for (unsigned second = 0; second < 100; ++second) { // 480 kt
        Place const place{48.0 + second * 480.0 / 3600 / 60, 11.0};
        EXPECT_EQ(gate.judge(place, kNow + second * 1000U, {}), Verdict::Shown);
        EXPECT_EQ(gate.shown()->place.latitude, place.latitude);
        EXPECT_EQ(gate.shown()->time, kNow + second * 1000U);
    }
    EXPECT_EQ(gate.refused(), 0U);
}

TEST(PositionGate, RefusesAJumpThatNothingFlies) {
    PositionGate gate;
    gate.judge(kMunich, kNow, {});
    EXPECT_EQ(gate.judge(kZurich, kNow + 5'000, {}), Verdict::TooFast);
    EXPECT_EQ(gate.shown()->place.latitude, kMunich.latitude);
    EXPECT_EQ(gate.refused(), 1U);
    EXPECT_EQ(gate.judge(kMunich, kNow + 6'000, {}), Verdict::Shown);
    EXPECT_EQ(gate.judge(kZurich, kNow + 6'000 + 360'000, {}), Verdict::Shown) << "140 NM in six minutes";
}

TEST(PositionGate, BelievesANewPlaceAfterThreeRefusalsInARow) {
    PositionGate gate;
    gate.judge(kMunich, kNow, {});
    for (TimeMs second = 1; second <= 3; ++second)
        EXPECT_EQ(gate.judge(kZurich, kNow + second * 1000, {}), Verdict::TooFast);
    EXPECT_EQ(gate.judge(kZurich, kNow + 4000, {}), Verdict::Believed);
    EXPECT_EQ(gate.shown()->place.latitude, kZurich.latitude);
    EXPECT_EQ(gate.refused(), 3U);
    EXPECT_EQ(gate.judge(kZurich, kNow + 5000, {}), Verdict::Shown);
}

TEST(PositionGate, DoesNotBelievePlacesThatAreNoFlightEither) {
    PositionGate gate;
    gate.judge(kMunich, kNow, {});
    for (int i = 0; i < 20; ++i) {
        Place const elsewhere{-40.0 + 4 * i, 100.0};
        EXPECT_EQ(gate.judge(elsewhere, kNow + 1000U * static_cast<unsigned>(i), {}), Verdict::TooFast);
    }
    EXPECT_EQ(gate.shown()->place.latitude, kMunich.latitude);
}

TEST(PositionGate, StartsCountingRefusalsAnewWhenTheOldPlaceIsConfirmed) {
    PositionGate gate;
    gate.judge(kMunich, kNow, {});
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(gate.judge(kZurich, kNow, {}), Verdict::TooFast);
        EXPECT_EQ(gate.judge(kZurich, kNow, {}), Verdict::TooFast);
        EXPECT_EQ(gate.judge(kMunich, kNow, {}), Verdict::Shown);
    }
}

TEST(PositionGate, RefusesWhatTheReceiverCannotHear) {
    PositionLimits limits;
    limits.receiver = kMunich;
    limits.rangeNm = 100;
    PositionGate gate;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(gate.judge(kZurich, kNow, limits), Verdict::OutOfRange);
    EXPECT_FALSE(gate.shown());
    EXPECT_EQ(gate.judge(kZurich, kNow, limits), Verdict::Believed);
    EXPECT_EQ(gate.judge(kZurich, kNow, limits), Verdict::Shown);
    limits.rangeNm = 200;
    PositionGate wide;
    EXPECT_EQ(wide.judge(kZurich, kNow, limits), Verdict::Shown);
}

TEST(PositionGate, GoesOnWithAFlightThatItBelievesBeyondTheRange) {
    PositionLimits limits;
    limits.receiver = kMunich;
    limits.rangeNm = 100;
    PositionGate gate;
    auto const judged = [&](Place const& place, unsigned second) {
        return gate.judge(place, kNow + second * 1000U, limits);
    };
    auto const outbound = [](unsigned second) { return Place{kZurich.latitude, kZurich.longitude - second * 0.003}; };
    for (unsigned second = 0; second < 3; ++second) EXPECT_EQ(judged(outbound(second), second), Verdict::OutOfRange);
    EXPECT_EQ(judged(outbound(3), 3), Verdict::Believed);
    for (unsigned second = 4; second < 50; ++second) EXPECT_EQ(judged(outbound(second), second), Verdict::Shown);
    EXPECT_EQ(gate.shown()->place.longitude, outbound(49).longitude);
    EXPECT_EQ(gate.refused(), 3U);

    Place const otherSide{kMunich.latitude, kMunich.longitude + 5};
    EXPECT_EQ(judged(otherSide, 50), Verdict::OutOfRange) << "no flight gets there so fast";
    EXPECT_EQ(judged(kMunich, 51), Verdict::TooFast);
    EXPECT_EQ(judged(outbound(52), 52), Verdict::Shown);
}

TEST(PositionGate, RefusesAFlightAnewThatLeavesTheRangeAgain) {
    PositionLimits limits;
    limits.receiver = kMunich;
    limits.rangeNm = 60;
    constexpr Place kInside{kMunich.latitude - 0.995, kMunich.longitude};
    constexpr Place kBeyond{kMunich.latitude - 1.005, kMunich.longitude};
    PositionGate gate;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(gate.judge(kInside, kNow, limits), Verdict::Shown);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(gate.judge(kBeyond, kNow, limits), Verdict::OutOfRange);
        EXPECT_EQ(gate.judge(kBeyond, kNow, limits), Verdict::Believed);
        EXPECT_EQ(gate.judge(kBeyond, kNow, limits), Verdict::Shown);
    }
}

TEST(PositionGate, NeverShowsWhatIsNotOnTheGlobe) {
    PositionGate gate;
    constexpr auto kNaN = std::numeric_limits<double>::quiet_NaN();
    for (int i = 0; i < 10; ++i) {
        for (Place const place : {Place{90.1, 0}, Place{-91, 0}, Place{0, 180.5}, Place{kNaN, 0}, Place{0, kNaN}})
            EXPECT_EQ(gate.judge(place, kNow, {}), Verdict::Impossible);
    }
    EXPECT_FALSE(gate.shown());
    EXPECT_EQ(gate.refused(), 50U);
    EXPECT_EQ(gate.judge({90, 180}, kNow, {}), Verdict::Shown);
}

TEST(PositionGate, LeavesSpeedAloneWhereTimesSayNothing) {
    PositionLimits limits;
    limits.checksSpeed = false;
    PositionGate gate;
    EXPECT_EQ(gate.judge(kMunich, 1, limits), Verdict::Shown);
    EXPECT_EQ(gate.judge(kZurich, 1, limits), Verdict::Shown);
}

TEST(Distance, IsThatOfTheGreatCircle) {
    EXPECT_NEAR(distanceNm({0, 0}, {1, 0}), 60.04, 0.01);
    EXPECT_NEAR(distanceNm({0, 179.5}, {0, -179.5}), 60.04, 0.01) << "across the date line";
    EXPECT_NEAR(distanceNm({90, 0}, {90, 120}), 0, 1e-6) << "at a pole";
    EXPECT_NEAR(distanceNm({0, 0}, {0, 180}), 180 * 60.04, 1) << "half around";
    EXPECT_NEAR(distanceNm(kMunich, kZurich), 140.5, 0.5);
}
