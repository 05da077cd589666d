// SPDX-License-Identifier: MIT
#include "modes/receiver_time.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC

} // namespace

TEST(ReceiverTime, IsASecondOfTheDayAndANanosecond) {
    EXPECT_EQ(receiverTime(fromHex("000000000000"), kMidnight), kMidnight);
    EXPECT_EQ(receiverTime(fromHex("000040000000"), kMidnight), kMidnight + 1000);
    EXPECT_EQ(receiverTime(fromHex("2A300754D4C0"), kMidnight), kMidnight + 43'200'123); // 12:00:00.123000000
    EXPECT_EQ(receiverTime(fromHex("2A30000F423F"), kMidnight),
              kMidnight + 43'200'000); // 999,999 ns are no millisecond yet
    EXPECT_EQ(receiverTime(fromHex("2A30000F4240"), kMidnight), kMidnight + 43'200'001);
    EXPECT_EQ(receiverTime(fromHex("FFFFFFFFFFFF"), kMidnight), kMidnight + 262'143'000 + 1073);
}

TEST(ReceiverTime, BearsTheDateOfTheHostsClock) {
    EXPECT_EQ(midnightBefore(kMidnight + 45'296'789), kMidnight);
    EXPECT_EQ(midnightBefore(kMidnight), kMidnight);
    EXPECT_EQ(midnightBefore(kMidnight - 1), kMidnight - 86'400'000);
    EXPECT_EQ(midnightBefore(0), 0U);
}

TEST(ReceiverTime, IsWrittenWithTheMillisecondTimesAThousand) {
    EXPECT_EQ(receiverTimeBits(43'200'123), 0x2A300001E078U);
    EXPECT_EQ(receiverTimeBits(kMidnight + 43'200'123), 0x2A300001E078U);
    EXPECT_EQ(receiverTimeBits(kMidnight + 86'399'999), 86399ULL << 30 | 999'000);
    EXPECT_EQ(receiverTimeBits(0), 0U);
}
