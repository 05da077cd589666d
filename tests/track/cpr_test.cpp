// SPDX-License-Identifier: MIT
#include <modes/cpr.h>

#include "reference/cpr_encoder.h"
#include "track/longitude_zones.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quorvel::modes {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

TEST(CPRMod, IsTheRemainderMadeNonNegative) {
    EXPECT_EQ(cprModFunction(7, 60), 7);
    EXPECT_EQ(cprModFunction(-7, 60), 53);
    EXPECT_EQ(cprModFunction(60, 60), 0);
    EXPECT_EQ(cprModFunction(-60, 60), 0);
    EXPECT_EQ(cprModFunction(121, 60), 1);
    EXPECT_EQ(cprModFunction(-121, 60), 59);
    EXPECT_EQ(cprModFunction(-5, 1), 0);
}

TEST(CPRMod, AddsANegativeDivisorToo) { EXPECT_EQ(cprModFunction(-7, -5), -7); }

TEST(CPRMod, IsDefinedForEveryPair) {
    EXPECT_EQ(cprModFunction(5, 0), 0);
    EXPECT_EQ(cprModFunction(kMin, -1), 0);
    EXPECT_EQ(cprModFunction(kMin, kMax), kMax - 1);
    EXPECT_EQ(cprModFunction(kMax, kMin), kMax);
}

TEST(CPRLongitudeZones, HasTheTransitionsOfTheStandard) {
    struct {
        std::size_t index;
        double latitude;
    } const pinned[] = {{0, 10.47047130}, {1, 14.82817437}, {2, 18.18626357}, {3, 21.02939493}, {55, 85.75541621},
        {56, 86.53536998}, {57, 87.0}};
    EXPECT_EQ(kTransitionLatitudes.size(), 58U);
    for (auto const& entry : pinned) {
        EXPECT_EQ(kTransitionLatitudes[entry.index], entry.latitude) << entry.index;
    }
}

// The inverse of the formula: the latitude at which the number of zones falls below `zones`.
double transitionByFormula(int zones) {
    double const pi = std::acos(-1.0);
    return 180.0 / pi * std::acos(std::sqrt((1.0 - std::cos(pi / 30.0)) / (1.0 - std::cos(2.0 * pi / zones))));
}

TEST(CPRLongitudeZones, HasTheFormulaRoundedToEightDecimals) {
    for (int zones = 59; zones >= 3; --zones) {
        auto const transition = kTransitionLatitudes[static_cast<std::size_t>(59 - zones)];
        EXPECT_NEAR(transition, transitionByFormula(zones), 0.5000001e-8) << zones;
        EXPECT_NEAR(transition * 1e8, std::round(transition * 1e8), 1e-5) << zones;
    }
}

TEST(CPRLongitudeZones, BelongToTheLowerNumberOnATransition) {
    int zones = 59;
    for (double const transition : kTransitionLatitudes) {
        for (double const sign : {1.0, -1.0}) {
            EXPECT_EQ(cprNLFunction(sign * std::nextafter(transition, 0.0)), zones) << transition;
            EXPECT_EQ(cprNLFunction(sign * transition), zones - 1) << transition;
            EXPECT_EQ(cprNLFunction(sign * std::nextafter(transition, 90.0)), zones - 1) << transition;
        }
        --zones;
    }
    EXPECT_EQ(zones, 1);
}

TEST(CPRLongitudeZones, FollowTheFormulaBetweenTheTransitions) {
    for (double latitude = -89.9995; latitude < 90.0; latitude += 0.001) {
        ASSERT_EQ(cprNLFunction(latitude), reference::longitudeZonesByFormula(latitude)) << latitude;
    }
}

TEST(CPRLongitudeZones, HaveKnownValues) {
    struct {
        double latitude;
        int zones;
    } const rows[] = {{0.0, 59}, {-0.0, 59}, {10.4704713, 58}, {45.0, 42}, {-45.0, 42}, {86.9, 2}, {87.0, 1}, {90.0, 1},
        {-90.0, 1}, {180.0, 1}, {kInfinity, 1}, {-kInfinity, 1}, {kNaN, 1}, {-kNaN, 1}};
    for (auto const& row : rows) EXPECT_EQ(cprNLFunction(row.latitude), row.zones) << row.latitude;
}

TEST(CPRZoneCount, IsOneLessForOddFramesAndAtLeastOne) {
    EXPECT_EQ(cprNFunction(0.0, 0), 59);
    EXPECT_EQ(cprNFunction(0.0, 1), 58);
    EXPECT_EQ(cprNFunction(86.9, 0), 2);
    EXPECT_EQ(cprNFunction(86.9, 1), 1);
    EXPECT_EQ(cprNFunction(88.0, 0), 1);
    EXPECT_EQ(cprNFunction(88.0, 1), 1);
    EXPECT_EQ(cprNFunction(kNaN, 1), 1);
}

TEST(CPRZoneCount, IsDefinedForEveryFrameKind) {
    EXPECT_EQ(cprNFunction(0.0, kMax), 1);
    EXPECT_EQ(cprNFunction(0.0, -1), 60);
    EXPECT_EQ(cprNFunction(0.0, kMin), kMax);
}

TEST(CPRZoneWidth, DividesTheGlobe) {
    EXPECT_EQ(cprDlonFunction(0.0, 0), 360.0 / 59);
    EXPECT_EQ(cprDlonFunction(0.0, 1), 360.0 / 58);
    EXPECT_EQ(cprDlonFunction(45.0, 0), 360.0 / 42);
    EXPECT_EQ(cprDlonFunction(88.0, 0), 360.0);
    EXPECT_EQ(cprDlonFunction(88.0, 1), 360.0);
}

} // namespace
} // namespace quorvel::modes
