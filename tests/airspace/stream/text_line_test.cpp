// SPDX-License-Identifier: MIT
#include "airspace/stream/text_line.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <string>

using namespace quorvel::airspace;
using quorvel::modes::test::fromHex;

namespace {

std::string const kShort = "5D4CA2D46B609F";
std::string const kLong = "8D4840D6202CC371C32CE0576098";

} // namespace

TEST(HexLine, IsAFrameOfEachLength) {
    for (std::string const& digits : {std::string("7700"), kShort, kLong}) {
        auto const frame = readHexLine(digits);
        ASSERT_TRUE(frame) << digits;
        EXPECT_EQ(frame->view(), fromHex(digits));
        EXPECT_FALSE(frame->stamp);
        EXPECT_EQ(frame->signal, 0);
        EXPECT_EQ(frame->time, 0U);
    }
}

TEST(HexLine, HasDigitsInEitherCase) {
    auto const frame = readHexLine("5d4cA2D46b609F");
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->view(), fromHex(kShort));
}

TEST(HexLine, IsNoneOfAnyOtherLength) {
    for (std::size_t digits = 0; digits <= 60; ++digits) {
        bool const isFrame = digits == 4 || digits == 14 || digits == 28;
        EXPECT_EQ(readHexLine(std::string(digits, 'A')).has_value(), isFrame) << digits;
    }
}

TEST(HexLine, IsNoneWithAnyOtherCharacterAnywhere) {
    for (int code = 0; code < 256; ++code) {
        auto const character = static_cast<char>(code);
        bool const isDigit = std::string("0123456789ABCDEFabcdef").find(character) != std::string::npos;
        for (std::size_t at = 0; at < kShort.size(); ++at) {
            auto line = kShort;
            line[at] = character;
            EXPECT_EQ(readHexLine(line).has_value(), isDigit) << code << " at " << at;
        }
    }
}

TEST(AvrLine, IsAFrameBetweenItsMarks) {
    for (auto const* const head : {"*", ":"}) {
        for (std::string const& digits : {std::string("7700"), kShort, kLong}) {
            auto const frame = readAvrLine(head + digits + ";");
            ASSERT_TRUE(frame) << head << digits;
            EXPECT_EQ(frame->view(), fromHex(digits));
            EXPECT_FALSE(frame->stamp);
        }
    }
}

TEST(AvrLine, HasATimeStampOfTwelveDigitsAfterAnAtSign) {
    auto const frame = readAvrLine("@123456789aBC" + kLong + ";");
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->view(), fromHex(kLong));
    EXPECT_EQ(frame->stamp, 0x123456789ABCU);
    EXPECT_EQ(readAvrLine("@FFFFFFFFFFFF7700;")->stamp, 0xFFFFFFFFFFFFU);
    EXPECT_EQ(readAvrLine("@0000000000007700;")->stamp, 0U);
}

TEST(AvrLine, KeepsAFrameWhoseStampIsNoNumber) {
    auto const frame = readAvrLine("@12345678-ABC" + kShort + ";");
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->view(), fromHex(kShort));
    EXPECT_FALSE(frame->stamp);
}

TEST(AvrLine, IsNoneWithoutItsMarksOrWithOthers) {
    for (std::string const& line : {std::string(), std::string(";"), std::string("*"), std::string("*;"), "*" + kShort,
             kShort + ";", "#" + kShort + ";", "*" + kShort + "; ", " *" + kShort + ";", "*" + kShort + ";;",
             "*" + kShort.substr(1) + ";", "@" + kShort + ";", std::string("@12345678901;"),
             std::string("@123456789012;"), "*123456789ABC" + kShort + ";"})
        EXPECT_FALSE(readAvrLine(line)) << line;
}

TEST(Comment, BeginsWithAQuestionMark) {
    EXPECT_TRUE(isComment("?"));
    EXPECT_TRUE(isComment("? receiver 1.0"));
    EXPECT_FALSE(isComment(""));
    EXPECT_FALSE(isComment("*?;"));
}
