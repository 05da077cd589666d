// SPDX-License-Identifier: MIT
#include "host/beast_undoubler.h"
#include "host/frameless_span.h"
#include "host/framer.h"
#include "host/host_error.h"
#include "host/stream_format.h"

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::host;
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
        for (char const byte : body)
            stream.doubled += byte == '\x1A' ? std::string(2, byte) : std::string(1, byte);
    }
    return stream;
}

std::vector<std::string> framesOf(Framer& framer, std::string const& stream, Noise& noise,
                                  std::size_t longest) {
    std::vector<std::string> frames;
    auto const take = [&](ModeSEncapsulation::Records const& records) {
        for (auto const& record : records) frames.push_back(record->data());
    };
    for (std::size_t at = 0; at < stream.size();) {
        auto const size = std::min<std::size_t>(1 + noise.below(longest), stream.size() - at);
        take(framer.feed(std::string_view(stream).substr(at, size)));
        at += size;
    }
    take(framer.finish());
    return frames;
}

std::vector<std::string> framesInPieces(std::string_view stream, std::size_t piece) {
    Framer framer(std::nullopt);
    std::vector<std::string> frames;
    for (; !stream.empty(); stream.remove_prefix(std::min(piece, stream.size()))) {
        for (auto const& record : framer.feed(stream.substr(0, piece))) frames.push_back(record->data());
    }
    return frames;
}

std::vector<std::string> framesOf(std::string const& stream,
                                  std::optional<ModeSEncapsulation::Format> format = {},
                                  BeastEscapes escapes = BeastEscapes::Find) {
    Framer framer(format, escapes);
    Noise noise(2);
    return framesOf(framer, stream, noise, 100);
}

} // namespace

TEST(BeastUndoubler, MakesThePlainStreamWhateverThePieces) {
    auto const stream = beastStream(500, 20);
    Noise noise(9);
    for (std::size_t const longest : {1U, 2U, 7U, 100U, 100000U}) {
        BeastUndoubler undoubler;
        std::string plain;
        for (std::size_t at = 0; at < stream.doubled.size();) {
            auto const size = 1 + noise.below(longest);
            undoubler.undouble(std::string_view(stream.doubled).substr(at, size), plain);
            at += size;
        }
        EXPECT_TRUE(plain == stream.plain) << longest;
        EXPECT_EQ(undoubler.frames(), 500U);
        EXPECT_EQ(undoubler.broken(), 0U);
    }
}

TEST(BeastUndoubler, DropsABrokenFrameAndGoesOnWithTheNext) {
    auto const frame = fromHex("1A32 000000000000 00 01020304050607");
    BeastUndoubler undoubler;
    std::string plain;
    undoubler.undouble(frame.substr(0, 11) + frame, plain);
    EXPECT_EQ(plain, frame);
    EXPECT_EQ(undoubler.broken(), 1U);
    undoubler.undouble(frame.substr(0, 11) +
                           "\x1A"
                           "9" +
                           frame,
                       plain);
    EXPECT_EQ(plain, frame + frame);
    EXPECT_EQ(undoubler.broken(), 2U);
}

