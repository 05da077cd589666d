// SPDX-License-Identifier: MIT
// Extraction in every format: what is left of the buffer is its end, records have the length of frames, and
// the places where the stream is cut make no difference where the format allows them; what is written reads
// back.
//
// Input: format, lengths of the pieces, stream.
#include <modes/modes_encapsulation.h>

#include "harness/day.h"
#include "harness/frames_of.h"
#include "harness/pieces.h"
#include "harness/require.h"
#include "harness/target.h"
#include "support/steered_clock.h"

namespace quorvel::fuzz {

namespace {

using modes::ModeSEncapsulation;
using Format = ModeSEncapsulation::Format;

constexpr unsigned kFormats = ModeSEncapsulation::Beast + 2; // the unknown one and one too many included

// The latest that a receiver can mean by 18 bits of seconds and 30 bits of nanoseconds.
constexpr std::uint64_t kLatest = kMidnight + ((1U << 18) - 1) * 1000ULL + ((1U << 30) - 1) / 1'000'000;

struct Extraction {
    std::vector<Frame> frames;
    std::string left;
};

void extractFrom(Extraction& extraction, std::string_view bytes, Format format) {
    extraction.left += bytes;
    auto const before = extraction.left;
    append(extraction.frames, ModeSEncapsulation::extract(extraction.left, format));
    require(extraction.left.size() <= before.size(), "the buffer never grows");
    require(before.ends_with(extraction.left), "only the front of the buffer is used up");
}

void checkTimes(std::vector<Frame> const& frames, Format format) {
    for (auto const& frame : frames) {
        bool const isReceived = format == ModeSEncapsulation::Beast || frame.time != kNow;
        require(format != ModeSEncapsulation::RawBin || !isReceived, "raw frames have the host's time");
        if (isReceived) requireWithin<std::uint64_t>(frame.time, kMidnight, kLatest, "time of a receiver");
    }
}

// What each format does with the buffer besides yielding frames.
void checkUse(std::string const& stream, Extraction const& whole, Format format) {
    switch (format) {
    case ModeSEncapsulation::RawHex:
        require(whole.left.empty() && whole.frames.empty(), "hexadecimal input is discarded");
        break;
    case ModeSEncapsulation::RawBin: {
        bool const isFrame = stream.size() == 7 || stream.size() == 14;
        require(whole.left.empty() && whole.frames.size() == (isFrame ? 1U : 0U), "a raw buffer is one frame or none");
        require(!isFrame || whole.frames[0].data == stream, "a raw frame is the buffer");
        break;
    }
    case ModeSEncapsulation::Avr: require(whole.left.empty(), "every line is used up"); break;
    case ModeSEncapsulation::Beast:
        require(whole.left.size() < 9 + 14, "what is left is part of one Beast frame");
        break;
    default: require(whole.left == stream && whole.frames.empty(), "an unknown format leaves the buffer alone");
    }
}

// A lone escape byte at the end of a buffer is given up, and so is a line without its end: such cuts are not
// allowed. Raw buffers are whole frames.
bool mayEndAfter(char byte, Format format) {
    if (format == ModeSEncapsulation::Beast) return byte != '\x1A';
    return format == ModeSEncapsulation::Avr && byte == '\n';
}

// A record in text keeps its day and second and loses its milliseconds.
void checkWayBack(Frame const& frame) {
    ModeSEncapsulation record;
    record.setTimeStamp(frame.time);
    record.setData(frame.data);

    Extraction text;
    extractFrom(text, ModeSEncapsulation::encapsulateAvr(record), ModeSEncapsulation::Avr);
    auto const time = kMidnight + frame.time % kDayMilliseconds / 1000 * 1000;
    require(text.frames == std::vector{Frame{time, frame.data}}, "text reads back");

    require(ModeSEncapsulation::encapsulateRawHex(record).size() == 2 * frame.data.size() + 1,
        "hexadecimal text is a line of two digits for each byte");
    require(ModeSEncapsulation::encapsulate(record, ModeSEncapsulation::Beast).empty(), "Beast is not written");
    if (frame.data.size() == 2) return; // raw frames are those of Mode S
    Extraction raw;
    extractFrom(raw, ModeSEncapsulation::encapsulate(record, ModeSEncapsulation::RawBin), ModeSEncapsulation::RawBin);
    require(raw.frames == std::vector{Frame{kNow, frame.data}}, "raw binary reads back");
}

void checkNames(Format format) {
    bool const isKnown = ModeSEncapsulation::Unknown < format && format <= ModeSEncapsulation::Beast;
    auto const named = ModeSEncapsulation::fromIdentifier(ModeSEncapsulation::identifier(format));
    require(named == (isKnown ? format : ModeSEncapsulation::Unknown), "an identifier names its format");
    require((ModeSEncapsulation::name(format) != "Unknown") == isKnown, "a format has a name");
}

} // namespace

void runTarget(Input input) {
    modes::test::SteeredClock const clock(kNow);
    auto const format = static_cast<Format>(input.byte() % kFormats);
    Pieces const pieces(input);
    auto const stream = input.rest();

    checkNames(format);
    Extraction whole;
    extractFrom(whole, stream, format);
    checkTimes(whole.frames, format);
    checkUse(stream, whole, format);
    for (auto const& frame : whole.frames) checkWayBack(frame);

    Extraction cut;
    pieces.of(
        stream, [&](char byte) { return mayEndAfter(byte, format); },
        [&](std::string_view piece) { extractFrom(cut, piece, format); });
    require(cut.frames == whole.frames, "the same frames whatever the pieces");
    require(cut.left == whole.left, "the same rest whatever the pieces");
}

} // namespace quorvel::fuzz
