// SPDX-License-Identifier: MIT
#include "core/hex.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

TEST(Hex, WritesEachByteAsTwoUpperCaseDigits) {
    using namespace std::string_view_literals;
    EXPECT_EQ(hexOfBytes(""), "");
    EXPECT_EQ(hexOfBytes("\x00\x0F\xAB\xFF"sv), "000FABFF");
    std::string text = "*";
    appendHex(text, "\x5D\x4C"sv);
    EXPECT_EQ(text, "*5D4C");
}

TEST(Hex, WritesTheLastDigitsOfANumber) {
    std::string text = "@";
    appendHex(text, 0x2A300001E078, 12);
    EXPECT_EQ(text, "@2A300001E078");
    appendHex(text, 0x1234, 3);
    appendHex(text, 0xF, 2);
    EXPECT_EQ(text, "@2A300001E0782340F");
}

TEST(Hex, ReadsDigitsOfEitherCaseAndNothingElse) {
    std::string_view const digits = "0123456789ABCDEFabcdef";
    for (int character = 0; character < 256; ++character) {
        auto const at = digits.find(static_cast<char>(character));
        auto const expected = at == std::string_view::npos ? kNoHexDigit : at < 16 ? at : at - 6;
        EXPECT_EQ(hexDigitValue(static_cast<char>(character)), expected) << character;
    }
}

TEST(Hex, WritesNumbersWithAtLeastTwoDigits) {
    EXPECT_EQ(hexOfNumber(0), "00");
    EXPECT_EQ(hexOfNumber(0xA), "0A");
    EXPECT_EQ(hexOfNumber(0x123), "123");
    EXPECT_EQ(hexOfNumber(0xABCD), "ABCD");
    EXPECT_EQ(hexOfNumber(0xFFFFFFFF), "FFFFFFFF");
}