TEST(BeastUndoubler, DropsStatusFramesAndWhatIsBetweenFrames) {
    auto const frame = fromHex("1A32 000000000000 00 01020304050607");
    auto const status = fromHex("1A34 000000000000 00 1A1A020304050607 0708090A0B0C0D");
    BeastUndoubler undoubler;
    std::string plain;
    undoubler.undouble("noise" + fromHex("1A1A33") + status + frame + "more noise" + frame, plain);
    EXPECT_EQ(plain, frame + frame);
    EXPECT_EQ(undoubler.frames(), 3U);
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

TEST(StreamFormat, IsFoundFromTheFirstBytes) {
    auto const stream = beastStream(100, 5);
    EXPECT_EQ(findFormat(stream.plain), ModeSEncapsulation::Beast);
    EXPECT_EQ(findFormat(stream.doubled), ModeSEncapsulation::Beast);
    EXPECT_EQ(findFormat(stream.doubled.substr(0, 24)), ModeSEncapsulation::Beast);
    EXPECT_EQ(findFormat("garbage" + stream.doubled), ModeSEncapsulation::Beast);
    EXPECT_EQ(findFormat("*8D4840D6202CC371C32CE0576098;\n"), ModeSEncapsulation::Avr);
    EXPECT_EQ(findFormat("Trying 192.0.2.1...\r\n@2A300754D4C05D4CA2D46B609F;\r\n"), ModeSEncapsulation::Avr);
    EXPECT_EQ(findFormat(":5D4CA2D46B609F;"), ModeSEncapsulation::Avr);
    for (auto const& text : {std::string(), std::string("hello\nworld\n"), std::string("*\n*;\n"),
                             std::string(5000, '\x1A'), Noise(4).bytes(65536)}) {
        EXPECT_FALSE(findFormat(text)) << text.substr(0, 20);
    }
}

TEST(StreamFormat, OfRawBinaryIsFoundFromIntactSquitters) {
    auto const shortFrame = fromHex("5D4CA2D46B609F");
    auto const squitter = fromHex("8D4840D6202CC371C32CE0576098");
    auto damaged = squitter;
    damaged[7] = '\0';
    EXPECT_EQ(findFormat(squitter), ModeSEncapsulation::RawBin);
    EXPECT_EQ(findFormat(shortFrame + squitter + shortFrame + squitter.substr(0, 9)),
              ModeSEncapsulation::RawBin);
    EXPECT_EQ(findFormat(squitter + damaged), ModeSEncapsulation::RawBin);
    EXPECT_FALSE(findFormat(squitter + damaged + damaged));
    EXPECT_FALSE(findFormat(shortFrame + shortFrame)) << "nothing in it proves itself";
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

TEST(Framer, DoesWhatItIsTold) {
    auto const stream = beastStream(300, 5);
    EXPECT_TRUE(framesOf(stream.doubled, ModeSEncapsulation::Beast, BeastEscapes::Doubled) == stream.frames);
    EXPECT_TRUE(framesOf(stream.plain, ModeSEncapsulation::Beast, BeastEscapes::Plain) == stream.frames);
    EXPECT_FALSE(framesOf(stream.plain, ModeSEncapsulation::Beast, BeastEscapes::Doubled) == stream.frames);
}

TEST(Framer, KeepsALastFrameThatEndsInAnEscapeByte) {
    auto const frame = fromHex("1A32 000000000000 00 0102030405061A");
    EXPECT_EQ(framesOf(frame + frame, ModeSEncapsulation::Beast, BeastEscapes::Plain).size(), 2U);
}

TEST(Framer, FindsBeastWithRecordsOfOtherKindsBetweenTheFrames) {
    auto const stream = beastStream(300, 5);
    std::string mixed;
    std::string_view rest = stream.doubled;
    for (std::size_t at = 1; !rest.empty();) {
        while (at + 1 < rest.size() &&
               !(rest[at] == '\x1A' && rest[at + 1] != '\x1A' && rest[at - 1] != '\x1A'))
            ++at;
        auto const end = at + 1 < rest.size() ? at : rest.size();
        mixed += fromHex("1AE3 0001020304050607") + std::string(rest.substr(0, end));
        rest.remove_prefix(end);
        at = 1;
    }
    EXPECT_EQ(findFormat(mixed), ModeSEncapsulation::Beast);
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
    EXPECT_TRUE(framesOf(text, ModeSEncapsulation::Avr) == expected);
    EXPECT_TRUE(framesOf(text) == expected);
    EXPECT_TRUE(log.lines().empty());
    text.pop_back();
    EXPECT_TRUE(framesOf(text) == expected) << "the last line needs no line feed";
}

TEST(Framer, DropsALineThatIsTooLong) {
    CapturedLog log(quorvel::modes::Log::Info);
    Framer framer(ModeSEncapsulation::Avr);
    EXPECT_EQ(framer.feed("*ABCD;\n").size(), 1U);
    for (int i = 0; i < 100; ++i) EXPECT_TRUE(framer.feed(std::string(1000, 'A')).empty());
    EXPECT_EQ(framer.feed("rest\n*ABCD;\n*AB").size(), 1U);
    EXPECT_EQ(framer.feed("CD;\n").size(), 1U);
    EXPECT_EQ(framer.droppedBytes(), 100'005U);
    EXPECT_TRUE(log.lines().empty());
}

TEST(Framer, CutsRawFramesByTheirFormat) {
    CapturedLog log(quorvel::modes::Log::Info);
    auto const shortFrame = fromHex("5D4CA2D46B609F");
    auto const longFrame = fromHex("8D4840D6202CC371C32CE0576098");
    std::vector<std::string> const expected{shortFrame, longFrame, longFrame, shortFrame};
    EXPECT_EQ(framesOf(shortFrame + longFrame + longFrame + shortFrame, ModeSEncapsulation::RawBin),
              expected);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(framesOf(shortFrame + longFrame.substr(0, 9), ModeSEncapsulation::RawBin).size(), 1U);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].text, "Raw bin buffer over size (9), data disgarded");
}

TEST(Framer, SaysSoWhenItCannotTellTheFormat) {
    Framer framer(std::nullopt);
    framer.feed("hello world\n");
    EXPECT_THROW(framer.finish(), HostError);
    Framer large(std::nullopt);
    EXPECT_THROW(large.feed(std::string(kSampleBytes, 'x')), HostError);
    Framer hex(ModeSEncapsulation::RawHex);
    EXPECT_THROW(hex.feed("5D4CA2D46B609F"), HostError);
    Framer empty(std::nullopt);
    EXPECT_TRUE(empty.finish().empty()) << "nothing is no fault";
}

TEST(Framer, NeverHoldsMoreThanASample) {
    Noise noise(8);
    CapturedLog log(quorvel::modes::Log::Error);
    for (auto const format :
         {ModeSEncapsulation::Avr, ModeSEncapsulation::Beast, ModeSEncapsulation::RawBin}) {
        Framer framer(format);
        for (int i = 0; i < 200; ++i) {
            for (auto const& record : framer.feed(noise.bytes(1000))) {
                auto const size = record->data().size();
                EXPECT_TRUE(size == 2 || size == 7 || size == 14);
            }
        }
        framer.finish();
    }
}

TEST(FramelessSpan, IsToldOfOnceWhenItIsLong) {
    FramelessSpan span;
    EXPECT_FALSE(span.take(FramelessSpan::kNotable - 1, false));
    EXPECT_TRUE(span.take(1, false));
    EXPECT_FALSE(span.take(FramelessSpan::kNotable, false));
    EXPECT_EQ(span.bytes(), 2 * FramelessSpan::kNotable);
    EXPECT_FALSE(span.finish());
}

TEST(FramelessSpan, EndsWithAFrame) {
    FramelessSpan span;
    EXPECT_FALSE(span.take(FramelessSpan::kNotable - 1, false));
    EXPECT_FALSE(span.take(1, true));
    EXPECT_FALSE(span.take(FramelessSpan::kNotable - 1, false));
    EXPECT_TRUE(span.take(1, false)) << "it is told of again";
}

TEST(FramelessSpan, IsToldOfEarlierAtTheEnd) {
    FramelessSpan span;
    EXPECT_FALSE(span.take(FramelessSpan::kNotableAtEnd - 1, false));
    EXPECT_FALSE(span.finish());
    EXPECT_FALSE(span.take(1, false));
    EXPECT_TRUE(span.finish());
}
