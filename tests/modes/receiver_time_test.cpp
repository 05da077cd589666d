// SPDX-License-Identifier: MIT
#include "modes/receiver_time.h"

#include "support/bytes.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC

} // namespace

TEST(ReceiverTime, IsASecondOfTheDayAndANanosecond) {
    test::SteeredClock const clock(kMidnight + 45'296'789);
    EXPECT_EQ(receiverTime(fromHex("000000000000")), kMidnight);
    EXPECT_EQ(receiverTime(fromHex("000040000000")), kMidnight + 1000);
    EXPECT_EQ(receiverTime(fromHex("2A300754D4C0")), kMidnight + 43'200'123); // 12:00:00.123000000
    EXPECT_EQ(receiverTime(fromHex("2A30000F423F")),
              kMidnight + 43'200'000); // 999,999 ns are no millisecond yet
    EXPECT_EQ(receiverTime(fromHex("2A30000F4240")), kMidnight + 43'200'001);
    EXPECT_EQ(receiverTime(fromHex("FFFFFFFFFFFF")), kMidnight + 262'143'000 + 1073);
}

TEST(ReceiverTime, BearsTheDateOfTheHostsClock) {
    auto const justBefore = fromHex("545FC0000000"); // 23:59:59
    test::SteeredClock clock(kMidnight - 1);
    EXPECT_EQ(receiverTime(justBefore), kMidnight - 1000);
    clock.set(kMidnight);
    EXPECT_EQ(receiverTime(justBefore), kMidnight + 86'399'000) << "it lands on the new day";
}

TEST(ReceiverTime, IsWrittenWithTheMillisecondTimesAThousand) {
    EXPECT_EQ(receiverTimeBits(43'200'123), 0x2A300001E078U);
    EXPECT_EQ(receiverTimeBits(kMidnight + 43'200'123), 0x2A300001E078U);
    EXPECT_EQ(receiverTimeBits(kMidnight + 86'399'999), 86399ULL << 30 | 999'000);
    EXPECT_EQ(receiverTimeBits(0), 0U);
}
