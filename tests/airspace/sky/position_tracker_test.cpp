// SPDX-License-Identifier: MIT
#include "airspace/sky/position_tracker.h"

#include "reference/cpr_encoder.h"

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using quorvel::modes::reference::encoded;
using Verdict = PositionTracker::Verdict;

namespace {

constexpr Place kMunich{48.35, 11.79};
constexpr Place kZurich{47.46, 8.55}; // 140 NM away
constexpr TimeMs kNow = 1'000'000;

PositionReport airborne(Place const& place, bool isOdd, TimeMs time) {
    auto const sent = encoded(place.latitude, place.longitude, isOdd ? 1 : 0);
    PositionReport report;
    report.position = {sent.latitude, sent.longitude, isOdd, false};
    report.time = time;
    report.groundSpeedKt = 450.0;
    return report;
}

// Zones on the surface have a quarter of the size: 19 bits of the same zones, without the first two.
PositionReport onSurface(Place const& place, bool isOdd, TimeMs time) {
    auto const sent = encoded(4 * place.latitude, 0, isOdd ? 1 : 0);
    auto const zones = longitudeZones(place.latitude) - (isOdd ? 1 : 0);
    auto const width = 90.0 / zones;
    auto const offset = place.longitude - width * std::floor(place.longitude / width);
    PositionReport report;
    report.position = {sent.latitude, static_cast<std::uint32_t>(offset / width * 131072.0), isOdd, true};
    report.time = time;
    report.groundSpeedKt = 10.0;
    return report;
}

// A pair a second apart.
Verdict takePair(PositionTracker& tracker, Place const& place, TimeMs time, PositionLimits const& limits = {}) {
    tracker.take(airborne(place, false, time - 1000), limits);
    return tracker.take(airborne(place, true, time), limits);
}

void expectAt(PositionTracker const& tracker, Place const& place) {
    ASSERT_TRUE(tracker.place());
    EXPECT_LT(distanceNm(*tracker.place(), place), 0.01)
        << tracker.place()->latitude << " " << tracker.place()->longitude;
}

} // namespace

