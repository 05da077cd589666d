// SPDX-License-Identifier: MIT
#include "airspace/sky/derived_items.h"

#include "airspace/readings/standard_atmosphere.h"
#include "airspace/sky/frame_receiver.h"
#include "airspace/sky/recordings.h"

#include <gtest/gtest.h>

#include <map>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;

namespace {

constexpr TrackTime kNow = 100'000;

template <class Item, class Value> void report(Item& item, Value value, TrackTime time = kNow) {
    item.offer(static_cast<decltype(item.value)>(value), Source::CommB, time);
}

TrackItems cruising() {
    TrackItems items;
    report(items.altitudeFt, 35'000);
    return items;
}

} // namespace

TEST(DerivedItems, NothingComesOfNothing) {
    auto const derived = deriveItems({}, kNow, Place{48.0, 11.0}, 4.0);
    EXPECT_FALSE(derived.mach || derived.trueAirspeedKt || derived.temperatureCelsius || derived.windSpeedKt);
    EXPECT_FALSE(derived.totalTemperatureCelsius || derived.gnssHeightFt || derived.distanceNm);
}

TEST(DerivedItems, TheMachNumberIsThatOfIndicatedAirspeedAndAltitude) {
    EXPECT_NEAR(machOfIndicatedAirspeed(250, 10'000), 0.452, 0.002);
    EXPECT_NEAR(machOfIndicatedAirspeed(280, 35'000), 0.822, 0.003);
    EXPECT_NEAR(machOfIndicatedAirspeed(kSoundAtSeaLevelKt / 2, 0), 0.5, 1e-6);
    auto items = cruising();
    report(items.indicatedAirspeedKt, 280);
    auto const derived = deriveItems(items, kNow);
    ASSERT_TRUE(derived.mach);
    EXPECT_NEAR(derived.mach->value, 0.822, 0.003);
}

TEST(DerivedItems, TheTrueAirspeedIsThatOfMachNumberAndTemperature) {
    auto items = cruising();
    report(items.mach, 0.78);
    EXPECT_NEAR(deriveItems(items, kNow).trueAirspeedKt->value, 449.6, 0.5) << "standard atmosphere";
    report(items.temperatureCelsius, -44.0);
    EXPECT_NEAR(deriveItems(items, kNow).trueAirspeedKt->value, 459.9, 0.5) << "10 degrees warmer";
    EXPECT_FALSE(deriveItems(items, kNow).mach) << "it was reported";
}

TEST(DerivedItems, TheTemperatureIsThatOfBothSpeeds) {
    auto items = cruising();
    report(items.mach, 0.78);
    report(items.trueAirspeedKt, 450);
    auto const derived = deriveItems(items, kNow);
    EXPECT_NEAR(derived.temperatureCelsius->value, -54.0, 0.7);
    EXPECT_NEAR(derived.totalTemperatureCelsius->value, -27.4, 0.8);
    report(items.mach, 0.3, kNow + 1);
    EXPECT_FALSE(deriveItems(items, kNow + 1).temperatureCelsius) << "too slow";
    EXPECT_NEAR(temperatureOfSpeeds(soundKt(20.0), 1.0), 20.0, 1e-9);
}

TEST(DerivedItems, TheWindIsWhatIsLeftBetweenAirAndGround) {
    auto const head = windOf(450, 90, 400, 90);
    EXPECT_NEAR(head.speedKt, 50, 1e-9);
    EXPECT_NEAR(head.directionDegrees, 90, 1e-9);
    auto const cross = windOf(400, 0, 412.31, 14.036);
    EXPECT_NEAR(cross.speedKt, 100, 0.1);
    EXPECT_NEAR(cross.directionDegrees, 270, 0.1);
}

TEST(DerivedItems, TheWindNeedsATrueHeading) {
    auto items = cruising();
    report(items.trueAirspeedKt, 450);
    report(items.magneticHeadingDegrees, 86);
    report(items.groundSpeedKt, 400);
    report(items.trackDegrees, 90);
    EXPECT_FALSE(deriveItems(items, kNow).windSpeedKt);
    auto const derived = deriveItems(items, kNow, std::nullopt, 4.0);
    EXPECT_NEAR(derived.windSpeedKt->value, 50, 0.01);
    EXPECT_NEAR(derived.windDirectionDegrees->value, 90, 0.01);
    report(items.windSpeedKt, 48);
    EXPECT_FALSE(deriveItems(items, kNow, std::nullopt, 4.0).windSpeedKt) << "it was reported";
}

TEST(DerivedItems, OldReportsGiveNothingAndTheOldestOneIsTheAge) {
    auto items = cruising();
    report(items.mach, 0.78, kNow - 7'000);
    EXPECT_EQ(deriveItems(items, kNow).trueAirspeedKt->updated, kNow - 7'000);
    EXPECT_FALSE(deriveItems(items, kNow + 3'001).trueAirspeedKt);
}

TEST(DerivedItems, TheGnssHeightIsTheAltitudeAndTheDifference) {
    auto items = cruising();
    report(items.gnssMinusBarometricFt, -525);
    EXPECT_EQ(deriveItems(items, kNow).gnssHeightFt->value, 34'475);
    report(items.gnssHeightFt, 34'500);
    EXPECT_FALSE(deriveItems(items, kNow).gnssHeightFt) << "it was reported";
}

TEST(DerivedItems, DistanceAndBearingAreFromTheReceiver) {
    TrackItems items;
    report(items.position, PackedPlace::of({49.0, 11.0}));
    auto const derived = deriveItems(items, kNow, Place{48.0, 11.0});
    EXPECT_NEAR(derived.distanceNm->value, 60.04, 0.01);
    EXPECT_NEAR(derived.bearingDegrees->value, 0.0, 1e-4);
    EXPECT_NEAR(bearingDegrees({0, 179.5}, {0, -179.5}), 90.0, 1e-9) << "across 180 degrees";
    EXPECT_NEAR(bearingDegrees({50, 10}, {49, 10}), 180.0, 1e-9);
    EXPECT_NEAR(bearingDegrees({0, 10}, {0, 9}), 270.0, 1e-9);
}

TEST(DerivedItems, RecordedSpeedsAgreeWithThoseDerived) {
    if (recordings(TREVALLO_RECORDINGS).empty()) GTEST_SKIP() << "there are no recordings in " << TREVALLO_RECORDINGS;
    FrameReceiver receiver;
    std::map<std::uint32_t, StandardTrack> tracks;
    std::size_t machs = 0;
    std::size_t temperatures = 0;
    std::size_t wrong = 0;
    for (auto const& frame : framesOf(TREVALLO_RECORDINGS "/receiver_session_mlat.avr")) {
        auto const reply = receiver.receive(frame.view(), frame.time);
        if (reply.confidence < quorvel::modes::ModeSMessage::MEDIUM) continue;
        auto& track = tracks.try_emplace(reply.address, frame.time).first->second;
        auto const outcome = track.take(reply, frame.time);
        if (!outcome.choice || outcome.choice->best != Register::HeadingAndSpeed) continue;
        auto const& items = track.items();
        auto const now = track.trackTimeOf(frame.time);
        if (!items.mach.isFresh(now) || !items.altitudeFt.isFresh(now)) continue;
        ++machs;
        auto const mach = machOfIndicatedAirspeed(items.indicatedAirspeedKt.value, items.altitudeFt.value);
        wrong += std::abs(mach - static_cast<double>(items.mach.value)) > 0.02 ? 1U : 0U;
        auto const temperature = deriveItems(items, now).temperatureCelsius;
        if (!temperature) continue;
        ++temperatures;
        EXPECT_NEAR(temperature->value, standardTemperatureCelsius(items.altitudeFt.value), 25.0);
    }
    EXPECT_GT(machs, 300U);
    EXPECT_GT(temperatures, 50U);
    EXPECT_LT(wrong, machs / 50);
}
