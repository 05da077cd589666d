// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>

#include "reference/cpr_encoder.h"
#include "support/captured_log.h"
#include "track/replies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quorvel::modes {
namespace {

using namespace test;
using ::testing::IsEmpty;

constexpr unsigned kAddress = 0x4840D6;
constexpr unsigned long long kTime = 1'700'000'000'000;
constexpr unsigned long long kWrap = 1ULL << 32;

// The altitude that the rule makes of a position payload: its second byte without the Q bit, then the high
// four bits of its last byte.
int altitudeIn(std::string const& position) {
    auto const byte = [&](std::size_t i) { return int{static_cast<unsigned char>(position[i])}; };
    return ((byte(1) & 0xFE) * 8 + (byte(6) >> 4)) * ((byte(1) & 1) != 0 ? 25 : 100) - 1000;
}

TEST(TrackerSquitters, NeedTheHighestConfidence) {
    for (auto const confidence : {ModeSMessage::NONE, ModeSMessage::LOW, ModeSMessage::MEDIUM}) {
        ADSBTracker tracker;
        auto const message = squitterReply(kAddress, identification("KLM1023"), kTime);
        message->setConfidence(confidence);
        EXPECT_FALSE(tracker.procModeSMsg(message));
        EXPECT_THAT(tracker.allTargets(), IsEmpty());
    }
}

TEST(TrackerSquitters, StampMeasureAndCountTheirTarget) {
    ADSBTracker tracker;
    auto const message = squitterReply(kAddress, identification("KLM1023", 3), kTime);
    message->setSignalAmplitude(200);
    auto const target = tracker.procModeSMsg(message);
    ASSERT_TRUE(target);
    EXPECT_EQ(target, tracker.findTarget(kAddress));
    EXPECT_EQ(target->lastUpdate(), kTime);
    EXPECT_EQ(target->signalAmplitude(), 200);
    EXPECT_EQ(target->signalAmplitudeLastUpdate(), kTime);
    EXPECT_EQ(target->statisticDfMsgCount(DFMessage::DF17), 1U);
    EXPECT_EQ(target->statisticADSBMsgCount(ADSBMessage::ACID), 1U);
    EXPECT_EQ(target->statisticLastUpdate(), kTime);
    EXPECT_EQ(target->callsign(), "KLM1023 ");
    EXPECT_EQ(target->callsignLastUpdate(), kTime);
    EXPECT_EQ(target->emitterCategory(), 3);
    EXPECT_EQ(target->emitterCategoryLastUpdate(), kTime);
}

TEST(TrackerSquitters, AreNotCountedWhenTheirPayloadCannotBeDecoded) {
    auto const reservedType = payload(0);
    auto const targetStateOfVersion0 = payload(29, 2);
    auto const airspeed = payload(19, 3);
    for (auto const& undecodable : {reservedType, targetStateOfVersion0, airspeed}) {
        ADSBTracker tracker;
        auto const message = squitterReply(kAddress, undecodable, kTime);
        message->setSignalAmplitude(9);
        auto const target = tracker.procModeSMsg(message);
        ASSERT_TRUE(target);
        EXPECT_EQ(target->lastUpdate(), kTime);
        EXPECT_EQ(target->signalAmplitude(), 9);
        EXPECT_EQ(target->statisticDfMsgCount(), 0U);
        EXPECT_FALSE(target->statisticValid());
        EXPECT_FALSE(target->groundSpeedValid());
    }
}

TEST(TrackerSquitters, OfOtherTypesAreCountedOnly) {
    struct {
        std::string payload;
        ADSBMessage::ADSBMessageType type;
    } const rows[] = {
        {withBits(payload(5), 22, 17, 77), ADSBMessage::POS_GND},
        {payload(23), ADSBMessage::TEST},
        {payload(28, 1), ADSBMessage::AC_STATUS},
    };
    for (auto const& row : rows) {
        ADSBTracker tracker;
        auto const target = tracker.procModeSMsg(squitterReply(kAddress, row.payload, kTime));
        ASSERT_TRUE(target);
        EXPECT_EQ(target->statisticDfMsgCount(DFMessage::DF17), 1U);
        EXPECT_EQ(target->statisticADSBMsgCount(row.type), 1U);
        EXPECT_FALSE(target->callsignValid() || target->positionValid() || target->altitudeBaroValid() ||
                     target->groundSpeedValid() || target->groundStatusValid() || target->nucpValid());
    }
}

TEST(TrackerSquitters, OfVersion2CountTargetStateToo) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    target->setMOPSVersion(MOPS_V2, kTime);
    target->setMOPSVersionConfirmed(kTime);
    tracker.procModeSMsg(squitterReply(kAddress, payload(29, 2), kTime));
    EXPECT_EQ(target->statisticADSBMsgCount(ADSBMessage::TG_STATUS), 1U);
    EXPECT_FALSE(target->nacpValid());
}

