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

TEST(Hex, WritesNumbersWithAtLeastTwoDigits) {
    EXPECT_EQ(hexOfNumber(0), "00");
    EXPECT_EQ(hexOfNumber(0xA), "0A");
    EXPECT_EQ(hexOfNumber(0x123), "123");
    EXPECT_EQ(hexOfNumber(0xABCD), "ABCD");
    EXPECT_EQ(hexOfNumber(0xFFFFFFFF), "FFFFFFFF");
}
