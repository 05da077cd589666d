// SPDX-License-Identifier: MIT
#include "core/bits.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;

TEST(Bits, AreCountedFromTheMostSignificantBitOfTheFirstByte) {
    auto const bytes = fromHex("80 01");
    for (unsigned i = 0; i < 16; ++i) EXPECT_EQ(bit(bytes, i), i == 0 || i == 15) << i;
}

TEST(Bits, FormNumbersAcrossByteBorders) {
    auto const bytes = fromHex("12 34 56 78 9A");
    EXPECT_EQ(bits(bytes, 0, 4), 0x1U);
    EXPECT_EQ(bits(bytes, 4, 8), 0x23U);
    EXPECT_EQ(bits(bytes, 4, 32), 0x23456789U);
    EXPECT_EQ(bits<std::uint64_t>(bytes, 0, 40), 0x123456789AU);
    EXPECT_EQ(bits(bytes, 39, 1), 0U);
    EXPECT_EQ(bits(bytes, 7, 0), 0U);
}

TEST(Bits, OfHighBytesAreNotSignExtended) { EXPECT_EQ(bits(fromHex("FF FF"), 4, 8), 0xFFU); }

TEST(Bits, EqualTheirDigitsWrittenOneByOne) {
    auto const bytes = fromHex("A7 1C 00 FF 5B 93 E0 4D 82");
    for (unsigned position = 0; position < 72; ++position) {
        for (unsigned width = 0; width <= 57 && position + width <= 72; ++width) {
            std::uint64_t expected = 0;
            for (unsigned i = 0; i < width; ++i) expected = 2 * expected + (bit(bytes, position + i) ? 1 : 0);
            EXPECT_EQ(bits<std::uint64_t>(bytes, position, width), expected) << position << ", " << width;
        }
    }
}

TEST(ScatteredBits, AreCollectedInTheOrderOfTheList) {
    constexpr unsigned positions[] = {7, 0, 15};
    constexpr ScatteredBits scattered(positions);
    EXPECT_EQ(scattered.of(fromHex("01 00")), 0b100U);
    EXPECT_EQ(scattered.of(fromHex("80 01")), 0b011U);
}

TEST(ScatteredBits, AreTakenFromTheTwoBytesThatHoldThem) {
    constexpr unsigned positions[] = {30, 19, 21, 31, 24};
    constexpr ScatteredBits scattered(positions);
    for (unsigned value = 0; value < 0x10000; ++value) {
        std::string const bytes = {'\x55', '\x55', static_cast<char>(value >> 8), static_cast<char>(value), '\x55'};
        std::uint32_t expected = 0;
        for (auto const position : positions) expected = 2 * expected + (bit(bytes, position) ? 1 : 0);
        ASSERT_EQ(scattered.of(bytes), expected) << value;
    }
}

TEST(ScatteredBits, MayBeginAtAnyByte) {
    for (unsigned first = 0; first < 128; ++first) {
        unsigned const positions[] = {first, first / 8 * 8 + 15};
        ScatteredBits const scattered(positions);
        auto const none = std::string(17, '\0');
        EXPECT_EQ(scattered.of(none), 0U) << first;
        EXPECT_EQ(scattered.of(test::withBitsInverted(none, {positions[0]})), 0b10U) << first;
        EXPECT_EQ(scattered.of(test::withBitsInverted(none, {positions[1]})), 0b01U) << first;
    }
}
