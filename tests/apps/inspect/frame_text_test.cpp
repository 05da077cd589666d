// SPDX-License-Identifier: MIT
#include "inspect/frame_text.h"

#include "files/host_error.h"
#include "support/bytes.h"

#include <gmock/gmock.h>

namespace quorvel::inspect {

namespace {

using modes::test::fromHex;
using ::testing::HasSubstr;

std::string const kFrame = fromHex("8D4840D6202CC371C32CE0576098");

std::string refusalOf(std::string const& text) {
    try {
        parseFrame(text);
    } catch (files::HostError const& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST(FrameText, ReadsHexadecimalDigitsOfEitherCase) {
    EXPECT_EQ(parseFrame("8D4840D6202CC371C32CE0576098"), kFrame);
    EXPECT_EQ(parseFrame("8d4840d6202cc371c32ce0576098"), kFrame);
}

TEST(FrameText, LeavesBlanksOut) { EXPECT_EQ(parseFrame(" 8D 4840D6\t202CC371C32CE0 576098\r\n"), kFrame); }

TEST(FrameText, ReadsAvrLinesWithAndWithoutTimeStamp) {
    EXPECT_EQ(parseFrame("*8D4840D6202CC371C32CE0576098;"), kFrame);
    EXPECT_EQ(parseFrame(":8D4840D6202CC371C32CE0576098;"), kFrame);
    EXPECT_EQ(parseFrame("@0123456789AB8D4840D6202CC371C32CE0576098;"), kFrame);
    EXPECT_EQ(parseFrame("@no-numbers!!8D4840D6202CC371C32CE0576098;"), kFrame) << "the stamp is left out";
}

TEST(FrameText, ReadsShortFramesAndModeACReplies) {
    EXPECT_EQ(parseFrame("5D4CA2D46B609F").size(), 7U);
    EXPECT_EQ(parseFrame("*7700;"), fromHex("7700"));
}

TEST(FrameText, RefusesWhatIsNoFrameAndQuotesIt) {
    EXPECT_EQ(refusalOf("8D48"), ""); // as long as a Mode A/C reply
    for (std::string const text : {"hello", "8D4840", "8D4840D6202CC", "", "*8D4840D6202CC3", "8D4840D6202CC3;", "*",
             ";", "@012345;", "?", "**8D4840D6202CC3;", "*8D4840D6202CC3;;"}) {
        EXPECT_EQ(refusalOf(text), "\"" + text +
                                       "\" is not a frame: one has 4, 14 or 28 hexadecimal digits; an AVR line ends "
                                       "with \";\", and a time stamp in it has 12 digits");
    }
}

TEST(FrameText, QuotesNeitherControlCharactersNorEndlessText) {
    EXPECT_THAT(refusalOf("\x1B[31m"), HasSubstr("\"?[31m\""));
    EXPECT_LT(refusalOf(std::string(5000, 'x')).size(), 200U);
}

TEST(FrameText, WritesBytesAndNumbersAsDigits) {
    EXPECT_EQ(hexText(fromHex("00FF8A")), "00FF8A");
    EXPECT_EQ(hexText(0xABC, 6), "000ABC");
    EXPECT_EQ(hexText(0x1234567, 6), "1234567");
    EXPECT_EQ(hexText(0, 1), "0");
}

TEST(FrameText, ReadsBitsAcrossBytes) {
    EXPECT_EQ(bitsOf(kFrame, 0, 5), 17U);
    EXPECT_EQ(bitsOf(kFrame, 8, 24), 0x4840D6U);
    EXPECT_EQ(bitsOf(kFrame, 111, 1), 0U);
    EXPECT_EQ(bitsOf(kFrame, 32, 56), 0x202CC371C32CE0U);
}

} // namespace quorvel::inspect
