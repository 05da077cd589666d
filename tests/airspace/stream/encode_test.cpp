// SPDX-License-Identifier: MIT
#include <airspace/encoding.h>

#include "support/bytes.h"

#include <gtest/gtest.h>

using namespace quorvel;
using airspace::Encoding;
using modes::test::fromHex;

namespace {

airspace::Frame frame(std::string const& hex, std::optional<std::uint64_t> stamp = {}, std::uint8_t signal = 0) {
    auto result = airspace::Frame::of(fromHex(hex));
    result.stamp = stamp;
    result.signal = signal;
    return result;
}

std::string encoded(airspace::Frame const& frame, Encoding encoding) {
    std::string text;
    airspace::appendEncoded(text, frame, encoding);
    return text;
}

auto const kShort = "5D4CA2D46B609F";
auto const kLong = "8D4840D6202CC371C32CE0576098";

} // namespace

TEST(Encoded, WritesAvrLinesWithAndWithoutTimeStamp) {
    EXPECT_EQ(encoded(frame(kShort, 5), Encoding::Avr), "*5D4CA2D46B609F;\n");
    EXPECT_EQ(
        encoded(frame(kLong, 0x0123456789AB), Encoding::AvrStamped), "@0123456789AB8D4840D6202CC371C32CE0576098;\n");
    EXPECT_EQ(encoded(frame("7700"), Encoding::Avr), "*7700;\n");
}

TEST(Encoded, WritesAStampOfZeroForFramesThatHaveNone) {
    EXPECT_EQ(encoded(frame(kShort), Encoding::AvrStamped), "@0000000000005D4CA2D46B609F;\n");
    EXPECT_EQ(encoded(frame(kShort), Encoding::BeastPlain), fromHex("1A32 000000000000 00 5D4CA2D46B609F"));
}

TEST(Encoded, WritesTheBeastTypeThatGoesWithTheLength) {
    EXPECT_EQ(encoded(frame("7700", 1, 2), Encoding::Beast), fromHex("1A31 000000000001 02 7700"));
    EXPECT_EQ(encoded(frame(kShort, 1, 2), Encoding::Beast), fromHex("1A32 000000000001 02 5D4CA2D46B609F"));
    EXPECT_EQ(
        encoded(frame(kLong, 1, 2), Encoding::Beast), fromHex("1A33 000000000001 02 8D4840D6202CC371C32CE0576098"));
}

TEST(Encoded, DoublesEveryEscapeByteInsideABeastFrameWhereAsked) {
    auto const everywhere = frame("5D1A1AD46B601A", 0x1A000000001A, 0x1A);
    EXPECT_EQ(encoded(everywhere, Encoding::Beast), fromHex("1A32 1A1A000000001A1A 1A1A 5D1A1A1A1AD46B601A1A"));
    EXPECT_EQ(encoded(everywhere, Encoding::BeastPlain), fromHex("1A32 1A000000001A 1A 5D1A1AD46B601A"));
}

TEST(Encoded, WritesNoBeastFrameOfALengthThatNoFrameHas) { EXPECT_EQ(encoded(frame("5D4CA2"), Encoding::Beast), ""); }

TEST(Encoded, WritesRawBytesAndHexadecimalLines) {
    EXPECT_EQ(encoded(frame(kShort, 5), Encoding::Raw), fromHex(kShort));
    EXPECT_EQ(encoded(frame(kShort, 5), Encoding::Hex), "5D4CA2D46B609F\n");
    EXPECT_EQ(encoded(frame("7700"), Encoding::Hex), "7700\n");
}

TEST(Encoded, LeavesModeAcRepliesOutOfRawStreamsWhichCannotDistinguishThem) {
    EXPECT_EQ(encoded(frame("7700"), Encoding::Raw), "");
}

TEST(Encoded, AppendsToWhatIsThere) {
    std::string stream;
    airspace::appendEncoded(stream, frame(kShort), Encoding::Hex);
    airspace::appendEncoded(stream, frame("7700"), Encoding::Hex);
    EXPECT_EQ(stream, "5D4CA2D46B609F\n7700\n");
}