TEST(PositionTracker, APairInTheAirGivesThePlace) {
    PositionTracker tracker;
    EXPECT_EQ(tracker.take(airborne(kMunich, false, kNow), {}), Verdict::Incomplete);
    EXPECT_FALSE(tracker.place());
    EXPECT_EQ(tracker.take(airborne(kMunich, true, kNow + 10'000), {}), Verdict::Given);
    expectAt(tracker, kMunich);
    EXPECT_EQ(tracker.time(), kNow + 10'000);
}

TEST(PositionTracker, HalvesThatAreTooOldMakeNoPair) {
    PositionTracker tracker;
    tracker.take(airborne(kMunich, false, kNow), {});
    EXPECT_EQ(tracker.take(airborne(kMunich, true, kNow + 10'001), {}), Verdict::Incomplete);
    EXPECT_EQ(tracker.take(airborne(kMunich, false, kNow + 10'002), {}), Verdict::Given);
}

TEST(PositionTracker, HalvesOfDifferentSourcesMakeNoPair) {
    PositionTracker tracker;
    tracker.take(airborne(kMunich, false, kNow), {});
    auto other = airborne(kMunich, true, kNow + 500);
    other.source = Source::TisB;
    EXPECT_EQ(tracker.take(other, {}), Verdict::Incomplete);
}

TEST(PositionTracker, AFastAircraftMakesPairsWithinThreeMilesOnly) {
    PositionTracker tracker;
    auto even = airborne(kMunich, false, kNow);
    auto odd = airborne(kMunich, true, kNow + 8'000);
    odd.groundSpeedKt = 1'400.0; // 3.1 NM in 8 s
    tracker.take(even, {});
    EXPECT_EQ(tracker.take(odd, {}), Verdict::Incomplete);
}

TEST(PositionTracker, AfterTheFirstPlaceEachMessageGivesOne) {
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow);
    for (unsigned step = 1; step <= 20; ++step) { // 30 s apart: too far for pairs
        Place const place{kMunich.latitude + step * 450.0 / 120 / 60, kMunich.longitude};
        EXPECT_EQ(tracker.take(airborne(place, false, kNow + step * 30'000U), {}), Verdict::Given);
        expectAt(tracker, place);
    }
}

TEST(PositionTracker, ALastPlaceThatIsTooOldNeedsAnotherPair) {
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow);
    EXPECT_EQ(tracker.take(airborne(kZurich, false, kNow + 3'600'000), {}), Verdict::Incomplete);
    EXPECT_EQ(tracker.take(airborne(kZurich, true, kNow + 3'600'500), {}), Verdict::Given);
    expectAt(tracker, kZurich);
}

TEST(PositionTracker, ARepairedMessageGivesNoPlace) {
    PositionTracker tracker;
    auto even = airborne(kMunich, false, kNow);
    auto odd = airborne(kMunich, true, kNow + 500);
    odd.isRepaired = true;
    tracker.take(even, {});
    EXPECT_EQ(tracker.take(odd, {}), Verdict::Repaired);
    EXPECT_EQ(tracker.take(airborne(kMunich, false, kNow + 600), {}), Verdict::Incomplete) << "it makes no pair";
    takePair(tracker, kMunich, kNow + 2'000);
    odd.time = kNow + 3'000;
    EXPECT_EQ(tracker.take(odd, {}), Verdict::Repaired);
    EXPECT_EQ(tracker.time(), kNow + 2'000);
}

TEST(PositionTracker, AJumpThatNothingFliesIsRefused) {
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow);
    EXPECT_NE(takePair(tracker, kZurich, kNow + 5'000), Verdict::Given);
    expectAt(tracker, kMunich);
    EXPECT_GT(tracker.refused(), 0U);
}

TEST(PositionTracker, TheReachIsThatOfTheReportedSpeed) {
    Place const near{kMunich.latitude + 1.5 / 60, kMunich.longitude}; // 1.5 NM in 4 s: 1,350 kt
    for (double const speed : {450.0, 1'400.0}) {
        PositionTracker tracker;
        takePair(tracker, kMunich, kNow);
        auto report = airborne(near, false, kNow + 4'000);
        report.groundSpeedKt = speed;
        report.radiusMetres = 7.5;
        EXPECT_EQ(tracker.take(report, {}), speed > 1'000 ? Verdict::Given : Verdict::TooFast);
    }
}

TEST(PositionTracker, ALargeContainmentRadiusAllowsAJump) {
    Place const near{kMunich.latitude + 1.5 / 60, kMunich.longitude};
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow);
    auto report = airborne(near, false, kNow + 4'000);
    report.radiusMetres = 3'704.0;
    EXPECT_EQ(tracker.take(report, {}), Verdict::Given);
}

TEST(PositionTracker, AWrongFirstPlaceIsLeftAfterThreePairs) {
    PositionTracker tracker;
    takePair(tracker, kZurich, kNow);
    auto time = kNow + 20'000;
    std::size_t refused = 0;
    for (bool isOdd = false; refused < 10; isOdd = !isOdd, ++refused, time += 500) {
        if (tracker.take(airborne(kMunich, isOdd, time), {}) == Verdict::Believed) break;
    }
    EXPECT_LE(refused, 4U);
    expectAt(tracker, kMunich);
    EXPECT_EQ(tracker.take(airborne(kMunich, true, time + 500), {}), Verdict::Given);
}

TEST(PositionTracker, AZoneTooFarIsLeftAfterThreePairsToo) {
    // the neighbouring zone of the same numbers: each message alone looks right
    auto const report = airborne(kMunich, false, kNow);
    auto const wrong = localPosition(report.position, {kMunich.latitude + 6.0, kMunich.longitude}).value();
    PositionTracker tracker;
    takePair(tracker, wrong, kNow);
    std::size_t refused = 0;
    auto time = kNow + 20'000;
    for (bool isOdd = false; refused < 10; isOdd = !isOdd, ++refused, time += 500) {
        if (tracker.take(airborne(kMunich, isOdd, time), {}) == Verdict::Believed) break;
    }
    EXPECT_LE(refused, 4U);
    expectAt(tracker, kMunich);
}

TEST(PositionTracker, PlacesThatAreNoFlightEitherAreNotBelieved) {
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow);
    for (unsigned i = 0; i < 20; ++i) {
        Place const elsewhere{-40.0 + 4 * i, 100.0};
        EXPECT_NE(takePair(tracker, elsewhere, kNow + 3'000U * (i + 1)), Verdict::Believed);
    }
    expectAt(tracker, kMunich);
}

TEST(PositionTracker, NothingIsGivenWhilePairsContradictTheLastPlace) {
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow);
    takePair(tracker, kZurich, kNow + 5'000);
    EXPECT_EQ(tracker.take(airborne(kMunich, false, kNow + 30'000), {}), Verdict::Incomplete);
    EXPECT_EQ(tracker.take(airborne(kMunich, true, kNow + 30'500), {}), Verdict::Given) << "a pair agrees again";
    EXPECT_EQ(tracker.take(airborne(kMunich, true, kNow + 60'500), {}), Verdict::Given);
}

TEST(PositionTracker, APlaceOutOfRangeIsNeverGiven) {
    PositionLimits limits;
    limits.receiver = kMunich;
    limits.rangeNm = 100.0;
    PositionTracker tracker;
    for (unsigned i = 0; i < 10; ++i) {
        EXPECT_EQ(takePair(tracker, kZurich, kNow + 2'000U * i, limits), Verdict::OutOfRange);
    }
    EXPECT_FALSE(tracker.place());
}

TEST(PositionTracker, NoPairThatIsOutOfRangeIsEverBelieved) {
    PositionLimits limits;
    limits.receiver = kMunich;
    limits.rangeNm = 100.0;
    PositionTracker tracker;
    ASSERT_EQ(takePair(tracker, kMunich, kNow, limits), Verdict::Given);
    Place const forged{kMunich.latitude - 18.0, kMunich.longitude - 52.0};
    for (unsigned i = 1; i <= 300; ++i) {
        EXPECT_NE(takePair(tracker, forged, kNow + 2'000U * i, limits), Verdict::Believed) << i;
        ASSERT_TRUE(tracker.place());
        ASSERT_LT(distanceNm(*tracker.place(), kMunich), 100.0) << i;
    }
}

TEST(PositionTracker, TimesThatMeanNothingAreNotHeldAgainstAPlace) {
    PositionLimits limits;
    limits.checksSpeed = false;
    PositionTracker tracker;
    takePair(tracker, kMunich, kNow, limits);
    Place const near{kMunich.latitude + 0.5, kMunich.longitude};
    EXPECT_EQ(tracker.take(airborne(near, false, kNow + 10), limits), Verdict::Ambiguous) << "no pair of one place";
    EXPECT_EQ(takePair(tracker, near, kNow + 1'020, limits), Verdict::Given);
}

TEST(PositionTracker, ThePlaceOnTheSurfaceIsOnTheSideOfTheReceiver) {
    for (Place const& airport : {Place{48.35, 11.79}, Place{-33.94, 151.18}, Place{33.64, -84.42}}) {
        PositionTracker tracker;
        PositionLimits limits;
        limits.receiver = Place{airport.latitude + 0.3, airport.longitude - 0.3};
        tracker.take(onSurface(airport, false, kNow), limits);
        EXPECT_EQ(tracker.take(onSurface(airport, true, kNow + 40'000), limits), Verdict::Given) << "50 s when slow";
        expectAt(tracker, airport);
    }
}

TEST(PositionTracker, ThePlaceOnTheSurfaceNeedsASide) {
    PositionTracker tracker;
    tracker.take(onSurface(kMunich, false, kNow), {});
    EXPECT_EQ(tracker.take(onSurface(kMunich, true, kNow + 1'000), {}), Verdict::Incomplete);
}

TEST(PositionTracker, AfterLandingTheSideIsThatOfTheLastPlace) {
    PositionTracker tracker;
    PositionLimits limits;
    limits.receiver = Place{20.0, -60.0}; // not asked
    limits.rangeNm = 20'000;
    takePair(tracker, kMunich, kNow, limits);
    EXPECT_EQ(tracker.take(onSurface(kMunich, false, kNow + 20'000), limits), Verdict::Given);
    expectAt(tracker, kMunich);
}
