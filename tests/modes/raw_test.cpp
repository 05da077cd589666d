// SPDX-License-Identifier: MIT
#include <modes/modes_encapsulation.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::Holds;

TEST(RawHex, IsDiscardedWhenRead) {
    CapturedLog log;
    std::string buffer = "8D4840D6202CC371C32CE0576098\n";
    EXPECT_TRUE(ModeSEncapsulation::extractRawHex(buffer).empty());
    EXPECT_EQ(buffer, "");
    EXPECT_TRUE(log.lines().empty());
}

TEST(RawHex, IsWrittenInUpperCaseDigitsWithALineFeed) {
    ModeSEncapsulation record;
    EXPECT_EQ(ModeSEncapsulation::encapsulateRawHex(record), "\n");
    record.setData(test::fromHex("00 0f a0 FF 5d 4c a2"));
    record.setTimeStamp(12345);
    EXPECT_EQ(ModeSEncapsulation::encapsulateRawHex(record), "000FA0FF5D4CA2\n");
}

TEST(RawBin, IsOneFrameOf7Or14Bytes) {
    test::SteeredClock const clock(1'714'566'896'789);
    for (std::size_t const length : {7U, 14U}) {
        std::string buffer(length, '\x1A');
        auto const records = ModeSEncapsulation::extractRawBin(buffer);
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(records[0]->data(), std::string(length, '\x1A'));
        EXPECT_EQ(records[0]->timeStamp(), 1'714'566'896'789U);
        EXPECT_EQ(buffer, "");
    }
}

TEST(RawBin, IsDiscardedAtAnyOtherLength) {
    for (std::size_t const length : {0U, 1U, 6U, 8U, 13U, 15U, 28U, 1000U}) {
        CapturedLog log;
        std::string buffer(length, 'x');
        EXPECT_TRUE(ModeSEncapsulation::extractRawBin(buffer).empty());
        EXPECT_EQ(buffer, "");
        EXPECT_THAT(log.take(), Holds(Log::Warning, "ModeSEncapsulation",
                                    "Raw bin buffer over size (" + std::to_string(length) + "), data disgarded"));
    }
}

TEST(RawBin, IsWrittenAsItIs) {
    ModeSEncapsulation record;
    record.setData(test::fromHex("5D001A"));
    record.setTimeStamp(12345);
    EXPECT_EQ(ModeSEncapsulation::encapsulateRawBin(record), test::fromHex("5D001A"));
}
