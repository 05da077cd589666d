// SPDX-License-Identifier: MIT
#include <airspace/decompressor.h>
#include <airspace/stream.h>

#include "support/bytes.h"

#include <gmock/gmock.h>

#include <zlib.h>

#include <string>
#include <vector>

using namespace quorvel::airspace;
using quorvel::modes::test::fromHex;

namespace {

constexpr TimeMs kNoonOfNoDay = 86'400'000 + 43'200'000; // 1970-01-02
auto const* const kSquitter = "8D4840D6202CC371C32CE0576098";

// A Beast stream of frames a tenth of a second apart from noon on.
std::string beastStream(std::size_t count) {
    std::string stream;
    for (std::size_t i = 0; i < count; ++i) {
        auto frame = Frame::of(fromHex(kSquitter));
        frame.stamp = timeOfDayStamp(kNoonOfNoDay + 100 * i);
        frame.signal = 0x1A;
        appendEncoded(stream, frame, Encoding::Beast);
    }
    return stream;
}

Frames framesOf(Stream& stream, std::string_view bytes, std::size_t piece = 7) {
    Frames frames;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size())))
        EXPECT_TRUE(stream.feed(bytes.substr(0, piece), 0, frames));
    EXPECT_TRUE(stream.finish(0, frames));
    return frames;
}

std::string gzipped(std::string const& plain) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(plain.size() + 1000, '\0');
    std::string input = plain;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(packed.size() - stream.avail_out);
    deflateEnd(&stream);
    return packed;
}

} // namespace

TEST(Stream, MakesDatedFramesWhateverThePieces) {
    for (std::size_t const piece : {1U, 7U, 100'000U}) {
        Stream stream;
        auto const frames = framesOf(stream, beastStream(50), piece);
        ASSERT_EQ(frames.size(), 50U);
        EXPECT_EQ(frames[49].view(), fromHex(kSquitter));
        EXPECT_EQ(frames[49].time, kNoonOfNoDay + 4900);
        EXPECT_EQ(frames[49].now, frames[49].time);
        EXPECT_EQ(frames[49].signal, 0x1A);
        EXPECT_EQ(stream.encoding(), Encoding::Beast);
        EXPECT_EQ(stream.timeReading(), TimeReading::Receiver);
        EXPECT_FALSE(stream.timeKnown()) << "the day is not in the recording";
        EXPECT_EQ(stream.now(), frames[49].time);
        EXPECT_EQ(stream.counts().frames, 50U);
        EXPECT_EQ(stream.counts().bytes, beastStream(50).size());
    }
}

TEST(Stream, NamesTheReceiverThatTheStreamTellsOrTheHostDoes) {
    StreamOptions options;
    options.receiver = 5;
    Stream stream(options);
    auto const one = beastStream(2);
    auto const identified = fromHex("1AE3 00000000001A1A 0102"); // 0x1A doubled
    auto const frames = framesOf(stream, one + identified + one);
    ASSERT_EQ(frames.size(), 4U);
    EXPECT_EQ(frames[1].receiver, 5U);
    EXPECT_EQ(frames[2].receiver, 0x1A0102U);
    EXPECT_EQ(frames[3].receiver, 0x1A0102U);
    EXPECT_EQ(stream.counts().statusFrames, 1U);
    EXPECT_EQ(stream.counts().skippedBytes, 0U);
}

TEST(Stream, CountsTheRecordsOfTheReceiversOwn) {
    Stream stream;
    auto const status = fromHex("1A34 000000000000 00 0102030405060708090A0B0C0D0E");
    auto const position = fromHex("1A35 000000000000 00 0102030405060708090A0B0C0D0E");
    auto const one = beastStream(3);
    EXPECT_EQ(framesOf(stream, one + status + position + one).size(), 6U);
    EXPECT_EQ(stream.counts().statusFrames, 2U);
    EXPECT_EQ(stream.counts().skippedBytes, 0U);
}

TEST(Stream, SaysSoWhenItIsNoneOfThoseKnown) {
    Stream stream;
    Frames frames;
    EXPECT_TRUE(stream.feed("HTTP/1.1 404 Not Found\r\n", 0, frames)) << "more may come";
    EXPECT_TRUE(stream.isUnsettled());
    EXPECT_FALSE(stream.finish(0, frames));
    EXPECT_EQ(stream.otherContent(), "a web page");
    EXPECT_TRUE(frames.empty());
}

TEST(Stream, RemarksOnceThatBytesComeAndNoFrames) {
    Stream stream(StreamOptions{Encoding::Beast, {}, Origin::Recording, 0});
    Frames frames;
    EXPECT_TRUE(stream.feed(std::string(70'000, 'x'), 0, frames));
    EXPECT_THAT(stream.remark(), testing::HasSubstr("no frames in the last 70000 bytes"));
    EXPECT_EQ(stream.remark(), "");
}

TEST(Stream, IsReadOnAfterItWasMoved) {
    Stream first;
    Frames frames;
    auto const bytes = beastStream(20);
    EXPECT_TRUE(first.feed(bytes.substr(0, 100), 0, frames));
    Stream second(std::move(first));
    EXPECT_TRUE(second.feed(bytes.substr(100), 0, frames));
    EXPECT_TRUE(second.finish(0, frames));
    EXPECT_EQ(frames.size(), 20U);
}

TEST(Decompressor, UnpacksWhatItsBeginningSays) {
    auto const plain = beastStream(1000);
    auto const packed = gzipped(plain);
    EXPECT_EQ(Decompressor::forStream(plain), nullptr);
    auto const decompressor = Decompressor::forStream(packed);
    ASSERT_NE(decompressor, nullptr);
    std::string unpacked;
    for (std::string_view rest = packed; !rest.empty();) {
        EXPECT_FALSE(decompressor->isWhole());
        auto piece = rest.substr(0, 11);
        rest.remove_prefix(piece.size());
        while (!piece.empty()) ASSERT_TRUE(decompressor->unpack(piece, unpacked));
    }
    EXPECT_TRUE(unpacked == plain);
    EXPECT_TRUE(decompressor->isWhole());
}

TEST(Decompressor, SaysSoWhenTheDataIsDamaged) {
    auto packed = gzipped(beastStream(1000));
    packed[20] = static_cast<char>(packed[20] ^ 0xFF);
    auto const decompressor = Decompressor::forStream(packed);
    std::string unpacked;
    bool isSound = true;
    for (std::string_view rest = packed; isSound && !rest.empty();) isSound = decompressor->unpack(rest, unpacked);
    EXPECT_FALSE(isSound);
}

TEST(UndoubledBeast, HoldsTheFramesAlone) {
    auto const frame = fromHex("1A32 000000000000 00 0102030405061A1A");
    auto const plain = fromHex("1A32 000000000000 00 0102030405061A");
    EXPECT_EQ(undoubledBeast(frame + fromHex("1AE3 0001020304050607") + frame), plain + plain);
}
