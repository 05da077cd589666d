// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_identity_message.h>

#include "support/bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;

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
