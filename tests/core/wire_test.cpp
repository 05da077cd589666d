// SPDX-License-Identifier: MIT
#include "core/wire.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using namespace quorvel::modes::wire;
using test::fromHex;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC

std::uint64_t timeOfDayIn(std::string const& stamp) { return timeOfDayMs(stampAt(stamp, 0)); }

} // namespace

TEST(Wire, HasFramesOfThreeLengths) {
    for (std::size_t bytes = 0; bytes < 32; ++bytes) {
        EXPECT_EQ(isFrameLength(bytes), bytes == 2 || bytes == 7 || bytes == 14) << bytes;
    }
}

TEST(Wire, HasTheFormatFirstAndTheTypeCodeFirstInAPayload) {
    auto const squitter = fromHex("8D4840D6202CC371C32CE0576098");
    EXPECT_EQ(formatCode(squitter), 17U);
    EXPECT_EQ(typeCode(squitter), 4U);
    EXPECT_EQ(bits(squitter, kAddressAt, kAddressBits), 0x4840D6U);
    EXPECT_EQ(formatCode("\xFF"), 31U);
}

TEST(Wire, StampsAreASecondOfTheDayAndANanosecond) {
    EXPECT_EQ(timeOfDayIn(fromHex("000000000000")), 0U);
    EXPECT_EQ(timeOfDayIn(fromHex("000040000000")), 1000U);
    EXPECT_EQ(timeOfDayIn(fromHex("2A300754D4C0")), 43'200'123U); // 12:00:00.123000000
    EXPECT_EQ(timeOfDayIn(fromHex("2A30000F423F")), 43'200'000U); // 999,999 ns are no millisecond yet
    EXPECT_EQ(timeOfDayIn(fromHex("2A30000F4240")), 43'200'001U);
    EXPECT_EQ(timeOfDayIn(fromHex("FFFFFFFFFFFF")), 262'143'000U + 1073U);
    EXPECT_EQ(stampAt(fromHex("1A33 2A300754D4C0 FF"), 2), 0x2A300754D4C0U);
    EXPECT_EQ(stampOf(43'200, 123'000'000), 0x2A300754D4C0U);
}

TEST(Wire, StampsBeyondADayOrASecondAreNoTimesOfDay) {
    EXPECT_TRUE(canBeTimeOfDay(stampOf(86'399, 999'999'999)));
    EXPECT_FALSE(canBeTimeOfDay(stampOf(86'400, 0)));
    EXPECT_FALSE(canBeTimeOfDay(stampOf(0, 1'000'000'000)));
}

TEST(Wire, DaysBeginAtMidnight) {
    EXPECT_EQ(midnightBefore(kMidnight + 45'296'789), kMidnight);
    EXPECT_EQ(midnightBefore(kMidnight), kMidnight);
    EXPECT_EQ(midnightBefore(kMidnight - 1), kMidnight - 86'400'000);
    EXPECT_EQ(midnightBefore(0), 0U);
}

TEST(Wire, TimesOfDayAreComparedOverMidnight) {
    EXPECT_EQ(msBetweenTimesOfDay(1000, 3500), 2500);
    EXPECT_EQ(msBetweenTimesOfDay(3500, 1000), -2500);
    EXPECT_EQ(msBetweenTimesOfDay(86'399'000, 1000), 2000);
    EXPECT_EQ(msBetweenTimesOfDay(1000, 86'399'000), -2000);
    EXPECT_EQ(msBetweenTimesOfDay(kMidnight + 1000, 3500), 2500);
}

TEST(Wire, CountsAreComparedOverTheirWrap) {
    EXPECT_EQ(ticksBetween(100, 350), 250);
    EXPECT_EQ(ticksBetween(350, 100), -250);
    EXPECT_EQ(ticksBetween(0xFFFF'FFFF'FFFF, 4), 5);
    EXPECT_EQ(ticksBetween(4, 0xFFFF'FFFF'FFFF), -5);
}

TEST(BeastRecord, IsAsLongAsItsTypeSays) {
    for (int value = 0; value < 256; ++value) {
        auto const type = static_cast<char>(value);
        auto const expected = type == '1'                                 ? 11U
                              : type == '2'                               ? 16U
                              : type == '3' || type == '4' || type == '5' ? 23U
                              : value == 0xE3                             ? 10U
                                                                          : 0U;
        EXPECT_EQ(BeastRecord::bytes(type), expected) << value;
        EXPECT_LE(BeastRecord::bytes(type), BeastRecord::kLongestBytes) << value;
    }
}

TEST(BeastRecord, HasTheTypeOfTheLengthOfItsFrame) {
    EXPECT_EQ(BeastRecord::typeOf(2), '1');
    EXPECT_EQ(BeastRecord::typeOf(7), '2');
    EXPECT_EQ(BeastRecord::typeOf(14), '3');
    for (std::size_t const bytes : {0U, 1U, 6U, 8U, 13U, 15U}) EXPECT_EQ(BeastRecord::typeOf(bytes), 0) << bytes;
}
