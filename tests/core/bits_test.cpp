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

TEST(Bits, AreCollectedInTheOrderOfTheList) {
    unsigned const positions[] = {7, 0, 15};
    EXPECT_EQ(collect(fromHex("01 00"), positions), 0b100U);
    EXPECT_EQ(collect(fromHex("80 01"), positions), 0b011U);
}
