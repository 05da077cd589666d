// SPDX-License-Identifier: MIT
// What the message classes are before they decode, and when they are decoded by themselves or a second time;
// what they make of payloads stands in tests/vectors.
#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target_status_message.h>
#include <modes/adsb_test_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;
using test::withBits;

template <class Message> class EveryMessageClass : public testing::Test {};
using MessageClasses =
    testing::Types<ADSBIdentityMessage, ADSBSurfacePositionMessage, ADSBAirbornePositionMessage,
                   ADSBAirbornePositionMessageV0, ADSBAirbornePositionMessageV1,
                   ADSBAirbornePositionMessageV2, ADSBAirborneVelocityMessage, ADSBAirborneVelocityMessageV0,
                   ADSBAirborneVelocityMessageV1, ADSBAirborneVelocityMessageV2, ADSBAircraftStatusMessage,
                   ADSBAircraftStatusMessageV0, ADSBAircraftStatusMessageV2, ADSBTargetStatusMessage,
                   ADSBTargetStatusMessageV1, ADSBTargetStatusMessageV2, ADSBAircraftOperationalStatusMessage,
                   ADSBTestMessage>;
TYPED_TEST_SUITE(EveryMessageClass, MessageClasses);

TYPED_TEST(EveryMessageClass, DecodesNothingWithoutAPayload) {
    CapturedLog log;
    TypeParam message;
    EXPECT_FALSE(message.decodeImpl());
    EXPECT_TRUE(message.fields().empty());
    EXPECT_FALSE(message.description().empty());
    EXPECT_TRUE(log.lines().empty());
}

TYPED_TEST(EveryMessageClass, RejectsPayloadsOfOtherTypes) {
    for (unsigned code = 0; code < 32; ++code) {
        TypeParam message;
        if (ADSBMessage::typeByCode(static_cast<std::uint8_t>(code)) == message.type()) continue;
        CapturedLog log;
        EXPECT_FALSE(message.decode(test::payload(code)));
        EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBMessage", "Type code mismatch."));
    }
}

TEST(IdentityMessage, StartsWithEightBlanks) {
    ADSBIdentityMessage const message;
    EXPECT_EQ(message.type(), ADSBMessage::ACID);
    EXPECT_EQ(message.emitterCategory(), 0U);
    EXPECT_EQ(message.callsign(), "        ");
    EXPECT_EQ(message.description(), "TC=ACID, EC=0, CS=        ");
}

TEST(IdentityMessage, KeepsBlanksAtTheEnd) {
    ADSBIdentityMessage message;
    ASSERT_TRUE(message.decode(fromHex("200420F1CB3820")));
    EXPECT_EQ(message.callsign(), "ABC123  ");
    EXPECT_EQ(message.description(), "TC=ACID, EC=0, CS=ABC123  ");
}

TEST(AirbornePosition, StartsAtZeroWithSmallSteps) {
    ADSBAirbornePositionMessageV2 const message;
    EXPECT_EQ(message.type(), ADSBMessage::POS_AIR);
    EXPECT_EQ(message.altitudeSource(), ADSBAirbornePositionMessage::BARO);
    EXPECT_EQ(message.altResolution(), 25U);
    EXPECT_EQ(message.altitude(), 0);
    EXPECT_FALSE(message.timeApplicability());
    EXPECT_EQ(message.cprFormat(), 0U);
    EXPECT_EQ(message.cprLatitude(), 0U);
    EXPECT_EQ(message.cprLongitude(), 0U);
    EXPECT_FALSE(message.nicSupplementB());
    EXPECT_FALSE(ADSBAirbornePositionMessageV0().singalAntena());
    EXPECT_FALSE(ADSBAirbornePositionMessageV1().singalAntena());
    EXPECT_EQ(message.description(), "TC=POS_AIR, AT=BARO, ALT=0, CPR=ODD, LAT=0, LON=0");
}

