// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_operational_status_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::Holds;

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