TEST(TrackerPosition, MeansAirborneWithAltitudeAndQuality) {
    ADSBTracker tracker;
    auto const position = airbornePosition({93'000, 51'372, false, 0xC3, false, 11});
    auto const target = tracker.procModeSMsg(squitterReply(kAddress, position, kTime));
    ASSERT_TRUE(target);
    EXPECT_EQ(target->groundStatus(), ADSBTarget::AIRBORNE);
    EXPECT_EQ(target->groundStatusLastUpdate(), kTime);
    EXPECT_EQ(altitudeIn(position), 38'050);
    EXPECT_EQ(target->altitudeBaro(), 38'050);
    EXPECT_EQ(target->altitudeBaroLastUpdate(), kTime);
    EXPECT_FALSE(target->positionValid());
    EXPECT_EQ(target->nucp(), 7);
    EXPECT_EQ(target->nic(), 8);
    EXPECT_EQ(target->sil(), 2);
    EXPECT_EQ(target->nucpLastUpdate(), kTime);
    EXPECT_EQ(target->nicSuppBLastUpdate(), 0U);
}

// Deliberate: the message says what its height is measured from, the target does not.
TEST(TrackerPosition, TakesAHeightAboveTheEllipsoidForABarometricAltitude) {
    ADSBTracker tracker;
    auto const position = airbornePosition({93'000, 51'372, false, 0xC3, false, 20});
    auto const target = tracker.procModeSMsg(squitterReply(kAddress, position, kTime));
    ASSERT_TRUE(target);
    EXPECT_TRUE(target->altitudeBaroValid());
    EXPECT_EQ(target->altitudeBaro(), altitudeIn(position));
}

TEST(TrackerPosition, GoesThroughTheAltitudeCheck) {
    ADSBTracker tracker;
    tracker.setAltituteBaroChecking(true, 4, 150);
    auto const target = tracker.procModeSMsg(squitterReply(kAddress, airbornePosition({0, 0, false, 0x81}), kTime));
    auto const altitude = target->altitudeBaro();
    tracker.procModeSMsg(squitterReply(kAddress, airbornePosition({0, 0, false, 0xC1}), kTime + 500));
    EXPECT_EQ(target->altitudeBaro(), altitude);
    EXPECT_EQ(target->lastUpdate(), kTime + 500);
}

TEST(TrackerPosition, TakesSupplementBFromVersion2Only) {
    for (auto const version : {MOPS_V0, MOPS_V1, MOPS_V2}) {
        ADSBTracker tracker;
        auto const target = tracker.createTarget(kAddress);
        target->setMOPSVersion(version, 1);
        target->setMOPSVersionConfirmed(1);
        tracker.procModeSMsg(squitterReply(kAddress, airbornePosition({0, 0, false, 0, true, 11}), kTime));
        EXPECT_EQ(target->nicSupplementB(), version == MOPS_V2);
        EXPECT_EQ(target->nicSuppBLastUpdate(), version == MOPS_V2 ? kTime : 0);
        EXPECT_EQ(target->nic(), version == MOPS_V2 ? 9 : 8); // the supplement counts at once
        EXPECT_EQ(target->silValid(), version == MOPS_V0);
    }
}

// A place over the Netherlands, as an aircraft sends it.
std::string positionOf(double latitude, double longitude, bool odd) {
    auto const frame = reference::encoded(latitude, longitude, odd ? 1 : 0);
    return airbornePosition({frame.latitude, frame.longitude, odd});
}

TEST(TrackerPosition, IsFoundFromAPairOfFrames) {
    ADSBTracker tracker;
    auto const target = tracker.procModeSMsg(squitterReply(kAddress, positionOf(52.2572, 3.9194, false), kTime));
    tracker.procModeSMsg(squitterReply(kAddress, positionOf(52.2572, 3.9194, true), kTime + 500));
    EXPECT_TRUE(target->positionValid());
    EXPECT_NEAR(target->latitude(), 52.2572, 3e-5);
    EXPECT_NEAR(target->longitude(), 3.9194, 6e-5);
    EXPECT_EQ(target->positionLastUpdate(), kTime + 500);
    tracker.procModeSMsg(squitterReply(kAddress, positionOf(52.2600, 3.9200, false), kTime + 1000));
    EXPECT_NEAR(target->latitude(), 52.2600, 3e-5);
    EXPECT_EQ(target->positionLastUpdate(), kTime + 1000);
}

TEST(TrackerPosition, PairsFramesWithinTenSeconds) {
    struct {
        char const* what;
        unsigned long long evenTime, oddTime;
        bool paired;
    } const rows[] = {
        {"odd 10 s later", kTime, kTime + 10'000, true},
        {"odd 10.001 s later", kTime, kTime + 10'001, false},
        {"odd 10 s older", kTime, kTime - 10'000, true},
        {"odd 10.001 s older", kTime, kTime - 10'001, false},
        {"equally old", kTime, kTime, true},
        {"2^32 ms apart", kTime, kTime + kWrap, true},
        {"2^32 ms and 10 s apart", kTime, kTime + kWrap + 10'000, true},
        {"2^32 ms and 10.001 s apart", kTime, kTime + kWrap + 10'001, false},
        {"2^32 ms less 10 s apart", kTime, kTime + kWrap - 10'000, true},
        {"2^31 ms apart", kTime, kTime + kWrap / 2, false},
        {"5 * 2^32 ms older", kTime, kTime - 5 * kWrap, true},
    };
    for (auto const& row : rows) {
        ADSBTracker tracker;
        auto const target = tracker.procModeSMsg(squitterReply(kAddress, positionOf(10, 20, false), row.evenTime));
        tracker.procModeSMsg(squitterReply(kAddress, positionOf(10, 20, true), row.oddTime));
        EXPECT_EQ(target->positionValid(), row.paired) << row.what;
        if (row.paired) {
            EXPECT_EQ(target->positionLastUpdate(), std::max(row.evenTime, row.oddTime)) << row.what;
            EXPECT_NEAR(target->latitude(), 10.0, 3e-5) << row.what;
            EXPECT_NEAR(target->longitude(), 20.0, 6e-5) << row.what;
        }
    }
}

// Required: a slot that was never filled counts as a frame of time 0.
TEST(TrackerPosition, PairsAFrameWithAnEmptySlotAroundMultiplesOf2To32) {
    struct {
        unsigned long long time;
        bool paired;
    } const rows[] = {{5000, true}, {10'000, true}, {10'001, false}, {kWrap + 10'000, true}, {kWrap + 10'001, false},
        {kWrap - 10'000, true}, {kWrap - 10'001, false}};
    for (auto const& row : rows) {
        ADSBTracker tracker;
        auto const target = tracker.procModeSMsg(squitterReply(kAddress, airbornePosition({}), row.time));
        EXPECT_EQ(target->positionValid(), row.paired) << row.time;
        EXPECT_EQ(target->positionLastUpdate(), row.paired ? row.time : 0);
    }
}

TEST(TrackerPosition, TakesTheOddOfTwoFramesOfEqualTime) {
    ADSBTracker tracker;
    tracker.procModeSMsg(squitterReply(kAddress, airbornePosition({1, 1, true}), kTime));
    auto const target = tracker.procModeSMsg(squitterReply(kAddress, airbornePosition({0, 0, false}), kTime));
    EXPECT_EQ(target->latitude(), 6.101694915254237 / 131072);
    EXPECT_EQ(target->longitude(), 360.0 / 58 / 131072);
}

TEST(TrackerPosition, StaysWhenTheFramesLieInDifferentZones) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    target->setPosition(51.5, -0.425, 77);
    // Either side of the first transition, at 10.47047 degrees.
    tracker.procModeSMsg(squitterReply(kAddress, positionOf(10.470, 20, false), kTime));
    tracker.procModeSMsg(squitterReply(kAddress, positionOf(10.471, 20, true), kTime + 500));
    EXPECT_EQ(target->latitude(), 51.5);
    EXPECT_EQ(target->longitude(), -0.425);
    EXPECT_EQ(target->positionLastUpdate(), 77U);
    // The slots stay, too: the odd frame pairs with the next even one.
    tracker.procModeSMsg(squitterReply(kAddress, positionOf(10.471, 20, false), kTime + 1000));
    EXPECT_NEAR(target->latitude(), 10.471, 3e-5);
}

TEST(TrackerVelocity, BringsSpeedHeadingAndRate) {
    for (auto const version : {MOPS_V0, MOPS_V1, MOPS_V2}) {
        ADSBTracker tracker;
        auto const target = tracker.createTarget(kAddress);
        target->setMOPSVersion(version, 1);
        target->setMOPSVersionConfirmed(1);
        auto const velocity = airborneVelocity({1, 10, 10, 3, false, 1});
        tracker.procModeSMsg(squitterReply(kAddress, velocity, kTime));
        EXPECT_NEAR(target->groundSpeed(), 12.7279, 1e-4); // 9 knots east, 9 knots north
        EXPECT_EQ(target->groundSpeedLastUpdate(), kTime);
        EXPECT_DOUBLE_EQ(target->heading(), 45.0);
        EXPECT_EQ(target->headingLastUpdate(), kTime);
        EXPECT_TRUE(target->verticalRateBaroValid());
        EXPECT_EQ(target->verticalRateBaroLastUpdate(), kTime);
        EXPECT_EQ(target->nucr(), version == MOPS_V0 ? 3 : 0);
        EXPECT_EQ(target->nucrLastUpdate(), version == MOPS_V0 ? kTime : 0);
    }
}

TEST(TrackerVelocity, TakesBarometricRatesOnly) {
    ADSBTracker tracker;
    // 0b00000001 in the payload's byte 4: rate ((1 << 6) | 0) - 1 = 63 steps of 64 ft/min
    auto const baro = airborneVelocity({2, 2, 2, 0, false, 1});
    auto const target = tracker.procModeSMsg(squitterReply(kAddress, baro, kTime));
    auto const byte4 = static_cast<unsigned>(static_cast<unsigned char>(baro[4]));
    auto const raw = static_cast<int>((byte4 & 7) << 6 | byte4 >> 2);
    EXPECT_EQ(target->verticalRateBaro(), (raw - 1) * 64);
    tracker.procModeSMsg(squitterReply(kAddress, airborneVelocity({1, 9, 9, 0, true, 7}), kTime + 1000));
    EXPECT_EQ(target->verticalRateBaro(), (raw - 1) * 64);
    EXPECT_EQ(target->verticalRateBaroLastUpdate(), kTime);
    EXPECT_EQ(target->groundSpeedLastUpdate(), kTime + 1000);
}

// A velocity message that was not accepted still knows its subtype: its speed and heading say nothing.
TEST(TrackerVelocity, LeavesSpeedAndHeadingWithAirspeedMessages) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    auto const airspeed = std::make_shared<ADSBAirborneVelocityMessageV0>();
    EXPECT_FALSE(airspeed->decode(airborneVelocity({3, 10, 10, 3, false, 0})));
    airspeed->setTimeStamp(kTime);
    tracker.procADSBAirborneVelocityMsg(target, airspeed);
    EXPECT_FALSE(target->groundSpeedValid());
    EXPECT_FALSE(target->headingValid());
    EXPECT_EQ(target->verticalRateBaroLastUpdate(), kTime);
    EXPECT_EQ(target->nucrLastUpdate(), kTime);
}

TEST(TrackerHandlers, ChangeNothingForAnEmptyPointer) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    tracker.procADSBIdentificationMsg(target, nullptr);
    tracker.procADSBAirbornePositionMsg(target, nullptr);
    tracker.procADSBAirborneVelocityMsg(target, nullptr);
    tracker.procADSBAircraftOperationalStatusMsg(target, nullptr);
    tracker.procADSBAirbornePositionMsgV2(target, nullptr);
    tracker.procADSBAirborneVelocityMsgV0(target, nullptr);
    EXPECT_FALSE(target->callsignValid() || target->groundStatusValid() || target->verticalRateBaroValid());
    EXPECT_EQ(target->mopsVersionLastUpdate() + target->nicSuppBLastUpdate() + target->nucrLastUpdate(), 0U);
    tracker.procADSBIdentificationMsg(nullptr, std::make_shared<ADSBIdentityMessage>());
    tracker.procADSBAirbornePositionMsg(nullptr, std::make_shared<ADSBAirbornePositionMessageV0>());
    tracker.procADSBAirborneVelocityMsg(nullptr, std::make_shared<ADSBAirborneVelocityMessageV0>());
    tracker.procADSBAircraftOperationalStatusMsg(nullptr, std::make_shared<ADSBAircraftOperationalStatusMessage>());
    tracker.procADSBAirbornePositionMsgV2(nullptr, std::make_shared<ADSBAirbornePositionMessageV2>());
    tracker.procADSBAirborneVelocityMsgV0(nullptr, std::make_shared<ADSBAirborneVelocityMessageV0>());
}

TEST(TrackerHandlers, OfOneVersionTakeWhatItsMessagesCarryAndNothingElse) {
    for (auto const version : {MOPS_V0, MOPS_V1, MOPS_V2}) {
        ADSBTracker tracker;
        auto const target = tracker.createTarget(kAddress);
        target->setMOPSVersion(version, 1);
        auto const position = std::make_shared<ADSBAirbornePositionMessageV2>();
        auto const velocity = std::make_shared<ADSBAirborneVelocityMessageV0>();
        position->setTimeStamp(kTime);
        velocity->setTimeStamp(kTime + 1);
        tracker.procADSBAirbornePositionMsgV2(target, position);
        tracker.procADSBAirborneVelocityMsgV0(target, velocity);
        EXPECT_EQ(target->nicSuppBLastUpdate(), kTime) << version;
        EXPECT_EQ(target->nucrLastUpdate(), version == MOPS_V0 ? kTime + 1 : 0) << version;
        EXPECT_FALSE(target->groundStatusValid() || target->verticalRateBaroValid()) << version;
    }
}

TEST(TrackerHandlers, SkipWhatAMessageOfAnotherVersionDoesNotCarry) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    for (auto const version : {MOPS_V0, MOPS_V1, MOPS_V2, MOPS_UNKNOWN, static_cast<MOPSVersion>(9)}) {
        target->setMOPSVersion(version, 1);
        auto const plain =
            adsbMessage<ADSBAirbornePositionMessage>(airbornePosition({0, 0, false, 0, true}), kTime + version);
        tracker.procADSBAirbornePositionMsg(target, plain);
        EXPECT_EQ(target->altitudeBaroLastUpdate(), kTime + version);
        auto const velocity = adsbMessage<ADSBAirborneVelocityMessage>(airborneVelocity({}), kTime + version);
        tracker.procADSBAirborneVelocityMsg(target, velocity);
        EXPECT_EQ(target->groundSpeedLastUpdate(), kTime + version);
        EXPECT_EQ(target->nicSuppBLastUpdate(), 0U);
        EXPECT_EQ(target->nucrLastUpdate(), 0U);
    }
}

TEST(TrackerHandlers, OfOneVersionDoItsPartOnly) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    auto const position = airbornePosition({0, 0, false, 0, true});
    auto const velocity = airborneVelocity({1, 9, 9, 3});
    tracker.procADSBAirbornePositionMsgV0(target, adsbMessage<ADSBAirbornePositionMessageV0>(position, kTime));
    tracker.procADSBAirbornePositionMsgV1(target, adsbMessage<ADSBAirbornePositionMessageV1>(position, kTime));
    tracker.procADSBAirborneVelocityMsgV1(target, adsbMessage<ADSBAirborneVelocityMessageV1>(velocity, kTime));
    tracker.procADSBAirborneVelocityMsgV2(target, adsbMessage<ADSBAirborneVelocityMessageV2>(velocity, kTime));
    EXPECT_EQ(target->nicSuppBLastUpdate(), 0U);
    EXPECT_EQ(target->nucrLastUpdate(), 0U);
    tracker.procADSBAirbornePositionMsgV2(target, adsbMessage<ADSBAirbornePositionMessageV2>(position, kTime));
    EXPECT_TRUE(target->nicSupplementB());
    EXPECT_EQ(target->nicSuppBLastUpdate(), kTime);
    tracker.procADSBAirborneVelocityMsgV0(target, adsbMessage<ADSBAirborneVelocityMessageV0>(velocity, kTime));
    EXPECT_EQ(target->nucr(), 3);
    EXPECT_FALSE(target->altitudeBaroValid() || target->groundSpeedValid() || target->groundStatusValid() ||
                 target->nucpValid() || target->verticalRateBaroValid());
}

TEST(TrackerHandlers, GoBackToNoQualityForAnUnknownVersion) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    target->setMOPSVersion(MOPS_UNKNOWN, 1);
    target->setNIC(8, 2);
    auto const message = adsbMessage<ADSBAirbornePositionMessageV0>(airbornePosition({}), kTime);
    tracker.procADSBAirbornePositionMsg(target, message);
    EXPECT_FALSE(target->nicValid());
    EXPECT_EQ(target->nic(), 0);
}

} // namespace
} // namespace quorvel::modes
