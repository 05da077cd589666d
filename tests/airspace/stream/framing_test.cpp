// SPDX-License-Identifier: MIT
#include "airspace/stream/beast_undoubler.h"
#include "airspace/stream/frameless_span.h"
#include "airspace/stream/framer.h"
#include "airspace/stream/stream_encoding.h"

#include <modes/modes_encapsulation.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using quorvel::modes::ModeSEncapsulation;
using quorvel::modes::test::CapturedLog;
using quorvel::modes::test::fromHex;
using quorvel::modes::test::Noise;

namespace {

// Beast frames with many escape bytes inside, plain and doubled.
struct BeastStream {
    std::string plain;
    std::string doubled;
    std::vector<std::string> frames;
};

BeastStream beastStream(int count, unsigned escapes, std::uint64_t seed = 1) {
    Noise noise(seed);
    BeastStream stream;
    for (int i = 0; i < count; ++i) {
        auto const type = static_cast<char>('1' + i % 3);
        auto body = noise.bytes(7 + (type == '1' ? 2U : type == '2' ? 7U : 14U));
        for (auto& byte : body) {
            if (byte == '\x1A') byte = '\0';
            if (noise.below(100) < escapes) byte = '\x1A';
        }
        stream.frames.push_back(body.substr(7));
        stream.plain += std::string("\x1A") + type + body;
        stream.doubled += std::string("\x1A") + type;
        for (char const byte : body) stream.doubled += byte == '\x1A' ? std::string(2, byte) : std::string(1, byte);
    }
    return stream;
}

std::vector<std::string> bytesOf(Frames const& frames) {
    std::vector<std::string> bytes;
    for (auto const& frame : frames) bytes.push_back(std::string(frame.view()));
    return bytes;
}

// What a framer makes of a stream that comes in pieces of at most this length.
struct Framed {
    Counts counts;
    Frames frames;
    bool isKnown = true; // the encoding

    Framed(std::string const& stream, std::optional<Encoding> encoding, std::size_t longest) {
        Framer framer(encoding, 0, counts);
        Noise noise(2);
        for (std::size_t at = 0; at < stream.size();) {
            auto const size = std::min<std::size_t>(1 + noise.below(longest), stream.size() - at);
            isKnown = framer.feed(std::string_view(stream).substr(at, size), frames) && isKnown;
            at += size;
        }
        isKnown = framer.finish(frames) && isKnown;
    }
};

std::vector<std::string> framesOf(
    std::string const& stream, std::optional<Encoding> encoding = {}, std::size_t longest = 100) {
    return bytesOf(Framed(stream, encoding, longest).frames);
}

std::vector<std::string> framesInPieces(std::string_view stream, std::size_t piece) {
    Counts counts;
    Framer framer(std::nullopt, 0, counts);
    Frames frames;
    for (; !stream.empty(); stream.remove_prefix(std::min(piece, stream.size())))
        framer.feed(stream.substr(0, piece), frames);
    return bytesOf(frames);
}

} // namespace

TEST(BeastUndoubler, MakesThePlainStreamWhateverThePieces) {
    auto const stream = beastStream(500, 20);
    Noise noise(9);
    for (std::size_t const longest : {1U, 2U, 7U, 100U, 100000U}) {
        Counts counts;
        BeastUndoubler undoubler;
        std::string plain;
        for (std::size_t at = 0; at < stream.doubled.size();) {
            auto const size = 1 + noise.below(longest);
            undoubler.undouble(std::string_view(stream.doubled).substr(at, size), plain, counts);
            at += size;
        }
        EXPECT_TRUE(plain == stream.plain) << longest;
        EXPECT_EQ(counts.brokenFrames, 0U);
        EXPECT_EQ(counts.skippedBytes, 0U);
    }
}