// The low bits of the altitude come from the end of the longitude.
TEST(AirbornePosition, EndsItsAltitudeInTheLastByte) {
    ADSBAirbornePositionMessage message;
    ASSERT_TRUE(message.decode(fromHex("58C382D690C8AC")));
    EXPECT_EQ(message.altitude(), ((0xC3 & 0xFE) * 8 + (0xAC >> 4)) * 25 - 1000);
    EXPECT_EQ(message.altitude(), 38050);
    EXPECT_EQ(message.cprLatitude(), 93000U);
    EXPECT_EQ(message.cprLongitude(), 51372U);
    EXPECT_EQ(message.cprFormat(), 1U);
    EXPECT_EQ(message.fields().size(), 9U)
        << "the base class knows nothing of the bit that versions differ in";
    EXPECT_EQ(message.description(), "TC=POS_AIR, AT=BARO, ALT=38050, CPR=EVEN, LAT=93000, LON=51372");
}

TEST(SurfacePosition, StartsAtZero) {
    ADSBSurfacePositionMessage const message;
    EXPECT_EQ(message.type(), ADSBMessage::POS_GND);
    EXPECT_EQ(message.movementCode(), 0U);
    EXPECT_FALSE(message.movement());
    EXPECT_EQ(message.groundSpeed(), 0.0);
    EXPECT_FALSE(message.headingValid());
    EXPECT_EQ(message.heading(), 0.0);
    EXPECT_FALSE(message.timeApplicability());
    EXPECT_EQ(message.cprFormat(), 0U);
    EXPECT_EQ(message.cprLatitude(), 0U);
    EXPECT_EQ(message.cprLongitude(), 0U);
    EXPECT_EQ(message.description(), "TC=POS_GND, SPD=0, HDG=0, CPR=ODD, LAT=0, LON=0");
}

TEST(SurfacePosition, HasTheSpeedsOfTheMovementTable) {
    struct {
        unsigned code;
        double knots;
    } const rows[] = {{0, 0.0},     {1, 0.0},   {2, 0.125},  {3, 0.125},   {8, 5 * 0.14583332 + 0.125},
                      {9, 1.0},     {12, 1.75}, {13, 2.0},   {38, 14.5},   {39, 15.0},
                      {93, 69.0},   {94, 70.0}, {108, 98.0}, {109, 100.0}, {123, 170.0},
                      {124, 175.0}, {125, 0.0}, {126, 0.0},  {127, 0.0}};
    for (auto const& [code, knots] : rows) {
        CapturedLog log;
        ADSBSurfacePositionMessage message;
        EXPECT_TRUE(message.decode(withBits(test::payload(7), 5, 7, code)));
        EXPECT_EQ(message.groundSpeed(), knots) << code;
        EXPECT_EQ(message.movement(), code >= 1 && code <= 124);
        EXPECT_EQ(log.lines().size(), code > 124 ? 1U : 0U) << "a reserved code is reported once";
    }
}

TEST(AirborneVelocity, StartsAtZero) {
    ADSBAirborneVelocityMessageV0 const message;
    EXPECT_EQ(message.type(), ADSBMessage::AIR_VEL);
    EXPECT_EQ(message.velocityType(), ADSBAirborneVelocityMessage::GROUND_SPEED);
    EXPECT_EQ(message.groundSpeed(), 0.0);
    EXPECT_EQ(message.heading(), 0.0);
    EXPECT_EQ(message.verticalRateSource(), ADSBAirborneVelocityMessage::BARO);
    EXPECT_EQ(message.verticalRate(), 0);
    EXPECT_EQ(message.nucr(), 0U);
    EXPECT_EQ(message.description(), "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0, NUCr=0");
    EXPECT_EQ(ADSBAirborneVelocityMessageV1().description(), "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0");
    EXPECT_EQ(ADSBAirborneVelocityMessageV2().description(), "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0");
}

TEST(AirborneVelocity, IsThatOfItsComponents) {
    ADSBAirborneVelocityMessage message;
    auto payload = withBits(withBits(test::payload(19, 1), 13, 11, 0x400 | 10), 24, 11, 10);
    ASSERT_TRUE(message.decode(payload));
    EXPECT_NEAR(message.groundSpeed(), std::sqrt(162.0), 1e-12);
    EXPECT_NEAR(message.heading(), 315.0, 1e-9);
    // the rate is read from byte 4 alone, into which the end of the northward component reaches: 0x40 makes
    // 16 steps
    EXPECT_EQ(message.description(), "TC=AIR_VEL, ST=GS, GS=12.7279, HDG=315, VR=960");
}

