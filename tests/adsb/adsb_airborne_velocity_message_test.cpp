// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_airborne_velocity_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace quorvel::modes;
using test::CapturedLog;
using test::Holds;
using test::withBits;

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

// The standard has it the other way round: 0 is GNSS.
TEST(AirborneVelocity, TakesASourceBitOf0ForBarometric) {
    for (unsigned const bit : {0U, 1U}) {
        ADSBAirborneVelocityMessage message;
        ASSERT_TRUE(message.decode(withBits(withBits(test::payload(19, 1), 13, 22, 0x200802), 35, 1, bit)));
        EXPECT_EQ(message.verticalRateSource(),
            bit == 0 ? ADSBAirborneVelocityMessage::BARO : ADSBAirborneVelocityMessage::GNSS);
    }
}

TEST(AirborneVelocity, KeepsTheSubtypeOfAnAirspeedItRejects) {
    for (unsigned const subtype : {3U, 4U}) {
        CapturedLog log;
        ADSBAirborneVelocityMessageV0 message;
        EXPECT_FALSE(message.decode(test::payload(19, subtype)));
        EXPECT_THAT(log.take(), Holds(Log::Warning, "ADSBAirVelMsg", "Unsupported AIR_SPD message detected."));
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
        EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBAirVelMsg", "Unknown Subtype=" + std::to_string(subtype) + "."));
        EXPECT_EQ(message.fields().size(), 2U);
        EXPECT_EQ(message.velocityType(), ADSBAirborneVelocityMessage::GROUND_SPEED);
    }
}

TEST(AirborneVelocity, ForgetsSpeedAndHeadingWhenAComponentIsNotAvailable) {
    for (auto const& unavailable : {test::VelocityBits{.east = 0, .north = 5}, {.east = 5, .north = 0}}) {
        ADSBAirborneVelocityMessageV2 message;
        ASSERT_TRUE(message.decode(test::airborneVelocity({.east = 101, .north = 101})));
        EXPECT_NEAR(message.groundSpeed(), 141.42, 0.01);
        EXPECT_DOUBLE_EQ(message.heading(), 45.0);
        ASSERT_TRUE(message.decode(test::airborneVelocity(unavailable)));
        EXPECT_EQ(message.groundSpeed(), 0.0);
        EXPECT_EQ(message.heading(), 0.0);
    }
}

TEST(AirborneVelocity, ListsItsFieldsInTheOrderOfThePayload) {
    ADSBAirborneVelocityMessage message;
    ASSERT_TRUE(message.decode(test::airborneVelocity({})));
    auto const sorted = message.fields();
    ASSERT_TRUE(message.decodeImpl()) << "which sorts nothing";
    auto const listed = message.fields();
    ASSERT_EQ(listed.size(), 2 * sorted.size() - 2) << "all but type and type code once more";
    for (std::size_t i = 2; i < sorted.size(); ++i) {
        EXPECT_EQ(listed[sorted.size() + i - 2].name(), sorted[i].name()) << i;
    }
}
