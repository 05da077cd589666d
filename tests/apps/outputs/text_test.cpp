// SPDX-License-Identifier: MIT
#include "outputs/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

using namespace quorvel;

TEST(OutputText, WritesNumbersWithAPointAndSoManyDecimals) {
    EXPECT_EQ(host::fixed(451.25, 0), "451");
    EXPECT_EQ(host::fixed(-3.9375, 5), "-3.93750");
    EXPECT_EQ(host::fixed(0.05, 1), "0.1");
    EXPECT_EQ(host::fixed(std::numeric_limits<double>::max(), 1).size(), 309U + 2U);
}

TEST(OutputText, WritesAddressesAndCodesWithAllTheirDigits) {
    EXPECT_EQ(host::addressText(0xABC), "000ABC");
    EXPECT_EQ(host::addressText(0x4840D6), "4840D6");
    EXPECT_EQ(host::squawkText(07), "0007");
    EXPECT_EQ(host::squawkText(07700), "7700");
}

TEST(OutputText, ShowsPrintableAsciiOnly) {
    EXPECT_EQ(host::printable("A\x1B[2J\n\x7F  "), "A?[2J??");
    EXPECT_EQ(host::printable("K\xC3\xBC"), "K??");
    EXPECT_EQ(host::printable("        "), "");
}

TEST(OutputText, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(host::validUtf8("Z\xC3\xBCrich\n\""), "Z\xC3\xBCrich\n\"");
    EXPECT_EQ(host::validUtf8("Z\xFCrich"), "Z\xEF\xBF\xBDrich");
}
