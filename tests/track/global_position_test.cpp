// SPDX-License-Identifier: MIT
#include "track/global_position.h"

#include <modes/cpr.h>

#include "reference/cpr_encoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace quorvel::modes {
namespace {

using detail::CPRFrame;

constexpr unsigned kHalf = 65536; // half a zone
constexpr unsigned kLast = 131071;

// Difference of two longitudes the short way around.
double apart(double a, double b) { return std::abs(std::remainder(a - b, 360.0)); }

// Encodes a place as an aircraft does, decodes the pair, and compares: the place within half a unit, or
// nothing where the two frames use different numbers of zones. Returns whether there was a position.
bool roundTrip(double latitude, double longitude, bool evenIsNewer) {
    auto const even = reference::encoded(latitude, longitude, 0);
    auto const odd = reference::encoded(latitude, longitude, 1);
    auto const position = globalPosition({even.latitude, even.longitude, evenIsNewer ? 2000U : 1000U},
        {odd.latitude, odd.longitude, evenIsNewer ? 1500U : 1800U});
    auto const where = ::testing::PrintToString(latitude) + " " + ::testing::PrintToString(longitude);
    EXPECT_EQ(position.has_value(), even.zones == odd.zones) << where;
    if (!position || even.zones != odd.zones) return false;
    auto const& newer = evenIsNewer ? even : odd;
    EXPECT_NEAR(position->latitude, latitude, newer.latitudeStep / 2 + 1e-9) << where;
    EXPECT_LE(apart(position->longitude, longitude), newer.longitudeStep / 2 + 1e-9) << where;
    EXPECT_GE(position->longitude, -180.0) << where;
    EXPECT_LE(position->longitude, 180.0) << where;
    EXPECT_EQ(position->time, evenIsNewer ? 2000U : 1800U) << where;
    return true;
}

TEST(GlobalPosition, IsFoundAllOverTheGlobe) {
    int found = 0;
    int all = 0;
    for (double latitude = -90.0; latitude <= 90.0; latitude += 0.731) {
        for (double longitude = -180.0; longitude <= 180.0; longitude += 1.37) {
            for (bool const evenIsNewer : {false, true}) {
                found += roundTrip(latitude, longitude, evenIsNewer) ? 1 : 0;
                ++all;
            }
        }
    }
    EXPECT_GT(found, all * 99 / 100);
}

TEST(GlobalPosition, IsFoundAtRandomPlaces) {
    unsigned const seed = 20261;
    std::mt19937 random{seed};
    std::uniform_real_distribution<double> latitudes{-90.0, 90.0};
    std::uniform_real_distribution<double> longitudes{-180.0, 180.0};
    for (int i = 0; i < 200'000 && !::testing::Test::HasFailure(); ++i) {
        roundTrip(latitudes(random), longitudes(random), i % 2 == 0);
    }
}

TEST(GlobalPosition, IsFoundAtThePolesTheEquatorAndTheDateLine) {
    for (double const latitude : {-90.0, -89.99999, -87.1, -60.0, -6.0, 0.0, 6.0, 60.0, 87.1, 89.99999, 90.0}) {
        for (double const longitude : {-180.0, -179.99999, -90.0, 0.0, 90.0, 179.99999, 180.0}) {
            EXPECT_TRUE(roundTrip(latitude, longitude, false)) << latitude << " " << longitude;
            EXPECT_TRUE(roundTrip(latitude, longitude, true)) << latitude << " " << longitude;
        }
    }
}

// The coordinates differ by exactly half a zone: the upper of the two nearest numbers counts.
TEST(GlobalPosition, LiesInTheUpperZoneWhenTwoAreEquallyNear) {
    CPRFrame const even{16, 0, 2000};
    CPRFrame const odd{1108, 0, 1000}; // 59 * 16 - 60 * 1108 is -65536
    auto const inLatitude = globalPosition(even, odd);
    ASSERT_TRUE(inLatitude);
    EXPECT_DOUBLE_EQ(inLatitude->latitude, 6.0 * 16 / 131072);

    auto const inLongitude =
        globalPosition(CPRFrame{0, 46, 2000}, CPRFrame{0, 1156, 1000}); // 58 * 46 - 59 * 1156 is the same
    ASSERT_TRUE(inLongitude);
    EXPECT_DOUBLE_EQ(inLongitude->longitude, 360.0 / 59 * 46 / 131072);
}

// Just around each transition the frames agree or not, as the sender's numbers of zones do.
TEST(GlobalPosition, IsFoundUnlessTheFramesLieOnEitherSideOfATransition) {
    int refused = 0;
    for (double latitude = 0.5; latitude < 87.5; latitude += 0.0005) {
        auto const even = reference::encoded(latitude, 33.0, 0);
        auto const odd = reference::encoded(latitude, 33.0, 1);
        if (even.zones != odd.zones) ++refused;
        roundTrip(latitude, 33.0, true);
        roundTrip(-latitude, 33.0, false);
    }
    for (int zones = 58; zones >= 2; --zones) { // a place whose two received latitudes enclose a transition
        double low = 0.0;
        double high = 87.0;
        for (int i = 0; i < 60; ++i) {
            double const middle = (low + high) / 2;
            (reference::longitudeZonesByFormula(middle) > zones ? low : high) = middle;
        }
        for (double offset = -4e-5; offset <= 4e-5; offset += 1e-6) {
            double const latitude = low + offset;
            if (!roundTrip(latitude, -71.0, true)) ++refused;
            roundTrip(-latitude, 179.5, false);
        }
    }
    EXPECT_GT(refused, 57);
}

TEST(GlobalPosition, TakesTheOddFrameOfTwoEquallyOld) {
    CPRFrame const even{0, 0, 5000};
    CPRFrame const odd{1, 1, 5000};
    auto const position = globalPosition(even, odd);
    ASSERT_TRUE(position);
    EXPECT_EQ(position->latitude, 6.101694915254237 * 7.62939453125e-06);
    EXPECT_EQ(position->longitude, 360.0 / 58 * 7.62939453125e-06);
    EXPECT_EQ(position->time, 5000U);
}

TEST(GlobalPosition, FollowsTheOrderOfTheArithmetic) {
    CPRFrame const even{93000, 51372, 2000};
    CPRFrame const odd{74158, 50194, 1000};
    // zone = floor((59 * 93000 - 60 * 74158) / 131072 + 0.5) = floor(7.915 + 0.5) = 8
    double const latitude = 6.0 * (8 + 93000 * 7.62939453125e-06);
    // NL(52.257) = 36; floor((51372 * 35 - 50194 * 36) / 131072 + 0.5) = floor(-0.068 + 0.5) = 0
    double const longitude = 360.0 / 36 * (0 + 51372 * 7.62939453125e-06);
    auto const position = globalPosition(even, odd);
    ASSERT_TRUE(position);
    EXPECT_EQ(position->latitude, latitude);
    EXPECT_EQ(position->longitude, longitude);
}

TEST(GlobalPosition, WrapsLongitudesAbove180) {
    // At the equator 59 even zones; coordinate x and zone m give 360 / 59 * (m + x / 131072).
    auto const even = reference::encoded(0.0, -170.0, 0);
    auto const odd = reference::encoded(0.0, -170.0, 1);
    auto const position = globalPosition({even.latitude, even.longitude, 2}, {odd.latitude, odd.longitude, 1});
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->longitude, -170.0, 1e-4); // 190 before the wrap
}

