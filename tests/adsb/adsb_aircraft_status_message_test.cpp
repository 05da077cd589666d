// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_aircraft_status_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;
using test::withBits;

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
    EXPECT_EQ(message.emergencyState(), ADSBAircraftStatusMessage::EmergencyState::HIJACK) << "kept by other subtypes";
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
