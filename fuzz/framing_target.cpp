// SPDX-License-Identifier: MIT
// The host's framing: the same frames whatever the pieces in which a stream arrives, the frames that the
// library's extractors find in the whole of it, escape bytes undoubled, and memory that does not grow with
// the stream.
//
// Input: format and escapes, what is made of the stream, lengths of the pieces, stream.
#include "airspace/stream/beast_undoubler.h"
#include "airspace/stream/framer.h"
#include "airspace/stream/stream_encoding.h"

#include "harness/day.h"
#include "harness/frames_of.h"
#include "harness/heap.h"
#include "harness/pieces.h"
#include "harness/require.h"
#include "harness/target.h"
#include "support/steered_clock.h"

#include <optional>

namespace quorvel::fuzz {

namespace {

using airspace::BeastUndoubler;
using airspace::Counts;
using airspace::Encoding;
using airspace::Framer;
using modes::ModeSEncapsulation;

constexpr char kEscape = '\x1A';

// What is made of the stream, besides framing it as it is. Both take their time, so few inputs ask for them.
constexpr std::uint8_t kLonger = 0xFE;  // longer than its format needs: starts with one half, ends with the other
constexpr std::uint8_t kEndless = 0xFF; // goes on until memory would show it

bool anywhere(char) { return true; }

using Settings = std::optional<Encoding>; // detected when not given

Settings settingsFrom(std::uint8_t choices) {
    static Settings const settings[] = {std::nullopt, Encoding::Avr, Encoding::BeastPlain, Encoding::Raw, Encoding::Hex,
        Encoding::AvrStamped, Encoding::Beast, std::nullopt};
    return settings[choices & 7];
}

std::string repeated(std::string const& text, std::size_t size) {
    std::string stream;
    while (!text.empty() && stream.size() < size) stream += text;
    return stream;
}

std::string longer(std::string const& bytes) {
    auto const half = bytes.size() / 2;
    return repeated(bytes.substr(0, half), airspace::kSampleBytes) +
           repeated(bytes.substr(half), 2 * airspace::kSampleBytes);
}

using Frames = std::optional<std::vector<Frame>>; // none when the format is not recognized

template <class Feed> Frames framesOf(Settings const& settings, Feed const& feed) {
    Counts counts;
    Framer framer(settings, 0, counts);
    airspace::Frames frames;
    std::size_t bytes = 0;
    bool isKnown = true;
    feed([&](std::string_view piece) {
        if (!isKnown) return;
        bytes += piece.size();
        isKnown = framer.feed(piece, frames);
    });
    if (!isKnown || !framer.finish(frames)) {
        require(!settings, "a stream whose encoding is given can be read");
        return {};
    }
    require(counts.bytes == bytes, "every byte is counted");
    require(counts.skippedBytes <= bytes, "no more is skipped than came");
    std::vector<Frame> result;
    for (auto const& frame : frames) result.push_back({kNow, std::string(frame.view())});
    return result;
}

std::vector<Frame> extracted(std::string buffer, ModeSEncapsulation::Format format) {
    std::vector<Frame> frames;
    append(frames, ModeSEncapsulation::extract(buffer, format));
    for (auto& frame : frames) frame.time = kNow; // a framer leaves times to others
    return frames;
}

std::string withoutCarriageReturns(std::string const& stream) {
    std::string text;
    for (std::size_t i = 0; i < stream.size(); ++i) {
        if (stream[i] != '\r' || (i + 1 < stream.size() && stream[i + 1] != '\n')) text += stream[i];
    }
    return text;
}

// The lines of which the library makes frames, without those whose digits are none: it reads them all the
// same, as C reads numbers.
std::string frameLines(std::string const& text) {
    std::string lines;
    for (std::string_view rest = text; !rest.empty();) {
        auto const line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        auto const head = line.empty() || line.front() != '@' ? 1U : 13U;
        if (line.size() <= head) continue;
        auto const digits = line.substr(head, line.size() - head - 1);
        bool const isHex = digits.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos;
        if (isHex && digits.size() % 2 == 0) lines += std::string(line) + "\n";
    }
    return lines;
}

std::vector<Frame> rawFrames(std::string const& stream) {
    std::vector<Frame> frames;
    for (std::size_t at = 0; at < stream.size();) {
        std::size_t const size = (stream[at] & '\x80') != 0 ? 14 : 7;
        if (at + size <= stream.size()) frames.push_back({kNow, stream.substr(at, size)});
        at += size;
    }
    return frames;
}

// What the library finds in the whole stream, where the host only has to hand it over.
void checkAgainstTheLibrary(std::string const& stream, Settings const& settings, Frames const& frames) {
    if (settings == Encoding::Avr) {
        require(frames == extracted(frameLines(withoutCarriageReturns(stream)), ModeSEncapsulation::Avr),
            "the lines that are frames");
    }
    bool const hasIdentities = stream.find("\x1A\xE3") != std::string::npos; // which the library does not know
    if (settings == Encoding::BeastPlain && !hasIdentities) {
        require(frames == extracted(stream, ModeSEncapsulation::Beast), "the frames of the plain stream");
    }
    if (settings == Encoding::Raw) {
        require(frames == rawFrames(stream), "raw frames one after the other");
    }
}

void checkFraming(std::string const& stream, Settings const& settings, Pieces const& pieces) {
    auto const whole = framesOf(settings, [&](auto feed) { feed(stream); });
    auto const cut = framesOf(settings, [&](auto feed) { pieces.of(stream, anywhere, feed); });
    require(cut == whole, "the same frames whatever the pieces");
    checkAgainstTheLibrary(stream, settings, whole);
}

// The library keeps the memory of released records, up to a limit, for the next ones: as much of it as it
// ever will.
bool fillRecycledMemory() {
    constexpr std::size_t kMoreThanAreKept = 10'000;
    std::string stream;
    for (std::size_t i = 0; i < kMoreThanAreKept; ++i) stream += std::string{kEscape, '1'} + std::string(9, '\0');
    return modes::ModeSEncapsulation::extractBeast(stream).size() == kMoreThanAreKept;
}

// A framer holds the start of a stream until it knows what it is, then a frame or the start of a
// line. Strings have room for twice what they hold, and there are two: as received, and without the doubling.
void checkMemory(std::string const& bytes, Settings const& settings) {
    constexpr std::size_t kPiece = 4096;
    constexpr std::size_t kLine = 4096;
    bool const holdsSample = !settings;
    auto const bound = 2 * 2 * ((holdsSample ? airspace::kSampleBytes : kLine) + kPiece);
    auto const stream = repeated(bytes, 2 * bound);

    static bool const filled = fillRecycledMemory();
    require(filled, "every frame is cut out");
    auto const before = heapBytes();
    Counts counts;
    Framer framer(settings, 0, counts);
    airspace::Frames frames;
    frames.reserve(bound); // theirs is the host's memory
    auto const reserved = heapBytes() - before;
    std::string_view rest = stream;
    for (; !rest.empty(); rest.remove_prefix(std::min(rest.size(), kPiece))) {
        if (!framer.feed(rest.substr(0, kPiece), frames)) return;
        frames.clear();
        require(heapBytes() - before <= bound + reserved, "memory does not grow with the stream");
    }
}

struct BeastStream {
    std::string plain;
    std::string doubled;
};

// Frames filled with the bytes, as they are and with the escape bytes inside them doubled.
BeastStream beastOf(std::string const& bytes) {
    BeastStream stream;
    constexpr std::size_t kFrameBytes[] = {2, 7, 14};
    for (std::size_t at = 0; at < bytes.size();) {
        auto const type = static_cast<unsigned char>(bytes[at]) % 3U;
        auto body = bytes.substr(at + 1, 7 + kFrameBytes[type]);
        at += 1 + body.size();
        body.resize(7 + kFrameBytes[type]);
        std::string const head{kEscape, static_cast<char>('1' + type)};
        stream.plain += head + body;
        stream.doubled += head;
        for (char const byte : body) stream.doubled += byte == kEscape ? std::string(2, byte) : std::string(1, byte);
    }
    return stream;
}

void checkUndoubling(std::string const& bytes, Pieces const& pieces) {
    auto const stream = beastOf(bytes);
    std::string plain;
    Counts counts;
    BeastUndoubler undoubler;
    pieces.of(stream.doubled, anywhere, [&](auto piece) { undoubler.undouble(piece, plain, counts); });
    require(plain == stream.plain, "undoubling takes the doubling back");
    require(counts.brokenFrames == 0 && counts.skippedBytes == 0, "whole frames are not broken");

    auto const frames = framesOf(Encoding::Beast, [&](auto feed) { pieces.of(stream.doubled, anywhere, feed); });
    require(frames == extracted(stream.plain, ModeSEncapsulation::Beast), "the frames of the plain stream");
}

// A plain stream is whole frames and nothing between them. Returns how many.
std::size_t framesIn(std::string_view plain) {
    std::size_t frames = 0;
    for (; !plain.empty(); ++frames) {
        constexpr std::size_t kSizes[] = {9 + 2, 9 + 7, 9 + 14};
        require(plain.size() > 1 && plain[0] == kEscape, "a record starts");
        bool const isIdentity = plain[1] == '\xE3';
        require(isIdentity || (plain[1] >= '1' && plain[1] <= '3'), "of a frame or an identity");
        auto const size = isIdentity ? 10 : kSizes[plain[1] - '1'];
        require(plain.size() >= size, "a frame is whole");
        plain.remove_prefix(size);
    }
    return frames;
}

// Any bytes, taken for a doubled stream.
void checkUndoublerInPieces(std::string const& bytes, Pieces const& pieces) {
    BeastUndoubler whole;
    BeastUndoubler cut;
    Counts ofWhole;
    Counts ofCut;
    std::string wholePlain;
    std::string cutPlain;
    whole.undouble(bytes, wholePlain, ofWhole);
    pieces.of(bytes, anywhere, [&](auto piece) { cut.undouble(piece, cutPlain, ofCut); });
    whole.finish(ofWhole);
    cut.finish(ofCut);
    require(cutPlain == wholePlain, "the same plain stream whatever the pieces");
    require(ofCut.brokenFrames == ofWhole.brokenFrames && ofCut.statusFrames == ofWhole.statusFrames &&
                ofCut.skippedBytes == ofWhole.skippedBytes,
        "the same counts");
    require(wholePlain.size() + ofWhole.skippedBytes <= bytes.size(), "undoubling adds nothing");
    require(framesIn(wholePlain) <= bytes.size(), "whole frames alone come out");
}

void checkDetection(std::string const& sample) {
    for (bool const doubled : {false, true}) {
        require(airspace::chainedBytes(sample, doubled) <= sample.size(), "chained frames are part of the sample");
    }
    require(!airspace::findEncoding("") && !airspace::findEncodingForSure(""), "nothing has no encoding");
    auto const sure = airspace::findEncodingForSure(sample);
    require(!sure || sure == airspace::findEncoding(sample), "what is sure is so");
}

} // namespace

void runTarget(Input input) {
    modes::test::SteeredClock const clock(kNow);
    auto const settings = settingsFrom(input.byte());
    auto const length = input.byte();
    Pieces const pieces(input);
    auto const bytes = input.rest();

    if (length == kEndless) return checkMemory(bytes, settings);
    if (length == kLonger) return checkFraming(longer(bytes), settings, pieces);
    checkFraming(bytes, settings, pieces);
    checkDetection(bytes);
    checkUndoublerInPieces(bytes, pieces);
    checkUndoubling(bytes, pieces);
}

} // namespace quorvel::fuzz
