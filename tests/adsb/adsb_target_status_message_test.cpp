// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_target_status_message.h>

#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::withBits;

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
