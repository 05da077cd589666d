// SPDX-License-Identifier: MIT
#include "inspect/conversion.h"

#include "support/bytes.h"

#include <gmock/gmock.h>

namespace quorvel::inspect {

namespace {

using modes::test::fromHex;

constexpr char kFrame[] = "5D4CA2D46B609F";

airspace::Frame frameOf(std::string const& hex, std::optional<std::uint64_t> stamp = {}, std::uint8_t signal = 0) {
    auto frame = airspace::Frame::of(fromHex(hex));
    frame.stamp = stamp;
    frame.signal = signal;
    return frame;
}

struct Converted {
    Conversion conversion;
    std::string bytes;
};

Converted converted(airspace::Encoding to, airspace::Frames const& frames) {
    Converted result{Conversion(to), ""};
    result.conversion.append(frames, result.bytes);
    return result;
}

} // namespace

TEST(Conversion, KeepsTimeStampsAndSignalLevelsWhereTheyHaveAPlace) {
    airspace::Frames const frames{frameOf(kFrame, 0x0123456789AB, 7)};
    EXPECT_EQ(converted(airspace::Encoding::AvrStamped, frames).bytes, "@0123456789AB5D4CA2D46B609F;\n");
    EXPECT_EQ(converted(airspace::Encoding::Beast, frames).bytes, fromHex("1A32 0123456789AB 07 5D4CA2D46B609F"));
    EXPECT_EQ(converted(airspace::Encoding::Beast, frames).conversion.signalsLeftOut(), 0U);
}

TEST(Conversion, CountsWhatHasNoPlace) {
    airspace::Frames const frames{frameOf(kFrame, 1, 7), frameOf(kFrame, 2, 0), frameOf(kFrame), frameOf("7700", 3, 9)};
    auto const avr = converted(airspace::Encoding::Avr, frames).conversion;
    EXPECT_EQ(avr.frames(), 3U);
    EXPECT_EQ(avr.modeAcFrames(), 1U);
    EXPECT_EQ(avr.leftOut(), 0U);
    EXPECT_EQ(avr.stampsLeftOut(), 3U);
    EXPECT_EQ(avr.signalsLeftOut(), 2U);
    EXPECT_EQ(avr.unstamped(), 0U);

    auto const raw = converted(airspace::Encoding::Raw, frames);
    EXPECT_EQ(raw.bytes, fromHex("5D4CA2D46B609F 5D4CA2D46B609F 5D4CA2D46B609F"));
    EXPECT_EQ(raw.conversion.leftOut(), 1U);
    EXPECT_EQ(raw.conversion.modeAcFrames(), 0U);
}

TEST(Conversion, WritesNoTimeStampThatWasNotThere) {
    auto const avr = converted(airspace::Encoding::AvrStamped, {frameOf(kFrame), frameOf(kFrame, 0)});
    EXPECT_EQ(avr.bytes, "*5D4CA2D46B609F;\n@0000000000005D4CA2D46B609F;\n");
    EXPECT_EQ(avr.conversion.unstamped(), 1U);
    EXPECT_EQ(
        converted(airspace::Encoding::Beast, {frameOf(kFrame)}).bytes, fromHex("1A32 000000000000 00 5D4CA2D46B609F"));
}

} // namespace quorvel::inspect
