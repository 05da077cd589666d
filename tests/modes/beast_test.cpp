// SPDX-License-Identifier: MIT
#include <modes/modes_encapsulation.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/random_bytes.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC

std::string const kShort = fromHex("1A32 2A30000F4240 C0 5D4CA2D46B609F");
std::string const kLong = fromHex("1A33 2A30001E8480 C1 8D4840D6202CC371C32CE0576098");
std::string const kModeAC = fromHex("1A31 2A3000000000 C2 1234");
std::string const kStatus = fromHex("1A34 2A3000000000 C2 0001020304050607 08090A0B0C0D");

// Frames found in a buffer and what is left of it.
struct Extracted {
    std::vector<std::string> frames;
    std::string rest;
};

Extracted extract(std::string buffer) {
    Extracted result;
    for (auto const& record : ModeSEncapsulation::extractBeast(buffer)) result.frames.push_back(record->data());
    result.rest = buffer;
    return result;
}

using Frames = std::vector<std::string>;

} // namespace

TEST(Beast, YieldsFramesWithTheReceiversTime) {
    test::SteeredClock const clock(kMidnight + 5);
    test::CapturedLog log;
    std::string buffer = kShort + kLong + kModeAC;
    auto const records = ModeSEncapsulation::extractBeast(buffer);
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0]->data(), fromHex("5D4CA2D46B609F"));
    EXPECT_EQ(records[0]->timeStamp(), kMidnight + 43'200'001);
    EXPECT_EQ(records[1]->data(), fromHex("8D4840D6202CC371C32CE0576098"));
    EXPECT_EQ(records[1]->timeStamp(), kMidnight + 43'200'002);
    EXPECT_EQ(records[2]->data(), fromHex("1234"));
    EXPECT_EQ(records[2]->timeStamp(), kMidnight + 43'200'000);
    EXPECT_EQ(buffer, "");
    EXPECT_TRUE(log.lines().empty());
}

TEST(Beast, KeepsAnIncompleteFrameForTheNextCall) {
    for (auto const& frame : {kShort, kLong, kModeAC}) {
        for (std::size_t length = 2; length < frame.size(); ++length) {
            auto const part = frame.substr(0, length);
            EXPECT_EQ(extract(kShort + part).frames, Frames{kShort.substr(9)});
            EXPECT_EQ(extract(kShort + part).rest, part) << length;
        }
    }
}

TEST(Beast, GoesOnWithTheRestOfAFrame) {
    auto const stream = kLong + kShort + kModeAC + kLong;
    for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
        if (cut < stream.size() && stream[cut] == '2') continue; // a lone escape byte at the end is given up
        if (cut < stream.size() && (stream[cut] == '3' || stream[cut] == '1')) continue;
        std::string buffer = stream.substr(0, cut);
        auto frames = ModeSEncapsulation::extractBeast(buffer).size();
        buffer += stream.substr(cut);
        frames += ModeSEncapsulation::extractBeast(buffer).size();
        EXPECT_EQ(frames, 4U) << cut;
        EXPECT_EQ(buffer, "");
    }
}

TEST(Beast, DropsWhatIsBeforeAFrame) {
    EXPECT_EQ(extract("garbage" + kLong).frames, Frames{kLong.substr(9)});
    EXPECT_EQ(extract(fromHex("1A1A1A") + kLong).frames, Frames{kLong.substr(9)});
    EXPECT_EQ(extract(fromHex("1A35") + kLong).frames, Frames{kLong.substr(9)}) << "1A 35 does not start a frame";
    EXPECT_EQ(extract(fromHex("1AB2") + kLong).frames, Frames{kLong.substr(9)}) << "nor does a byte from 0x80 up";
}

TEST(Beast, EmptiesABufferWithoutAFrame) {
    for (auto const& buffer : {std::string(), std::string("x"), std::string("no frame here"), fromHex("1A"),
             fromHex("00001A"), fromHex("1A35001A36"), fromHex("1A1A1A1A"), fromHex("321A")}) {
        auto const result = extract(buffer);
        EXPECT_TRUE(result.frames.empty());
        EXPECT_EQ(result.rest, "");
    }
}

TEST(Beast, SkipsStatusFrames) {
    EXPECT_EQ(extract(kStatus + kShort).frames, Frames{kShort.substr(9)});
    EXPECT_EQ(extract(kStatus).rest, "");
}

TEST(Beast, TakesEscapeBytesInsideAFrameAsData) {
    auto const inside = fromHex("1A32 2A3000001A33 C0 1A1A3233341A1A");
    EXPECT_EQ(extract(inside + kShort).frames, (Frames{inside.substr(9), kShort.substr(9)}));
    // a doubled one shifts the frame
    auto const doubled = fromHex("1A32 2A3000000000 C0 5D1A1A02D46B609F");
    EXPECT_EQ(extract(doubled + kShort).frames, (Frames{fromHex("5D1A1A02D46B60"), kShort.substr(9)}));
}

TEST(Beast, YieldsTheSameFramesInAnyPieces) {
    test::Noise noise(11);
    std::string stream;
    Frames expected;
    for (int i = 0; i < 300; ++i) {
        auto const length = i % 3 == 0 ? 2U : i % 3 == 1 ? 7U : 14U;
        expected.push_back(noise.bytes(length));
        stream += std::string("\x1A") + static_cast<char>('1' + i % 3) + noise.bytes(7) + expected.back();
    }
    for (int round = 0; round < 50; ++round) {
        std::string buffer;
        Frames frames;
        for (std::size_t at = 0; at < stream.size();) {
            auto size = std::min(1 + noise.length(60), stream.size() - at);
            auto piece = stream.substr(at, size);
            if (at + size < stream.size() && piece.back() == '\x1A') piece += stream[at + size++];
            at += size;
            buffer += piece;
            for (auto const& record : ModeSEncapsulation::extractBeast(buffer)) frames.push_back(record->data());
            ASSERT_LT(buffer.size(), 23U);
        }
        ASSERT_EQ(frames, expected) << round;
    }
}

TEST(Beast, YieldsFramesOfKnownLengthsFromNoise) {
    test::Noise noise(12);
    for (int round = 0; round < 200; ++round) {
        auto buffer = noise.bytes(4000);
        for (std::size_t i = 0; i + 1 < buffer.size(); i += 1 + noise.length(30)) {
            buffer[i] = '\x1A';
            buffer[i + 1] = static_cast<char>('0' + noise.below(6));
        }
        for (auto const& record : ModeSEncapsulation::extractBeast(buffer)) {
            auto const size = record->data().size();
            ASSERT_TRUE(size == 2 || size == 7 || size == 14);
        }
        ASSERT_LT(buffer.size(), 23U);
    }
}
