// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_test_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;

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

TEST(TestMessage, ListsItsSubtypeBeforeItsData) {
    ADSBTestMessage message;
    ASSERT_TRUE(message.decode(fromHex("B80123ABCDEF00")));
    ASSERT_TRUE(message.decodeImpl()) << "which sorts nothing";
    std::vector<std::string> texts;
    for (auto const& field : message.fields()) texts.push_back(field.description());
    EXPECT_EQ(texts, (std::vector<std::string>{"TEST", "23", "0", "0123ABCDEF00", "0", "0123ABCDEF00"}));
}