TEST(AirborneVelocity, KeepsTheSubtypeOfAnAirspeedItRejects) {
    for (unsigned const subtype : {3U, 4U}) {
        CapturedLog log;
        ADSBAirborneVelocityMessageV0 message;
        EXPECT_FALSE(message.decode(test::payload(19, subtype)));
        EXPECT_THAT(log.take(),
                    Holds(Log::Warning, "ADSBAirVelMsg", "Unsupported AIR_SPD message detected."));
        EXPECT_EQ(message.velocityType(), subtype);
        auto const fields = message.fields();
        ASSERT_EQ(fields.size(), 3U);
        EXPECT_EQ(fields[2].name(), "SUB_TYPE");
        EXPECT_EQ(fields[2].description(), subtype == 3 ? "AIR_SPEED" : "AIR_SPEED_SUPER_SONIC");
        EXPECT_EQ(message.description(),
                  subtype == 3 ? "TC=AIR_VEL, ST=AS, VR=0, NUCr=0" : "TC=AIR_VEL, ST=AS_SS, VR=0, NUCr=0");
    }
}

TEST(AirborneVelocity, ListsNothingOfAnUnknownSubtype) {
    for (unsigned const subtype : {0U, 5U, 6U, 7U}) {
        CapturedLog log;
        ADSBAirborneVelocityMessage message;
        EXPECT_FALSE(message.decode(test::payload(19, subtype)));
        EXPECT_THAT(log.take(),
                    Holds(Log::Error, "ADSBAirVelMsg", "Unknown Subtype=" + std::to_string(subtype) + "."));
        EXPECT_EQ(message.fields().size(), 2U);
        EXPECT_EQ(message.velocityType(), ADSBAirborneVelocityMessage::GROUND_SPEED);
    }
}

TEST(AircraftStatus, StartsUnknown) {
    ADSBAircraftStatusMessageV2 const message;
    EXPECT_EQ(message.type(), ADSBMessage::AC_STATUS);
    EXPECT_EQ(message.subtype(), ADSBAircraftStatusMessage::Subtype::UNKNOWN);
    EXPECT_EQ(message.emergencyState(), ADSBAircraftStatusMessage::EmergencyState::NO_EMG);
    EXPECT_EQ(message.modeACode(), 0U);
    EXPECT_EQ(message.modeAOctString(), "0000");
    EXPECT_EQ(message.description(), "TC=AC_STATUS, MA=0000");
    EXPECT_EQ(ADSBAircraftStatusMessageV0().description(), "TC=AC_STATUS");
}

TEST(AircraftStatus, TellsTheEmergency) {
    ADSBAircraftStatusMessage message;
    ASSERT_TRUE(message.decode(withBits(test::payload(28, 1), 8, 8, 0xA0)));
    EXPECT_EQ(message.emergencyState(), ADSBAircraftStatusMessage::EmergencyState::HIJACK);
    EXPECT_EQ(message.description(), "TC=AC_STATUS, ST=EMG, EMG=5");

    CapturedLog log;
    ASSERT_TRUE(message.decode(test::payload(28, 0)));
    EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBAcStatMsg", "Unsupported subtype 0 detected."));
    EXPECT_EQ(message.emergencyState(), ADSBAircraftStatusMessage::EmergencyState::HIJACK)
        << "kept by other subtypes";
    EXPECT_EQ(message.fields().back().description(), "HIJACK");

    EXPECT_FALSE(message.decode(test::payload(28, 3)));
    EXPECT_EQ(message.subtype(), ADSBAircraftStatusMessage::Subtype::UNKNOWN);
}