TEST(BeastUndoubler, DropsABrokenFrameAndGoesOnWithTheNext) {
    auto const frame = fromHex("1A32 000000000000 00 01020304050607");
    Counts counts;
    BeastUndoubler undoubler;
    std::string plain;
    undoubler.undouble(frame.substr(0, 11) + frame, plain, counts);
    EXPECT_EQ(plain, frame);
    EXPECT_EQ(counts.brokenFrames, 1U);
    undoubler.undouble(frame.substr(0, 11) +
                           "\x1A"
                           "9" +
                           frame,
        plain, counts);
    EXPECT_EQ(plain, frame + frame);
    EXPECT_EQ(counts.brokenFrames, 2U);
    undoubler.undouble(frame.substr(0, 11), plain, counts);
    undoubler.finish(counts);
    EXPECT_EQ(counts.brokenFrames, 3U) << "the end of the stream breaks a frame too";
}

TEST(BeastUndoubler, DropsStatusFramesAndWhatIsBetweenFrames) {
    auto const frame = fromHex("1A32 000000000000 00 01020304050607");
    auto const status = fromHex("1A34 000000000000 00 1A1A020304050607 0708090A0B0C0D");
    Counts counts;
    BeastUndoubler undoubler;
    std::string plain;
    undoubler.undouble("noise" + fromHex("1A1A33") + status + frame + "more noise" + frame, plain, counts);
    EXPECT_EQ(plain, frame + frame);
    EXPECT_EQ(counts.statusFrames, 1U);
    EXPECT_EQ(counts.skippedBytes, 5U + 3U + 10U);
}

TEST(BeastEscapes, AreFoundFromTheBeginningOfTheStream) {
    auto const stream = beastStream(300, 5);
    EXPECT_TRUE(looksDoubled(stream.doubled));
    EXPECT_FALSE(looksDoubled(stream.plain));
    EXPECT_TRUE(looksDoubled(stream.doubled.substr(3)));
    EXPECT_FALSE(looksDoubled(stream.plain.substr(3)));
    EXPECT_TRUE(looksDoubled(beastStream(300, 0).plain)) << "without any, the way receivers send";
    EXPECT_TRUE(looksDoubled(""));
}

TEST(StreamEncoding, IsFoundFromTheFirstBytes) {
    auto const stream = beastStream(100, 5);
    EXPECT_EQ(findEncoding(stream.plain), Encoding::BeastPlain);
    EXPECT_EQ(findEncoding(stream.doubled), Encoding::Beast);
    EXPECT_EQ(findEncoding(stream.doubled.substr(0, 24)), Encoding::Beast);
    EXPECT_EQ(findEncoding("garbage" + stream.doubled), Encoding::Beast);
    EXPECT_EQ(findEncoding("*8D4840D6202CC371C32CE0576098;\n"), Encoding::Avr);
    EXPECT_EQ(findEncoding("Trying 192.0.2.1...\r\n@2A300754D4C05D4CA2D46B609F;\r\n"), Encoding::Avr);
    EXPECT_EQ(findEncoding(":5D4CA2D46B609F;"), Encoding::Avr);
    for (auto const& text : {std::string(), std::string("hello\nworld\n"), std::string("*\n*;\n"),
             std::string(5000, '\x1A'), Noise(4).bytes(65536)}) {
        EXPECT_FALSE(findEncoding(text)) << text.substr(0, 20);
    }
}

TEST(StreamEncoding, OfLinesIsThatOfMostOfThem) {
    std::string const avr = "*5D4CA2D46B609F;\n";
    std::string const hex = "5D4CA2D46B609F\n";
    for (auto const find : {findEncoding, findEncodingForSure}) {
        EXPECT_EQ(find(avr + hex + hex + hex + hex), Encoding::Hex);
        EXPECT_EQ(find(hex + avr + avr + avr + avr), Encoding::Avr);
        EXPECT_EQ(find(avr + avr + avr + avr + hex + hex + hex + hex), Encoding::Avr);
    }
}