TEST(GlobalPosition, LeavesALongitudeOfExactly180) {
    // Beyond 87 degrees one zone: half of it is 180 degrees.
    auto const even = reference::encoded(88.5, 180.0, 0);
    auto const odd = reference::encoded(88.5, 180.0, 1);
    ASSERT_EQ(even.longitude, kHalf);
    ASSERT_EQ(odd.longitude, kHalf);
    for (unsigned long long const evenTime : {1U, 3U}) {
        auto const position = globalPosition({even.latitude, kHalf, evenTime}, {odd.latitude, kHalf, 2});
        ASSERT_TRUE(position);
        EXPECT_EQ(position->longitude, 180.0);
    }
    auto const beyond = globalPosition({even.latitude, kHalf + 1, 3}, {odd.latitude, kHalf, 2});
    ASSERT_TRUE(beyond);
    EXPECT_EQ(beyond->longitude, 360.0 * ((kHalf + 1) * 7.62939453125e-06) - 360.0);
}

// Frames of different places can give any latitude: what lies beyond the poles is deliberately not refused.
TEST(GlobalPosition, MayLieBeyondThePoles) {
    // zone = floor(-60 * 65536 / 131072 + 0.5) = -30, modulo 60 is 30: 180 degrees; odd: 29.5 zones of 6.1017
    auto const position = globalPosition({0, 0, 2000}, {kHalf, 0, 1000});
    ASSERT_TRUE(position);
    EXPECT_EQ(position->latitude, 180.0);
}

TEST(GlobalPosition, IsDefinedForEveryCoordinate) {
    for (unsigned const evenLatitude : {0U, 1U, kHalf, kLast}) {
        for (unsigned const oddLatitude : {0U, 1U, kHalf, kLast}) {
            for (unsigned const longitude : {0U, 1U, kHalf, kLast}) {
                auto const position = globalPosition({evenLatitude, longitude, 1}, {oddLatitude, kLast - longitude, 2});
                if (position) {
                    EXPECT_TRUE(std::isfinite(position->latitude) && std::isfinite(position->longitude));
                }
            }
        }
    }
}

} // namespace
} // namespace quorvel::modes