// Version 2 deliberately reads the Mode A code from the first two bytes.
TEST(AircraftStatus, MakesTheModeACodeOfTheFirstTwoBytes) {
    ADSBAircraftStatusMessageV2 message;
    ASSERT_TRUE(message.decode(fromHex("E1050000000000")));
    EXPECT_EQ(message.modeACode(), 0x5E1U);
    EXPECT_EQ(message.modeAOctString(), "2741");
    EXPECT_EQ(message.description(), "TC=AC_STATUS, ST=EMG, EMG=0, MA=2741");
}

TEST(AircraftStatus, KeepsTheFieldsOfAnAdvisoryItRejects) {
    CapturedLog log;
    ADSBAircraftStatusMessageV2 message;
    EXPECT_FALSE(message.decode(test::payload(28, 2)));
    EXPECT_EQ(log.take().size(), 2U);
    EXPECT_EQ(message.fields().size(), 4U);
    EXPECT_EQ(message.subtype(), ADSBAircraftStatusMessage::Subtype::TCAS_RA);
}

TEST(TargetStatus, StartsAtZero) {
    ADSBTargetStatusMessageV2 const message;
    EXPECT_EQ(message.type(), ADSBMessage::TG_STATUS);
    EXPECT_EQ(message.subtype(), 0U);
    EXPECT_EQ(message.nacp(), 0U);
    EXPECT_EQ(message.nicBaro(), 0U);
    EXPECT_EQ(message.sil(), 0U);
    EXPECT_FALSE(message.silSupp());
    EXPECT_EQ(message.description(), "TC=TG_STATUS, ST=0, NACp=0, NICbaro=0, SIL=0, SILsupp=0");
    EXPECT_EQ(ADSBTargetStatusMessageV1().description(), "TC=TG_STATUS, ST=0, NACp=0, NICbaro=0, SIL=0");
}

TEST(TargetStatus, KeepsTheFieldsOfASubtypeThatVersion2Rejects) {
    ADSBTargetStatusMessageV2 message;
    EXPECT_FALSE(message.decode(withBits(test::payload(29), 39, 4, 9)));
    EXPECT_EQ(message.nacp(), 9U);
    EXPECT_EQ(message.fields().size(), 6U);
    EXPECT_FALSE(message.silSupp());
}

TEST(OperationalStatus, StartsAtZero) {
    ADSBAircraftOperationalStatusMessage const message;
    EXPECT_EQ(message.type(), ADSBMessage::OP_STATUS);
    EXPECT_EQ(message.versionNumber(), 0U);
    EXPECT_EQ(message.version(), MOPS_V0);
    EXPECT_FALSE(message.nicSupplementA());
    EXPECT_EQ(message.description(), "TC=OP_STAT, VN=0, NICsa=0");
}

TEST(OperationalStatus, StoresVersion0AndRejectsIt) {
    ADSBAircraftOperationalStatusMessage message;
    ASSERT_TRUE(message.decode(test::operationalStatus(2, true)));
    CapturedLog log;
    EXPECT_FALSE(message.decode(test::operationalStatus(0)));
    EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBOpStatMsg", "MOPS Version 0 detected."));
    EXPECT_EQ(message.versionNumber(), 0U);
    EXPECT_TRUE(message.nicSupplementA()) << "as it was";
    EXPECT_FALSE(message.valid());
}

TEST(TestMessage, StartsEmpty) {
    ADSBTestMessage const message;
    EXPECT_EQ(message.type(), ADSBMessage::TEST);
    EXPECT_EQ(message.subtype(), 0U);
    EXPECT_EQ(message.testData(), "");
    EXPECT_EQ(message.description(), std::string("TC=TEST, ST=") + '\0');
}

TEST(TestMessage, WritesItsSubtypeAsARawByte) {
    CapturedLog log;
    ADSBTestMessage message;
    EXPECT_TRUE(message.decode(fromHex("BB0123ABCDEF00")));
    EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBTestMsg", "Unknown Subtype=3."));
    EXPECT_EQ(message.description(), "TC=TEST, ST=\x03");
    EXPECT_EQ(message.testData(), fromHex("0123ABCDEF00"));
    EXPECT_EQ(message.fields().back().description(), "0123ABCDEF00");
}
