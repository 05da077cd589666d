// SPDX-License-Identifier: MIT
#include "host/frame_writer.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

using namespace quorvel;
using host::Encoding;
using modes::test::fromHex;

namespace {

host::Frame frame(std::string const& hex, std::optional<std::uint64_t> stamp = {}, std::uint8_t signal = 0) {
    host::Frame result{std::make_shared<modes::ModeSEncapsulation>(), stamp, signal};
    result.record->setData(fromHex(hex));
    return result;
}

std::string encoded(host::Frame const& frame, Encoding encoding) {
    std::string text;
    host::appendEncoded(text, frame, encoding);
    return text;
}

auto const kShort = "5D4CA2D46B609F";
auto const kLong = "8D4840D6202CC371C32CE0576098";

} // namespace

TEST(FrameWriter, WritesAvrLinesWithAndWithoutTimeStamp) {
    EXPECT_EQ(encoded(frame(kShort, 5), Encoding::Avr), "*5D4CA2D46B609F;\n");
    EXPECT_EQ(encoded(frame(kLong, 0x0123456789AB), Encoding::AvrStamped),
              "@0123456789AB8D4840D6202CC371C32CE0576098;\n");
    EXPECT_EQ(encoded(frame("7700"), Encoding::Avr), "*7700;\n");
}

TEST(FrameWriter, WritesAStampOfZeroForFramesThatHaveNone) {
    EXPECT_EQ(encoded(frame(kShort), Encoding::AvrStamped), "@0000000000005D4CA2D46B609F;\n");
    EXPECT_EQ(encoded(frame(kShort), Encoding::BeastPlain), fromHex("1A32 000000000000 00 5D4CA2D46B609F"));
}

TEST(FrameWriter, WritesTheBeastTypeThatGoesWithTheLength) {
    EXPECT_EQ(encoded(frame("7700", 1, 2), Encoding::Beast), fromHex("1A31 000000000001 02 7700"));
    EXPECT_EQ(encoded(frame(kShort, 1, 2), Encoding::Beast), fromHex("1A32 000000000001 02 5D4CA2D46B609F"));
    EXPECT_EQ(encoded(frame(kLong, 1, 2), Encoding::Beast),
              fromHex("1A33 000000000001 02 8D4840D6202CC371C32CE0576098"));
}

TEST(FrameWriter, DoublesEveryEscapeByteInsideABeastFrameWhereAsked) {
    auto const everywhere = frame("5D1A1AD46B601A", 0x1A000000001A, 0x1A);
    EXPECT_EQ(encoded(everywhere, Encoding::Beast),
              fromHex("1A32 1A1A000000001A1A 1A1A 5D1A1A1A1AD46B601A1A"));
    EXPECT_EQ(encoded(everywhere, Encoding::BeastPlain), fromHex("1A32 1A000000001A 1A 5D1A1AD46B601A"));
}

TEST(FrameWriter, WritesNoBeastFrameOfALengthThatNoFrameHas) {
    EXPECT_EQ(encoded(frame("5D4CA2"), Encoding::Beast), "");
}

TEST(FrameWriter, WritesRawBytesAndHexadecimalLines) {
    EXPECT_EQ(encoded(frame(kShort, 5), Encoding::Raw), fromHex(kShort));
    EXPECT_EQ(encoded(frame(kShort, 5), Encoding::Hex), "5D4CA2D46B609F\n");
    EXPECT_EQ(encoded(frame("7700"), Encoding::Hex), "7700\n");
}

TEST(FrameWriter, LeavesModeAcRepliesOutOfRawStreamsWhichCannotTellThem) {
    EXPECT_EQ(encoded(frame("7700"), Encoding::Raw), "");
}

TEST(FrameWriter, AppendsToWhatIsThere) {
    std::string stream;
    host::appendEncoded(stream, frame(kShort), Encoding::Hex);
    host::appendEncoded(stream, frame("7700"), Encoding::Hex);
    EXPECT_EQ(stream, "5D4CA2D46B609F\n7700\n");
}
