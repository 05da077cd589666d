// SPDX-License-Identifier: MIT
#include "airspace/sky/standard_track.h"

#include "airspace/readings/payload.h"
#include "airspace/readings/register_writer.h"
#include "airspace/sky/frame_receiver.h"
#include "reference/cpr_encoder.h"
#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using namespace quorvel::modes::test;

namespace {

constexpr std::uint32_t kAddress = 0x4CA123;
constexpr TimeMs kNoon = 43'200'000;
constexpr Place kMunich{48.35, 11.79};

std::string nonTransponder(unsigned controlField, std::string const& me) {
    return longFrame(18, capability(controlField) | kAddress, me, 0);
}

std::string altitudeReply(int feet, unsigned status = 0) {
    return shortFrame(4, flightStatus(status) | altitudeCode(feet), kAddress);
}

std::string identityReply(unsigned squawk, unsigned status = 0) {
    return shortFrame(5, flightStatus(status) | identityCode(squawk), kAddress);
}

std::string commB(std::string const& mb, int feet = 38'000) {
    return longFrame(20, flightStatus(0) | altitudeCode(feet), mb, kAddress);
}

std::string position(Place const& place, bool isOdd, unsigned typeCode = 11, int feet = 38'000, bool flag = false) {
    auto const sent = quorvel::modes::reference::encoded(place.latitude, place.longitude, isOdd ? 1 : 0);
    auto const steps = static_cast<unsigned>((feet + 1000) / 25);
    return Payload::ofType(typeCode)
        .with(8, flag)
        .with(9, 20, (steps >> 4) << 5 | 1U << 4 | (steps & 0xF))
        .with(22, isOdd)
        .with(23, 39, sent.latitude)
        .with(40, 56, sent.longitude)
        .bytes();
}

// Over ground, to the east, climbing by barometer.
Payload velocity(unsigned kt, int feetPerMinute, bool isBarometric = true) {
    return Payload::ofType(19)
        .with(6, 8, 1)
        .with(15, 24, kt + 1)
        .with(26, 35, 1)
        .with(36, isBarometric)
        .with(37, feetPerMinute < 0)
        .with(38, 46, static_cast<unsigned>(std::abs(feetPerMinute) / 64) + 1);
}

Payload statusOfVersion(unsigned version, unsigned subtype = 0) {
    return Payload::ofType(31).with(6, 8, subtype).with(41, 43, version);
}

// One aircraft, as its frames come.
class Flight {
public:
    TrackOutcome take(std::string const& frame, TimeMs time) {
        auto const reply = _receiver.receive(frame, time);
        return _track.take(reply, time, {});
    }
    TrackOutcome squitter(std::string const& me, TimeMs time) {
        return take(quorvel::modes::test::squitter(kAddress, me), time);
    }

    TrackItems const& items() const { return _track.items(); }
    StandardTrack const& track() const { return _track; }
    TimeMs updated(TrackTime time) const { return _track.timeOf(time); }

private:
    FrameReceiver _receiver;
    StandardTrack _track{kNoon};
};

std::string textOf(std::array<char, 8> const& callsign) { return {callsign.data(), callsign.size()}; }

} // namespace

