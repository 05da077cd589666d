// SPDX-License-Identifier: MIT
#include "airspace/sky/frame_receiver.h"

#include "airspace/sky/recordings.h"
#include "airspace/sky/reply_reading.h"
#include "support/captured_log.h"
#include "support/frames.h"
#include "support/random_bytes.h"
#include "support/steered_clock.h"

#include <modes/modes_decoder.h>

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using quorvel::modes::Log;
using quorvel::modes::ModeSDecoder;
using quorvel::modes::ModeSMessage;
using quorvel::modes::test::CapturedLog;
using quorvel::modes::test::Noise;
using quorvel::modes::test::SteeredClock;

namespace {

constexpr TimeMs kNoon = 43'200'000;

// The core's decoder and the receiver side by side, on the same frames at the same times.
class Twins {
public:
    void compare(Frame const& frame) {
        _clock.set(frame.time);
        auto const text = frame.view();
        auto const message = _decoder.decode(ModeSMessage::DOWNLINK, text.data(), text.size(), frame.time);
        auto const expected = readReply(frame, message.get());
        auto const reply = _receiver.receive(text, frame.time);
        ASSERT_EQ(reply.isDecoded, expected.isDecoded);
        EXPECT_EQ(reply.address, expected.address);
        EXPECT_EQ(reply.confidence, expected.confidence);
        EXPECT_EQ(reply.repairs, expected.repairs);
        EXPECT_EQ(reply.repairedBits, expected.repairedBits);
        ++_frames;
        _repaired += reply.repairs > 0 ? 1 : 0;
    }

    // Every frame of a recording, and the same with some bits damaged.
    void compareAll(Frames const& frames) {
        Noise noise(11);
        for (auto frame : frames) {
            if (frame.isModeAc()) continue;
            compare(frame);
            if (noise.below(4) != 0) continue;
            for (auto damaged = noise.below(4); damaged-- > 0;) {
                auto const position = noise.below(8U * frame.length);
                frame.bytes[position / 8] ^= static_cast<std::uint8_t>(0x80U >> position % 8);
            }
            if (modeSFrameBytes(static_cast<char>(frame.bytes[0])) <= frame.length) compare(frame);
            if (::testing::Test::HasFailure()) return;
        }
    }

    std::size_t frames() const { return _frames; }
    std::size_t repaired() const { return _repaired; }

private:
    CapturedLog _log{Log::Error};
    SteeredClock _clock{0};
    ModeSDecoder _decoder;
    FrameReceiver _receiver;
    std::size_t _frames = 0;
    std::size_t _repaired = 0;
};

} // namespace

TEST(FrameReceiver, GradesTheSampleAsTheDecoderDoes) {
    auto const files = recordings(TREVALLO_TEST_FOLDER "/../data");
    ASSERT_FALSE(files.empty());
    for (auto const& file : files) {
        SCOPED_TRACE(file);
        Twins twins;
        twins.compareAll(framesOf(file));
        EXPECT_GT(twins.frames(), 1'000U);
        EXPECT_GT(twins.repaired(), 10U);
    }
}

TEST(FrameReceiver, GradesEveryRecordingAsTheDecoderDoes) {
    auto const files = recordings(TREVALLO_RECORDINGS);
    if (files.empty()) GTEST_SKIP() << "there are no recordings in " << TREVALLO_RECORDINGS;
    std::size_t frames = 0;
    for (auto const& file : files) {
        SCOPED_TRACE(file);
        Twins twins;
        twins.compareAll(framesOf(file));
        frames += twins.frames();
    }
    EXPECT_GT(frames, 200'000U);
}

TEST(FrameReceiver, GradesNoiseAsTheDecoderDoes) {
    Noise noise(12);
    Twins twins;
    for (unsigned i = 0; i < 50'000; ++i) {
        auto bytes = noise.bytes(14);
        bytes.resize(modeSFrameBytes(bytes.front()));
        twins.compare(Frame::of(bytes, kNoon + 100 * i));
    }
}

TEST(FrameReceiver, TrustGoesByTheTimeOfTheFrames) {
    using namespace quorvel::modes::test;
    FrameReceiver receiver;
    receiver.receive(squitter(0x4CA123, identification("TEST")), kNoon);
    auto const reply = shortFrame(4, flightStatus(0) | altitudeCode(38'000), 0x4CA123);
    EXPECT_EQ(receiver.receive(reply, kNoon + 600'000).confidence, ModeSMessage::HIGH);
    EXPECT_EQ(receiver.receive(reply, kNoon + 1'201'000).confidence, ModeSMessage::LOW) << "ten minutes and a second";
}

TEST(FrameReceiver, ARepairedSquitterIsReadAsItWasSent) {
    using namespace quorvel::modes::test;
    auto frame = squitter(0x4CA123, identification("TEST"));
    frame[5] = static_cast<char>(frame[5] ^ 0x40);
    FrameReceiver receiver;
    auto const reply = receiver.receive(frame, kNoon);
    auto const& sent = std::get<ExtendedSquitter>(reply.message);
    EXPECT_EQ(std::get<Identification>(sent.content).callsign.text(), "TEST");
    EXPECT_EQ(reply.repairs, 1);
    EXPECT_EQ(reply.repairedBits[0], 42) << "counted from 1";
    EXPECT_EQ(reply.confidence, ModeSMessage::HIGH);
}

TEST(FrameReceiver, BytesThatAreNoFrameGiveNothing) {
    FrameReceiver receiver;
    for (auto const* bytes : {"", "\x8D", "\x20\x11"}) {
        auto const reply = receiver.receive(bytes, kNoon);
        EXPECT_FALSE(reply.isDecoded);
        EXPECT_TRUE(std::holds_alternative<std::monostate>(reply.message));
    }
}
