// SPDX-License-Identifier: MIT
#include <airspace/compact_position.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using namespace quorvel::airspace;

namespace {

// The slow way, by the definition. RTCA DO-260B, A.1.7.2.
int zonesByDefinition(double latitude) {
    auto const radians = [](double degrees) { return degrees * std::numbers::pi / 180.0; };
    if (latitude == 0.0) return 59;
    if (std::abs(latitude) == 87.0) return 2;
    if (std::abs(latitude) > 87.0) return 1;
    auto const cosine = std::cos(radians(latitude));
    auto const ratio = 1 - (1 - std::cos(std::numbers::pi / 30)) / (cosine * cosine);
    return static_cast<int>(std::floor(2 * std::numbers::pi / std::acos(ratio)));
}

double modulo(double value, double period) { return value - period * std::floor(value / period); }

double binsIn(double value, double zone, double bins) { return std::floor(bins * modulo(value, zone) / zone + 0.5); }

std::uint32_t sent(double bins) { return static_cast<std::uint32_t>(bins) & 0x1FFFFU; }

// What an aircraft at a place sends. RTCA DO-260B, A.1.7.3.
CompactPosition encoded(Place const& place, bool isOdd, bool isOnSurface) {
    double const bins = isOnSurface ? 524288.0 : 131072.0; // surface positions leave out the two highest bits
    auto const zone = 360.0 / (isOdd ? 59 : 60);
    auto const latitude = binsIn(place.latitude, zone, bins);
    auto const received = zone * (latitude / bins + std::floor(place.latitude / zone));
    auto const zones = std::max(longitudeZones(received) - (isOdd ? 1 : 0), 1);
    return {sent(latitude), sent(binsIn(place.longitude, 360.0 / zones, bins)), isOdd, isOnSurface};
}

double apart(double a, double b) { return std::abs(std::remainder(a - b, 360.0)); }

// A bin of an airborne position is 5.1 m wide in latitude, half of it the error; zones get wider towards the poles.
void expectNear(std::optional<Place> const& found, Place const& place) {
    ASSERT_TRUE(found) << place.latitude << " " << place.longitude;
    EXPECT_NEAR(found->latitude, place.latitude, 3e-5) << place.latitude << " " << place.longitude;
    auto const longitudeBin = 360.0 / std::max(longitudeZones(place.latitude) - 1, 1) / 131072;
    EXPECT_LE(apart(found->longitude, place.longitude), longitudeBin) << place.latitude << " " << place.longitude;
    EXPECT_GE(found->longitude, -180.0);
    EXPECT_LT(found->longitude, 180.0);
}

bool isNearABorder(double latitude) { return longitudeZones(latitude - 1e-3) != longitudeZones(latitude + 1e-3); }

struct RandomPlaces {
    std::mt19937 generator{20260101};

    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator); }

    Place next() {
        for (;;) {
            Place const place{between(-89.9, 89.9), between(-180.0, 180.0)};
            if (!isNearABorder(place.latitude)) return place;
        }
    }
};

} // namespace

TEST(LongitudeZones, FollowTheirDefinitionAtEveryLatitude) {
    for (int hundredths = -9000; hundredths <= 9000; ++hundredths) {
        auto const latitude = hundredths / 100.0;
        EXPECT_EQ(longitudeZones(latitude), zonesByDefinition(latitude)) << latitude;
    }
}

TEST(LongitudeZones, ChangeByOneAtEveryBorderAndAreEqualOnBothHemispheres) {
    int zones = 59;
    for (double latitude = 0.0; latitude < 90.0; latitude += 0.001) {
        auto const here = longitudeZones(latitude);
        EXPECT_LE(zones - here, 1) << latitude;
        EXPECT_EQ(longitudeZones(-latitude), here) << latitude;
        zones = here;
    }
    EXPECT_EQ(zones, 1);
}

TEST(LongitudeZones, AreTwoAtExactly87DegreesAndOneBeyond) {
    EXPECT_EQ(longitudeZones(std::nextafter(87.0, 0.0)), 2);
    EXPECT_EQ(longitudeZones(87.0), 2);
    EXPECT_EQ(longitudeZones(-87.0), 2);
    EXPECT_EQ(longitudeZones(std::nextafter(87.0, 90.0)), 1);
    EXPECT_EQ(longitudeZones(90.0), 1);
    EXPECT_EQ(longitudeZones(std::numeric_limits<double>::quiet_NaN()), 1);
    EXPECT_EQ(longitudeZones(std::numeric_limits<double>::infinity()), 1);
}

TEST(CompactPosition, APairInTheAirIsFoundAnywhereOnTheGlobe) {
    RandomPlaces places;
    for (int i = 0; i < 20'000; ++i) {
        auto const place = places.next();
        bool const isOdd = i % 2 == 0;
        expectNear(globalPosition(encoded(place, !isOdd, false), encoded(place, isOdd, false)), place);
    }
}

TEST(CompactPosition, APairOnTheSurfaceIsFoundFromAReferenceWithin45Degrees) {
    RandomPlaces places;
    for (int i = 0; i < 20'000; ++i) {
        auto const place = places.next();
        Place const reference{std::clamp(place.latitude + places.between(-44.0, 44.0), -90.0, 90.0),
            std::remainder(place.longitude + places.between(-44.0, 44.0), 360.0)};
        bool const isOdd = i % 2 == 0;
        expectNear(globalPosition(encoded(place, !isOdd, true), encoded(place, isOdd, true), reference), place);
    }
}