TEST(StandardTrack, ItemsHaveValueSourceAndTimes) {
    Flight flight;
    flight.squitter(identification("DLH1"), kNoon + 1'000);
    flight.squitter(identification("DLH1"), kNoon + 6'000);
    auto const& callsign = flight.items().callsign;
    EXPECT_EQ(textOf(callsign.value), "DLH1    ");
    EXPECT_EQ(callsign.source, Source::AdsB);
    EXPECT_EQ(flight.updated(callsign.updated), kNoon + 6'000);
    EXPECT_EQ(flight.updated(callsign.changed), kNoon + 1'000);
    EXPECT_FALSE(flight.items().squawk.isThere());
    EXPECT_EQ(flight.track().messages(), 2U);
    EXPECT_EQ(flight.track().heard(), kNoon + 6'000);
}

TEST(StandardTrack, AStrayReplyDoesNotPutAFlightOnTheGround) {
    Flight flight;
    flight.squitter(position(kMunich, false), kNoon);
    flight.take(identityReply(01234, 1), kNoon + 20'000);
    EXPECT_FALSE(flight.items().isOnGround.value);
    EXPECT_FALSE(flight.items().squawk.isThere());
    flight.take(identityReply(01234, 1), kNoon + 21'000);
    EXPECT_TRUE(flight.items().isOnGround.value) << "two agree, and squitters have stopped";
    EXPECT_EQ(flight.items().squawk.value, 01234);
    EXPECT_EQ(flight.items().isOnGround.source, Source::ModeS);
}

TEST(StandardTrack, RepliesDoNotContradictFreshSquitters) {
    Flight flight;
    flight.squitter(position(kMunich, false), kNoon);
    for (TimeMs step = 1; step < 10; ++step) flight.take(altitudeReply(5'000, 1), kNoon + 400 * step);
    EXPECT_FALSE(flight.items().isOnGround.value);
    EXPECT_EQ(flight.items().altitudeFt.value, 38'000);
    flight.take(altitudeReply(5'000, 1), kNoon + 5'001);
    EXPECT_EQ(flight.items().altitudeFt.value, 5'000) << "the squitter's altitude is older than 5 s";
}

TEST(StandardTrack, AStrayCallsignOfACommBReplyIsNotTaken) {
    Flight flight;
    flight.squitter(identification("DLH1"), kNoon);
    auto const other = '\x20' + identification("KLM1023").substr(1);
    auto const outcome = flight.take(commB(other), kNoon + 70'000);
    ASSERT_TRUE(outcome.choice && outcome.choice->best);
    EXPECT_EQ(textOf(flight.items().callsign.value), "DLH1    ");
}

TEST(StandardTrack, AnAircraftThatDoesNotSquitterIsKnownByItsReplies) {
    Flight flight;
    flight.take(altitudeReply(12'000), kNoon);
    flight.take(identityReply(07700), kNoon + 100);
    EXPECT_EQ(flight.items().altitudeFt.value, 12'000);
    EXPECT_EQ(flight.items().altitudeFt.source, Source::ModeS);
    EXPECT_EQ(flight.items().squawk.value, 07700);
    EXPECT_FALSE(flight.items().isOnGround.value);
    flight.take(identityReply(01000), kNoon + 5'000);
    EXPECT_EQ(flight.items().squawk.value, 07700) << "one reply of another code";
    flight.take(identityReply(01000), kNoon + 10'000);
    EXPECT_EQ(flight.items().squawk.value, 01000);
}

TEST(StandardTrack, PositionsComeWithTheirIntegrity) {
    Flight flight;
    flight.squitter(statusOfVersion(2).with(44).bytes(), kNoon);
    flight.squitter(position(kMunich, false, 11, 38'000, true), kNoon + 500);
    auto const outcome = flight.squitter(position(kMunich, true, 11, 38'000, true), kNoon + 1'000);
    EXPECT_EQ(outcome.position, PositionTracker::Verdict::Given);
    EXPECT_LT(distanceNm(flight.items().position.value.place(), kMunich), 0.01);
    EXPECT_EQ(flight.items().nic.value, 9) << "type code 11 with supplements A and B";
    EXPECT_FLOAT_EQ(flight.items().radiusMetres.value, 75.0F);
    EXPECT_EQ(flight.items().version.value, 2);
}

TEST(StandardTrack, AGroundStationsPictureGivesWayToTheAircraft) {
    Flight flight;
    flight.take(nonTransponder(2, position(kMunich, false)), kNoon);
    flight.take(nonTransponder(2, position(kMunich, true)), kNoon + 500);
    EXPECT_EQ(flight.items().position.source, Source::TisB);
    Place const own{48.36, 11.80};
    flight.squitter(position(own, false), kNoon + 1'000);
    flight.squitter(position(own, true), kNoon + 1'500);
    EXPECT_EQ(flight.items().position.source, Source::AdsB);
    auto const outcome = flight.take(nonTransponder(2, position(kMunich, false)), kNoon + 2'000);
    EXPECT_FALSE(outcome.position) << "not even looked at";
    EXPECT_EQ(flight.items().position.source, Source::AdsB);
}

TEST(StandardTrack, RebroadcastsAndOwnSquittersAreOfOneAircraft) {
    auto const keyOf = [](std::string const& frame) { return TrackKey::of(*headerOf(read(frame))); };
    auto const own = keyOf(squitter(kAddress, position(kMunich, false)));
    EXPECT_EQ(keyOf(nonTransponder(6, position(kMunich, false))), own);
    EXPECT_EQ(keyOf(nonTransponder(2, position(kMunich, false))), own);
    EXPECT_EQ(keyOf(altitudeReply(1'000)), own);
    EXPECT_EQ(own.address(), kAddress);
    EXPECT_FALSE(keyOf(nonTransponder(1, position(kMunich, false))) == own) << "an anonymous address";
    EXPECT_FALSE(keyOf(nonTransponder(5, position(kMunich, false))) == own) << "a ground station's own number";
}

TEST(StandardTrack, RatesAreKeptBySource) {
    Flight flight;
    flight.squitter(velocity(400, 1'280).bytes(), kNoon);
    flight.squitter(velocity(400, -640, false).bytes(), kNoon + 500);
    EXPECT_EQ(flight.items().barometricRateFtMin.value, 1'280);
    EXPECT_EQ(flight.items().geometricRateFtMin.value, -640);
    EXPECT_FLOAT_EQ(flight.items().groundSpeedKt.value, 400.0F);
    EXPECT_FLOAT_EQ(flight.items().trackDegrees.value, 90.0F);
}

TEST(StandardTrack, HeadingsAreOfTheNorthThatTheStatusNames) {
    auto const heading = Payload::ofType(19).with(6, 8, 3).with(14).with(15, 24, 256).with(26, 35, 301).bytes();
    Flight flight;
    flight.squitter(heading, kNoon);
    EXPECT_FALSE(flight.items().magneticHeadingDegrees.isThere()) << "the status may still come";
    EXPECT_EQ(flight.items().indicatedAirspeedKt.value, 300);
    flight.squitter(heading, kNoon + 10'000);
    EXPECT_FLOAT_EQ(flight.items().magneticHeadingDegrees.value, 90.0F) << "as in version 0";
    flight.squitter(statusOfVersion(2).bytes(), kNoon + 10'100);
    flight.squitter(heading, kNoon + 10'200);
    EXPECT_FLOAT_EQ(flight.items().trueHeadingDegrees.value, 90.0F);
}

TEST(StandardTrack, RegistersAreTakenWhenItIsSureWhichTheyAre) {
    Flight flight;
    flight.squitter(position(kMunich, false), kNoon);
    flight.squitter(velocity(440, 0).bytes(), kNoon + 100);
    auto const trackAndTurn = RegisterWriter()
                                  .value(1, 11, 5.0, 45.0 / 256)
                                  .value(12, 23, 90.0, 90.0 / 512)
                                  .value(24, 34, 440, 2)
                                  .value(35, 45, 0.25, 8.0 / 256)
                                  .value(46, 56, 420, 2)
                                  .bytes();
    auto const outcome = flight.take(commB(trackAndTurn), kNoon + 200);
    ASSERT_TRUE(outcome.choice);
    EXPECT_EQ(outcome.choice->best, Register::TrackAndTurn);
    EXPECT_FLOAT_EQ(flight.items().trueAirspeedKt.value, 420.0F);
    EXPECT_EQ(flight.items().trueAirspeedKt.source, Source::CommB);
    EXPECT_NEAR(flight.items().rollDegrees.value, 5.0, 0.1);
    EXPECT_NEAR(flight.items().trackRateDegreesPerSecond.value, 0.25, 0.01);
    EXPECT_EQ(flight.items().groundSpeedKt.source, Source::AdsB) << "the better source is fresh";
}

TEST(StandardTrack, AnUnsureRegisterGivesNothing) {
    Flight flight;
    flight.squitter(position(kMunich, false), kNoon);
    auto const outcome = flight.take(commB(std::string(7, '\0')), kNoon + 100);
    EXPECT_TRUE(outcome.choice->isUnsure);
    visitPackedItems(flight.items(), [](auto const& item) { EXPECT_NE(item.source, Source::CommB); });
}

TEST(StandardTrack, TheTargetStateTellsWhatIsSelected) {
    auto const state = Payload::ofType(29)
                           .with(6, 7, 1)
                           .with(10, 20, 1'126) // 36,000 ft
                           .with(21, 29, 267)   // 1,012.8 hPa
                           .with(30)
                           .with(31, 39, 128)
                           .with(40, 43, 9)
                           .with(44)
                           .with(45, 46, 3)
                           .with(47)
                           .with(48)
                           .with(54);
    Flight flight;
    flight.squitter(state.bytes(), kNoon);
    auto const& items = flight.items();
    EXPECT_EQ(items.controlPanelAltitudeFt.value, 36'000);
    EXPECT_FLOAT_EQ(items.pressureSettingHpa.value, 1012.8F);
    EXPECT_FLOAT_EQ(items.selectedHeadingDegrees.value, 90.0F);
    EXPECT_EQ(items.nacP.value, 9);
    EXPECT_EQ(items.sil.value.level, 3);
    EXPECT_EQ(items.sil.value.basis, SilBasis::Hour);
    EXPECT_TRUE(items.isNicBaroChecked.value);
    EXPECT_EQ(items.modes.value.get(PackedModes::Autopilot), true);
    EXPECT_EQ(items.modes.value.get(PackedModes::Lnav), true);
    EXPECT_EQ(items.modes.value.get(PackedModes::Approach), false);
    EXPECT_FALSE(items.flightManagementAltitudeFt.isThere());
}

TEST(StandardTrack, AMessageThatTheVersionDoesNotHaveIsNotRead) {
    Flight flight;
    flight.squitter(statusOfVersion(1).bytes(), kNoon);
    flight.squitter(Payload::ofType(29).with(6, 7, 1).with(10, 20, 1'126).bytes(), kNoon + 100);
    EXPECT_FALSE(flight.items().controlPanelAltitudeFt.isThere());
    flight.squitter(Payload::ofType(28).with(6, 8, 2).with(9).with(15).bytes(), kNoon + 200);
    EXPECT_FALSE(flight.items().advisory.isThere());
    flight.squitter(statusOfVersion(2).bytes(), kNoon + 300);
    flight.squitter(Payload::ofType(28).with(6, 8, 2).with(9).with(15).bytes(), kNoon + 400);
    ASSERT_TRUE(flight.items().advisory.isThere());
    EXPECT_TRUE(flight.items().advisory.value.advisory.isIssued());
}

TEST(StandardTrack, OnTheSurfaceSpeedAndTrackAreThoseOfThePosition) {
    Flight flight;
    auto const taxiing = Payload::ofType(6).with(6, 12, 39).with(13).with(14, 20, 32); // 15 to 16 kt, 90 degrees
    flight.squitter(taxiing.bytes(), kNoon);
    EXPECT_TRUE(flight.items().isOnGround.value);
    EXPECT_NEAR(flight.items().groundSpeedKt.value, 15.5, 0.01);
    EXPECT_FLOAT_EQ(flight.items().trackDegrees.value, 90.0F);
    flight.squitter(statusOfVersion(2, 1).with(53).bytes(), kNoon + 100);
    flight.squitter(taxiing.bytes(), kNoon + 200);
    EXPECT_FLOAT_EQ(flight.items().trueHeadingDegrees.value, 90.0F) << "the status says that it is a heading";
}

TEST(StandardTrack, EmergencyAlertAndIdentAreToldBySquitters) {
    Flight flight;
    flight.squitter(Payload::ofType(28).with(6, 8, 1).with(9, 11, 1).with(12, 24, identityCode(07700)).bytes(), kNoon);
    EXPECT_EQ(flight.items().emergency.value, EmergencyState::General);
    EXPECT_EQ(flight.items().squawk.value, 07700);
    flight.squitter(Payload::ofType(11).with(6, 7, 1).bytes(), kNoon + 100);
    EXPECT_TRUE(flight.items().alert.value);
    EXPECT_FALSE(flight.items().ident.value);
    flight.squitter(Payload::ofType(11).with(6, 7, 3).bytes(), kNoon + 200);
    EXPECT_TRUE(flight.items().ident.value);
}

TEST(StandardTrack, ATrackThatIsHeardForWeeksKeepsItsTimes) {
    Flight flight;
    flight.squitter(identification("DLH1"), kNoon);
    TimeMs const later = kNoon + TimeMs{30} * 86'400'000;
    flight.squitter(position(kMunich, false), later);
    EXPECT_EQ(flight.updated(flight.items().altitudeFt.updated), later);
    EXPECT_EQ(flight.track().heard(), later);
    EXPECT_LT(flight.updated(flight.items().callsign.updated), later - TimeMs{10} * 86'400'000);
    flight.squitter(identification("DLH2"), later + 1'000);
    EXPECT_EQ(flight.updated(flight.items().callsign.changed), later + 1'000);
}

TEST(StandardTrack, ATimeFarBeyondAllIsNoWorseThanAnyOther) {
    Flight flight;
    flight.squitter(identification("DLH1"), kNoon);
    TimeMs const forged = ~TimeMs{0} - 10;
    flight.squitter(identification("DLH2"), forged);
    EXPECT_EQ(flight.track().heard(), forged);
}

TEST(StandardTrack, NoItemIsLeftOutOfTheList) {
    std::size_t bytes = 0;
    TrackItems const items;
    visitPackedItems(items, [&bytes](auto const& item) { bytes += sizeof(item); });
    EXPECT_LE(bytes, sizeof(TrackItems));
    EXPECT_LT(sizeof(TrackItems) - bytes, 12U) << "an item has 12 bytes at least";
}

TEST(StandardTrack, EveryClassOfItemsRanksEverySource) {
    for (auto const& precedence : kPrecedences) {
        EXPECT_EQ(precedence.rank[static_cast<std::size_t>(Source::AdsB)], 1) << "nothing is better";
        EXPECT_GT(precedence.freshMs, 0U);
        for (auto const rank : precedence.rank) EXPECT_GT(rank, 0);
    }
}

TEST(StandardTrack, AWorseSourceComesInOnceTheBetterIsOld) {
    PackedItem<int, ItemClass::Altitude> item;
    EXPECT_TRUE(item.offer(100, Source::TisB, 1'000));
    EXPECT_TRUE(item.offer(200, Source::ModeS, 1'100)) << "better";
    EXPECT_FALSE(item.offer(300, Source::TisB, 6'100));
    EXPECT_TRUE(item.offer(300, Source::TisB, 6'101));
    EXPECT_FALSE(item.offer(400, Source::TisB, 6'000)) << "a late one of the same source";
    EXPECT_EQ(item.value, 300);
    EXPECT_EQ(item.changed, 6'101U);
}

TEST(StandardTrack, AnAlertInASquitterLeavesOpenWhetherThereIsAnIdent) {
    auto const surveillance = [](unsigned status) {
        return withBits(position(kMunich, false), 5, 2, status); // 1 permanent alert, 3 ident
    };
    Flight flight;
    flight.squitter(surveillance(3), kNoon);
    EXPECT_TRUE(flight.items().ident.value);
    EXPECT_FALSE(flight.items().alert.value);
    flight.squitter(surveillance(1), kNoon + 500);
    EXPECT_TRUE(flight.items().alert.value);
    EXPECT_TRUE(flight.items().ident.value) << "as it was told before";
    EXPECT_EQ(flight.updated(flight.items().ident.updated), kNoon);
    flight.squitter(surveillance(0), kNoon + 1'000);
    EXPECT_FALSE(flight.items().ident.value);
}