TEST(StreamEncoding, OfRawBinaryIsFoundFromIntactSquitters) {
    auto const shortFrame = fromHex("5D4CA2D46B609F");
    auto const squitter = fromHex("8D4840D6202CC371C32CE0576098");
    auto damaged = squitter;
    damaged[7] = '\0';
    EXPECT_EQ(findEncoding(squitter), Encoding::Raw);
    EXPECT_EQ(findEncoding(shortFrame + squitter + shortFrame + squitter.substr(0, 9)), Encoding::Raw);
    EXPECT_EQ(findEncoding(squitter + damaged), Encoding::Raw);
    EXPECT_FALSE(findEncoding(squitter + damaged + damaged));
    EXPECT_FALSE(findEncoding(shortFrame + shortFrame)) << "nothing in it proves itself";
    EXPECT_EQ(framesOf(shortFrame + squitter), (std::vector{shortFrame, squitter}));
}

TEST(Framer, FindsFormatAndEscapesByItself) {
    CapturedLog log;
    auto const stream = beastStream(6000, 5);
    ASSERT_GT(stream.plain.size(), kSampleBytes);
    EXPECT_TRUE(framesOf(stream.plain) == stream.frames);
    EXPECT_TRUE(framesOf(stream.doubled) == stream.frames);
    auto const few = beastStream(5, 10, 3);
    EXPECT_TRUE(framesOf(few.plain) == few.frames) << "a stream that ends before there is a whole sample";
    EXPECT_TRUE(framesOf(few.doubled) == few.frames);
}