TEST(CompactPosition, OneMessageIsFoundFromAReferenceWithinHalfAZone) {
    RandomPlaces places;
    for (int i = 0; i < 20'000; ++i) {
        bool const isOnSurface = i % 2 == 0;
        auto const place = places.next();
        auto const zone = isOnSurface ? 1.5 : 6.0;
        Place const reference{std::clamp(place.latitude + places.between(-0.49, 0.49) * zone, -90.0, 90.0),
            std::remainder(place.longitude + places.between(-0.49, 0.49) * zone, 360.0)};
        expectNear(localPosition(encoded(place, i % 4 < 2, isOnSurface), reference), place);
    }
}

TEST(CompactPosition, TheNewerMessageGivesThePlace) {
    Place const before{48.0, 11.0};
    Place const now{48.01, 11.02};
    expectNear(globalPosition(encoded(before, false, false), encoded(now, true, false)), now);
    expectNear(globalPosition(encoded(before, true, false), encoded(now, false, false)), now);
}

TEST(CompactPosition, OnTheSurfaceTheNearestPlaceIsTakenAcross180Degrees) {
    Place const fiji{-17.75, 177.45};
    expectNear(globalPosition(encoded(fiji, false, true), encoded(fiji, true, true), Place{-13.8, -172.0}), fiji);
    Place const samoa{-13.83, -172.0};
    expectNear(globalPosition(encoded(samoa, false, true), encoded(samoa, true, true), Place{-17.75, 177.45}), samoa);
}

TEST(CompactPosition, OnTheSurfaceAPlaceNearTheEquatorIsFoundOnEitherSide) {
    Place const quito{-0.13, -78.36};
    expectNear(globalPosition(encoded(quito, false, true), encoded(quito, true, true), Place{4.7, -74.1}), quito);
    Place const bogota{4.7, -74.1};
    expectNear(globalPosition(encoded(bogota, false, true), encoded(bogota, true, true), Place{-12.0, -77.1}), bogota);
}

TEST(CompactPosition, NumbersOfZeroAreAPoleOrTheEquatorOnTheSurface) {
    CompactPosition const even{0, 0, false, true};
    CompactPosition const odd{0, 0, true, true};
    EXPECT_EQ(globalPosition(even, odd, Place{44.0, 0.0}), (Place{0.0, 0.0}));
    EXPECT_EQ(globalPosition(even, odd, Place{46.0, 0.0}), (Place{90.0, 0.0}));
    EXPECT_EQ(globalPosition(even, odd, Place{-46.0, 0.0}), (Place{-90.0, 0.0}));
}

TEST(CompactPosition, WhatIsNoPairGivesNoPlace) {
    Place const place{48.0, 11.0};
    auto const even = encoded(place, false, false);
    EXPECT_FALSE(globalPosition(even, even)) << "of one format";
    EXPECT_FALSE(globalPosition(even, encoded(place, true, true), place)) << "in the air and on the surface";
    EXPECT_FALSE(globalPosition(encoded(place, false, true), encoded(place, true, true))) << "no reference";
    EXPECT_FALSE(globalPosition(encoded(place, false, true), encoded(place, true, true), Place{91.0, 0.0}));
    auto const border = 10.47047130;
    EXPECT_FALSE(
        globalPosition(encoded({border - 0.01, 11.0}, false, false), encoded({border + 0.01, 11.0}, true, false)))
        << "latitudes in different longitude zones";
}

TEST(CompactPosition, NoPairAtAllGivesAPlaceOffTheGlobe) {
    RandomPlaces places;
    std::uniform_int_distribution<std::uint32_t> any(0, 0x1FFFF);
    std::size_t found = 0;
    std::size_t beyond = 0;
    for (int i = 0; i < 50'000; ++i) {
        bool const isOnSurface = i % 2 == 0;
        auto const one = [&](bool isOdd) {
            return CompactPosition{any(places.generator), any(places.generator), isOdd, isOnSurface};
        };
        auto const place = globalPosition(one(false), one(true), places.next());
        place ? ++found : ++beyond;
        if (place) {
            EXPECT_LE(std::abs(place->latitude), 90.0);
            EXPECT_GE(place->longitude, -180.0);
            EXPECT_LT(place->longitude, 180.0);
        }
    }
    EXPECT_GT(found, 0U);
    EXPECT_GT(beyond, 0U);
}

TEST(CompactPosition, AReferenceOffTheGlobeGivesNoPlace) {
    auto const position = encoded({48.0, 11.0}, false, false);
    EXPECT_FALSE(localPosition(position, {90.5, 0.0}));
    EXPECT_FALSE(localPosition(position, {0.0, 181.0}));
    EXPECT_FALSE(localPosition(position, {std::numeric_limits<double>::quiet_NaN(), 0.0}));
    EXPECT_FALSE(localPosition(position, {0.0, std::numeric_limits<double>::infinity()}));
    EXPECT_FALSE(localPosition({0x8000, 0, false, false}, {90.0, 0.0})) << "nearest place beyond the pole";
}

TEST(CompactPosition, PairsAreYoungerInTheAirAndWhileTaxiingFast) {
    EXPECT_EQ(pairWindowSeconds(false), 10.0);
    EXPECT_EQ(pairWindowSeconds(false, 20.0), 10.0);
    EXPECT_EQ(pairWindowSeconds(true), 25.0);
    EXPECT_EQ(pairWindowSeconds(true, 25.5), 25.0);
    EXPECT_EQ(pairWindowSeconds(true, 25.0), 50.0);
}
