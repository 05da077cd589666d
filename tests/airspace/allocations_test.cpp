// SPDX-License-Identifier: MIT
// Once warm, the road from bytes to aircraft takes no memory for a frame. A program of its own, since it counts what all
// of it allocates.
#include <airspace/airspace.h>
#include <modes/log.h>

#include "airspace/sky/frame_receiver.h"
#include "airspace/sky/standard_track.h"
#include "support/frames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <map>
#include <new>

namespace {

std::atomic<std::size_t> allocations{0};

void* allocated(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) { return allocated(size); }
void* operator new[](std::size_t size) { return allocated(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

using namespace quorvel;

namespace {

constexpr airspace::TimeMs kNoon = 43'200'000;

// A minute of 50 aircraft that say who and where they are, and answer interrogators.
std::string minute(airspace::Encoding encoding, airspace::TimeMs from) {
    std::string stream;
    for (unsigned i = 0; i < 6'000; ++i) {
        using namespace modes::test;
        auto const address = 0x400000 + i % 50;
        auto const parity = i / 50 % 2 != 0;
        PositionBits const position{93'000, 51'372, parity, 0xC3};
        auto const bytes = i % 3 == 0   ? squitter(address, airbornePosition(position))
                           : i % 3 == 1 ? squitter(address, identification("KLM1023"))
                                        : shortFrame(4, flightStatus(0) | altitudeCode(38'000), address);
        auto frame = airspace::Frame::of(bytes);
        frame.stamp = airspace::timeOfDayStamp(from + 10 * i);
        airspace::appendEncoded(stream, frame, encoding);
    }
    return stream;
}

std::size_t allocationsOfTheSecondMinute(airspace::Encoding encoding) {
    auto const first = minute(encoding, kNoon);
    auto const second = minute(encoding, kNoon + 60'000);
    airspace::Stream stream;
    airspace::Sky sky;
    airspace::Frames frames;
    auto const take = [&](std::string_view bytes) {
        for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(4096, bytes.size()))) {
            EXPECT_TRUE(stream.feed(bytes.substr(0, 4096), 0, frames));
            for (auto const& frame : frames) sky.take(frame);
            frames.clear();
        }
    };
    take(first);
    auto const before = allocations.load();
    take(second);
    auto const taken = allocations.load() - before;
    EXPECT_EQ(sky.size(), 50U);
    EXPECT_GE(sky.counts().tracked, 11'000U);
    return taken;
}

// The same minute twice, given to tracks by the standards.
std::size_t allocationsOfTracks() {
    airspace::Stream stream;
    airspace::Frames frames;
    EXPECT_TRUE(stream.feed(minute(airspace::Encoding::BeastPlain, kNoon), 0, frames));
    EXPECT_TRUE(stream.finish(0, frames));
    airspace::FrameReceiver receiver;
    std::map<std::uint32_t, airspace::StandardTrack> tracks;
    auto const take = [&](airspace::TimeMs later) {
        for (auto const& frame : frames) {
            auto const reply = receiver.receive(frame.view(), frame.time + later);
            auto const key = airspace::TrackKey::of(*airspace::headerOf(reply.message));
            tracks.try_emplace(key.value, frame.time).first->second.take(reply, frame.time + later);
        }
    };
    take(0);
    auto const before = allocations.load();
    take(60'000);
    EXPECT_EQ(tracks.size(), 50U);
    return allocations.load() - before;
}

} // namespace

TEST(Road, TracksByTheStandardsTakeNoMemoryForAFrameOnceWarm) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer watches memory, so none is kept for the next frame";
#endif
    EXPECT_EQ(allocationsOfTracks(), 0U);
}

TEST(Road, TakesNoMemoryForAFrameOnceWarm) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer watches memory, so none is kept for the next frame";
#endif
    modes::Log::setShowLevel(modes::Log::Error);
    for (auto const encoding :
        {airspace::Encoding::Beast, airspace::Encoding::BeastPlain, airspace::Encoding::AvrStamped})
        EXPECT_EQ(allocationsOfTheSecondMinute(encoding), 0U) << airspace::nameOf(encoding);
}