// Found by fuzzing: all that had come was the sample, however much it was.
TEST(Framer, JudgesAStreamByItsBeginningWhateverThePieces) {
    CapturedLog log(quorvel::modes::Log::Error);
    std::string lines;
    while (lines.size() < kSampleBytes) lines += "*5D4CA2D46B609F;\n";
    auto const count = lines.size() / std::string("*5D4CA2D46B609F;\n").size();
    auto const few = beastStream(4000, 5);
    auto const many = beastStream(12'000, 5);
    ASSERT_GT(few.plain.size(), kSampleBytes);
    for (std::size_t const piece : {std::size_t{1000}, kSampleBytes, 10 * kSampleBytes}) {
        EXPECT_EQ(framesInPieces(lines + many.plain, piece).size(), count) << piece;
        auto const frames = framesInPieces(few.plain + many.doubled, piece);
        ASSERT_GE(frames.size(), few.frames.size()) << piece;
        EXPECT_TRUE(std::equal(few.frames.begin(), few.frames.end(), frames.begin())) << piece;
    }
}

TEST(Framer, UsesTheEncodingItIsGiven) {
    auto const stream = beastStream(300, 5);
    EXPECT_TRUE(framesOf(stream.doubled, Encoding::Beast) == stream.frames);
    EXPECT_TRUE(framesOf(stream.plain, Encoding::BeastPlain) == stream.frames);
    EXPECT_FALSE(framesOf(stream.plain, Encoding::Beast) == stream.frames);
}

TEST(Framer, KeepsALastFrameThatEndsInAnEscapeByte) {
    auto const frame = fromHex("1A32 000000000000 00 0102030405061A");
    EXPECT_EQ(framesOf(frame + frame, Encoding::BeastPlain).size(), 2U);
}

TEST(Framer, FindsBeastWithRecordsOfOtherKindsBetweenTheFrames) {
    auto const stream = beastStream(300, 5);
    std::string mixed;
    std::string_view rest = stream.doubled;
    for (std::size_t at = 1; !rest.empty();) {
        while (at + 1 < rest.size() && !(rest[at] == '\x1A' && rest[at + 1] != '\x1A' && rest[at - 1] != '\x1A')) ++at;
        auto const end = at + 1 < rest.size() ? at : rest.size();
        mixed += fromHex("1AE3 0001020304050607") + std::string(rest.substr(0, end));
        rest.remove_prefix(end);
        at = 1;
    }
    EXPECT_EQ(findEncoding(mixed), Encoding::Beast);
    EXPECT_TRUE(looksDoubled(mixed));
}

TEST(Framer, CutsLinesAtTheirEnds) {
    CapturedLog log(quorvel::modes::Log::Info);
    std::string text;
    std::vector<std::string> expected;
    Noise noise(6);
    for (int i = 0; i < 500; ++i) {
        ModeSEncapsulation record;
        record.setData(noise.bytes(i % 2 == 0 ? 7 : 14));
        expected.push_back(record.data());
        auto line = ModeSEncapsulation::encapsulateAvr(record);
        if (i % 3 == 0) line.insert(line.size() - 1, "\r");
        text += line;
    }
    EXPECT_TRUE(framesOf(text, Encoding::Avr) == expected);
    EXPECT_TRUE(framesOf(text) == expected);
    EXPECT_TRUE(log.lines().empty());
    text.pop_back();
    EXPECT_TRUE(framesOf(text) == expected) << "the last line needs no line feed";
}

TEST(Framer, DropsALineThatIsTooLong) {
    CapturedLog log(quorvel::modes::Log::Info);
    std::string const text = "*ABCD;\n" + std::string(100'000, 'A') + "rest\n*ABCD;\n*ABCD;\n";
    for (std::size_t const longest : {10U, 1000U, 1'000'000U}) {
        Framed const framed(text, Encoding::Avr, longest);
        EXPECT_EQ(framed.frames.size(), 3U);
        EXPECT_EQ(framed.counts.overlongLines, 1U);
        EXPECT_GE(framed.counts.skippedBytes, 100'004U);
        EXPECT_EQ(framed.counts.badLines, 0U);
        EXPECT_EQ(framed.counts.bytes, text.size());
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(Framer, CountsLinesThatAreNoFrames) {
    CapturedLog log;
    EXPECT_EQ(Framed("hello\n*ABCD;\n\n*ABC\n", Encoding::Avr, 100).counts.badLines, 2U);
}

TEST(Framer, ReadsHexadecimalLines) {
    CapturedLog log;
    std::vector<std::string> const expected{fromHex("5D4CA2D46B609F"), fromHex("8D4840D6202CC371C32CE0576098")};
    auto const* text = "5d4ca2d46b609f\r\n8D4840D6202CC371C32CE0576098\n";
    EXPECT_EQ(framesOf(text, Encoding::Hex), expected);
    EXPECT_EQ(framesOf(text), expected) << "found out";
    EXPECT_EQ(Framed("5D4CA2D46B609F\nxyz\n", Encoding::Hex, 9).counts.badLines, 1U);
}

TEST(Framer, KeepsTimeStampsAsTheyWereSentAndSignalLevels) {
    CapturedLog log;
    auto const frame = fromHex("1A32 123456789ABC C8 01020304050607");
    Framed const beast(frame + frame, Encoding::Beast, 5);
    ASSERT_EQ(beast.frames.size(), 2U);
    EXPECT_EQ(beast.frames[1].stamp, 0x123456789ABCU);
    EXPECT_EQ(beast.frames[1].signal, 0xC8);
    Framed const avr(
        "@123456789abc5D4CA2D46B609F;\n*5D4CA2D46B609F;\n@12345678-ABC5D4CA2D46B609F;\n", Encoding::Avr, 7);
    ASSERT_EQ(avr.frames.size(), 3U);
    EXPECT_EQ(avr.frames[0].stamp, 0x123456789ABCU);
    EXPECT_FALSE(avr.frames[1].stamp);
    EXPECT_FALSE(avr.frames[2].stamp) << "no number";
}

TEST(Framer, CutsRawFramesByTheirFormat) {
    CapturedLog log(quorvel::modes::Log::Info);
    auto const shortFrame = fromHex("5D4CA2D46B609F");
    auto const longFrame = fromHex("8D4840D6202CC371C32CE0576098");
    std::vector<std::string> const expected{shortFrame, longFrame, longFrame, shortFrame};
    EXPECT_EQ(framesOf(shortFrame + longFrame + longFrame + shortFrame, Encoding::Raw), expected);
    for (std::size_t const cut : {7U, 9U}) {
        Framed const framed(shortFrame + longFrame.substr(0, cut), Encoding::Raw, 100);
        EXPECT_EQ(framed.frames.size(), 1U);
        EXPECT_EQ(framed.counts.brokenFrames, 1U);
        EXPECT_EQ(framed.counts.skippedBytes, cut);
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(Framer, SaysSoWhenItCannotDetectTheEncoding) {
    EXPECT_FALSE(Framed("hello world\n", {}, 100).isKnown);
    EXPECT_FALSE(Framed(std::string(kSampleBytes, 'x'), {}, kSampleBytes).isKnown);
    EXPECT_TRUE(Framed("", {}, 100).isKnown) << "nothing is no fault";
    Counts counts;
    Framer slow({}, 0, counts);
    Frames frames;
    EXPECT_TRUE(slow.feed("MSG,8,1,1", frames));
    EXPECT_FALSE(slow.settle(frames)) << "more of it would be waited for";
}

// A receiver far from all traffic sends a frame now and then.
TEST(Framer, TellsASlowStreamByAsMuchOfItAsSuffices) {
    CapturedLog log;
    auto const stream = beastStream(60, 10);
    EXPECT_EQ(framesInPieces(stream.doubled, 64).size(), 60U);
    EXPECT_EQ(framesInPieces(stream.plain, 64).size(), 60U);
    std::string lines;
    for (int i = 0; i < 40; ++i) lines += "*5D4CA2D46B609F;\n";
    EXPECT_EQ(framesInPieces(lines, 17).size(), 40U);
}

TEST(Framer, TellsAStreamByWhatHasComeWhenAsked) {
    CapturedLog log;
    Counts counts;
    Framer framer(std::nullopt, 0, counts);
    Frames frames;
    framer.settle(frames);
    framer.feed("*5D4CA2D46B609F;\n*5D4C", frames);
    EXPECT_EQ(framer.heldBack().size(), 22U);
    EXPECT_TRUE(frames.empty());
    framer.settle(frames);
    EXPECT_EQ(frames.size(), 1U);
    EXPECT_EQ(framer.encoding(), Encoding::Avr);
    framer.feed("A2D46B609F;\n", frames);
    EXPECT_EQ(frames.size(), 2U);
}

TEST(Framer, NeverHoldsMoreThanASample) {
    Noise noise(8);
    CapturedLog log(quorvel::modes::Log::Error);
    for (auto const& [encoding, identifier, name] : kEncodings) {
        Counts counts;
        Framer framer(encoding, 0, counts);
        Frames frames;
        for (int i = 0; i < 200; ++i) framer.feed(noise.bytes(1000), frames);
        framer.finish(frames);
        for (auto const& frame : frames) {
            EXPECT_TRUE(frame.length == 2 || frame.length == 7 || frame.length == 14);
        }
        EXPECT_EQ(counts.bytes, 200'000U);
    }
}

TEST(Encoding, IsFoundByItsIdentifier) {
    for (auto const& entry : kEncodings) {
        EXPECT_EQ(encodingOf(entry.identifier), entry.encoding);
        EXPECT_EQ(identifierOf(entry.encoding), entry.identifier);
        EXPECT_EQ(nameOf(entry.encoding), entry.name);
    }
    EXPECT_FALSE(encodingOf("auto"));
}

TEST(FramelessSpan, IsReportedOnceWhenItIsLong) {
    FramelessSpan span;
    span.take("*5D4CA2D46B609F;", true);
    EXPECT_FALSE(span.take(std::string(FramelessSpan::kNotable - 1, 'x'), false));
    EXPECT_TRUE(span.take("x", false));
    EXPECT_FALSE(span.take(std::string(FramelessSpan::kNotable, 'x'), false));
    EXPECT_EQ(span.bytes(), 2 * FramelessSpan::kNotable);
    EXPECT_FALSE(span.finish({}));
}

TEST(FramelessSpan, EndsWithAFrame) {
    FramelessSpan span;
    span.take("*5D4CA2D46B609F;", true);
    EXPECT_FALSE(span.take(std::string(FramelessSpan::kNotable - 1, 'x'), false));
    EXPECT_FALSE(span.take("x", true));
    EXPECT_FALSE(span.take(std::string(FramelessSpan::kNotable - 1, 'x'), false));
    EXPECT_TRUE(span.take("x", false)) << "it is reported again";
}

TEST(FramelessSpan, IsReportedEarlierAtTheEnd) {
    FramelessSpan span;
    span.take("*5D4CA2D46B609F;", true);
    EXPECT_FALSE(span.take(std::string(FramelessSpan::kNotableAtEnd - 1, 'x'), false));
    EXPECT_FALSE(span.finish(Encoding::Avr));
    EXPECT_FALSE(span.take("x", false));
    EXPECT_TRUE(span.finish(Encoding::Avr));
}

TEST(FramelessSpan, IsReportedEarlierWhenThereWasNeverAFrame) {
    FramelessSpan span;
    EXPECT_FALSE(span.take(std::string(FramelessSpan::kNotableAtFirst - 1, 'x'), false));
    EXPECT_TRUE(span.take("x", false));
    FramelessSpan shortOne;
    shortOne.take(std::string(FramelessSpan::kMoreThanAFrame - 1, 'x'), false);
    EXPECT_FALSE(shortOne.finish(Encoding::Avr)) << "it may be a part of a frame";
    shortOne.take("x", false);
    EXPECT_FALSE(shortOne.settle(Encoding::Avr)) << "more may come";
    EXPECT_TRUE(shortOne.finish(Encoding::Avr));
}

TEST(FramelessSpan, IsReportedAsSoonAsItLooksLikeSomethingElse) {
    FramelessSpan slow;
    for (char const character : std::string("*5D4CA2D46B609F")) {
        slow.take({&character, 1}, false);
        EXPECT_FALSE(slow.settle(Encoding::Beast));
    }
    slow.take(";", false);
    EXPECT_FALSE(slow.settle(Encoding::Avr)) << "it is what it should be";
    EXPECT_TRUE(slow.settle(Encoding::Beast));
    EXPECT_FALSE(slow.settle(Encoding::Beast)) << "it was reported";
    EXPECT_FALSE(slow.finish(Encoding::Beast));
    FramelessSpan changed;
    changed.take("...", true);
    changed.take("*5D4CA2D46B609F;", false);
    EXPECT_TRUE(changed.finish(Encoding::Beast));
}

TEST(FramelessSpan, NamesWhatHasNoFrames) {
    FramelessSpan span;
    span.take("HTTP/1.1 200 OK\r\n", false);
    EXPECT_EQ(span.text(Encoding::Beast), "no frames in the last 17 bytes: this looks like a web page; expected Beast");
}

TEST(OtherContent, IsRecognizedByItsStart) {
    EXPECT_EQ(findOtherContent("HTTP/1.1 404 Not Found\r\n"), "a web page");
    EXPECT_EQ(findOtherContent("<!DOCTYPE html>"), "a web page");
    EXPECT_EQ(findOtherContent("\n<html lang=\"en\">"), "a web page");
    EXPECT_EQ(findOtherContent("MSG,8,1,1,4840D6,1,"), "BaseStation text");
    EXPECT_EQ(findOtherContent("{\"now\":0}"), "JSON");
    EXPECT_EQ(findOtherContent("[\n  {}]"), "JSON");
    for (std::string const other : {"", " ", "hello", "{", "[x", "*5D4CA2D46B609F;", "[\"\x01\xA2\xD4"})
        EXPECT_EQ(findOtherContent(other), "") << other;
}

TEST(FramelessSpan, SaysWhatTheStreamLooksLike) {
    FramelessSpan span;
    span.take("*5D4CA2D46B609F;\n", false);
    EXPECT_EQ(span.text(Encoding::Beast), "no frames in the last 17 bytes: this looks like AVR text; expected Beast");
    EXPECT_EQ(span.text(Encoding::Avr), "no frames in the last 17 bytes");
    span.take("...", true);
    span.take("noise", false);
    EXPECT_EQ(span.text(Encoding::Beast), "no frames in the last 5 bytes");
}
