// SPDX-License-Identifier: MIT
// Long runs: does the memory stay put, and is the last frame as cheap as the first?
//
//   trevallo_soak noise|forged|day SCALE
//
// noise   100 million random surveillance, Comm-B and all-call frames, each with another hidden address
// forged  20 million extended squitters with valid parity and random addresses in 24 hours
// day     24 hours of 3,000 simulated aircraft
// SCALE shortens a run: 1 is the whole of it. Prints memory and speed at ten points; the exit status says
// whether the memory of the second half stayed within that of the first and, of a whole run, whether the
// speed of the last tenth is near that of the first: in a short one, the first tenth is the filling of the
// tables.
#include <modes/modes.h>

#include "simulate/checksum.h"
#include "simulate/random.h"
#include "simulate/traffic.h"

#include "support/steered_clock.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <malloc.h>
#include <map>
#include <unistd.h>
#include <vector>

using namespace quorvel::modes;
namespace simulate = quorvel::simulate;

namespace {

constexpr std::uint64_t kStart = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC
constexpr std::uint64_t kDay = 86'400'000;
constexpr std::uint64_t kMinute = 60'000;
constexpr std::uint64_t kTargetTimeout = 60'000;
constexpr std::size_t kPoints = 10;
constexpr std::size_t kBatch = 10'000; // frames that are made, then handed to the library and timed

// What passes between points.
constexpr double kMostMemoryGrowth = 1.1;
constexpr std::size_t kMemoryGrain = 256 * 1024; // what a thread recycles of one size
constexpr double kMostSlowdown = 1.2;

struct TimedFrame {
    std::uint64_t time; // milliseconds
    std::string bytes;
};

struct Point {
    std::uint64_t frames = 0;
    double framesPerSecond = 0;
    std::size_t heap = 0;
    std::size_t resident = 0;
    std::size_t targets = 0;
};

std::size_t residentBytes() {
    std::size_t pages = 0;
    if (auto* const file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*u %zu", &pages) != 1) pages = 0;
        std::fclose(file);
    }
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// One receiver that drops silent targets each minute of its stream's time, as a host would.
class Receiver {
public:
    void take(TimedFrame const& frame) {
        _clock.set(frame.time);
        _tracker.procModeSMsg(_decoder.decode(ModeSMessage::DOWNLINK, frame.bytes, frame.time));
        if (frame.time < _nextKill) return;
        _nextKill = frame.time + kMinute;
        _tracker.killTargets(frame.time - kTargetTimeout);
    }

    std::size_t targets() const { return _tracker.allTargets().size(); }

private:
    test::SteeredClock _clock{kStart};
    ModeSDecoder _decoder;
    ADSBTracker _tracker;
    std::uint64_t _nextKill = 0;
};

using Batch = std::vector<TimedFrame>;
using MakeFrame = std::function<bool(TimedFrame&)>; // false at the end of the stream

// Takes the frames of one point out of the stream. Only the library's part is timed.
Point run(Receiver& receiver, MakeFrame const& make, std::uint64_t frames) {
    Point point;
    std::clock_t spent = 0; // processor time: others may use the machine too
    Batch batch(kBatch);
    for (bool more = true; more && point.frames < frames;) {
        std::size_t made = 0;
        while (made < kBatch && (more = make(batch[made]))) ++made;
        auto const start = std::clock();
        for (std::size_t i = 0; i < made; ++i) receiver.take(batch[i]);
        spent += std::clock() - start;
        point.frames += made;
    }
    point.framesPerSecond =
        static_cast<double>(point.frames) * static_cast<double>(CLOCKS_PER_SEC) / static_cast<double>(spent);
    auto const heap = mallinfo2();
    point.heap = heap.uordblks + heap.hblkhd;
    point.resident = residentBytes();
    point.targets = receiver.targets();
    return point;
}

bool holds(bool condition, char const* what) {
    if (!condition) std::printf("NOT met: %s\n", what);
    return condition;
}

bool staysPut(std::vector<Point> const& points) {
    auto const heapOf = [](Point const& a, Point const& b) { return a.heap < b.heap; };
    auto const middle = points.begin() + kPoints / 2;
    auto const early = std::max_element(points.begin(), middle, heapOf)->heap;
    auto const late = std::max_element(middle, points.end(), heapOf)->heap;
    auto const allowed = static_cast<std::size_t>(static_cast<double>(early) * kMostMemoryGrowth) + kMemoryGrain;
    return holds(late <= allowed, "the memory of the second half within that of the first");
}

bool staysFast(std::vector<Point> const& points) {
    return holds(points.back().framesPerSecond * kMostSlowdown >= points.front().framesPerSecond,
        "the speed of the last tenth near that of the first");
}

bool soak(MakeFrame const& make, std::uint64_t frames, double scale) {
    Receiver receiver;
    std::vector<Point> points;
    std::printf("%12s %12s %12s %12s %8s\n", "frames", "frames/s", "heap KiB", "resident KiB", "targets");
    std::uint64_t total = 0;
    for (std::size_t i = 0; i < kPoints; ++i) {
        points.push_back(run(receiver, make, frames / kPoints));
        auto const& point = points.back();
        total += point.frames;
        std::printf("%12llu %12.0f %12zu %12zu %8zu\n", static_cast<unsigned long long>(total), point.framesPerSecond,
            point.heap / 1024, point.resident / 1024, point.targets);
        std::fflush(stdout);
    }
    bool const put = staysPut(points);
    return (scale < 1 || staysFast(points)) && put;
}

std::uint64_t scaled(double count, double scale) { return static_cast<std::uint64_t>(count * scale); }

char byteOf(std::uint64_t number, unsigned shift) { return static_cast<char>(number >> shift & 0xFF); }

// A receiver full of noise, with 50 real aircraft in it that keep being heard.
bool noise(double scale) {
    constexpr std::array<unsigned, 7> kFormats = {0, 4, 5, 11, 16, 20, 21};
    constexpr std::array<unsigned, 7> kSizes = {7, 7, 7, 7, 14, 14, 14};
    constexpr unsigned kAircraft = 50;
    simulate::Random random(1);
    auto const frames = scaled(100e6, scale);
    std::uint64_t count = 0;
    return soak(
        [&](TimedFrame& frame) {
            frame.time = kStart + count * kDay / frames;
            if (count++ % 100 == 0) {
                auto const address = 0x400000 + count / 100 % kAircraft;
                std::string const squitter = {'\x8D', byteOf(address, 16), byteOf(address, 8), byteOf(address, 0),
                    '\x58', '\xC3', '\x82', '\xD6', '\x90', '\xC8', '\xAC'};
                frame.bytes = simulate::withParity(squitter, 0);
                return true;
            }
            auto const kind = random.below(kFormats.size());
            frame.bytes.resize(kSizes[kind]);
            for (auto& byte : frame.bytes) byte = static_cast<char>(random.below(256));
            frame.bytes[0] = static_cast<char>(kFormats[kind] << 3 | random.below(8));
            return true;
        },
        frames, scale);
}

bool forged(double scale) {
    simulate::Random random(2);
    auto const frames = scaled(20e6, scale);
    auto const span = scaled(static_cast<double>(kDay), scale); // as dense, however short
    std::uint64_t count = 0;
    return soak(
        [&](TimedFrame& frame) {
            frame.time = kStart + count++ * span / frames;
            auto const address = random.below(1 << 24);
            std::string squitter = {'\x8D', byteOf(address, 16), byteOf(address, 8), byteOf(address, 0)};
            for (int i = 0; i < 7; ++i) squitter += static_cast<char>(random.below(256));
            frame.bytes = simulate::withParity(squitter, 0);
            return true;
        },
        frames, scale);
}

bool day(double scale) {
    simulate::Settings settings;
    settings.aircraft = 3000;
    settings.seconds = 86'400 * scale;
    settings.bitErrors = 0.05;
    settings.mix = simulate::Mix::Adsb;
    simulate::Traffic counted(settings);
    simulate::Traffic traffic(settings);
    // how many frames there will be: by the first minute of them
    std::uint64_t inSample = 0;
    double const sample = std::min(60.0, settings.seconds);
    while (auto const frame = counted.next()) {
        if (static_cast<double>(frame->nanoseconds) > sample * 1e9) break;
        ++inSample;
    }
    auto const frames = static_cast<std::uint64_t>(static_cast<double>(inSample) * settings.seconds / sample);
    return soak(
        [&](TimedFrame& frame) {
            auto next = traffic.next();
            if (!next) return false;
            frame = {kStart + next->nanoseconds / 1'000'000, std::move(next->bytes)};
            return true;
        },
        frames, scale);
}

} // namespace

int main(int count, char** arguments) {
    std::map<std::string, bool (*)(double)> const runs = {{"noise", noise}, {"forged", forged}, {"day", day}};
    auto const found = count == 3 ? runs.find(arguments[1]) : runs.end();
    double const scale = count == 3 ? std::atof(arguments[2]) : 0;
    if (found == runs.end() || !(scale > 0)) {
        std::fprintf(stderr, "trevallo_soak noise|forged|day SCALE\n");
        return 2;
    }
    Log::setShowLevel(static_cast<Log::Level>(Log::Error + 1));
    return found->second(scale) ? 0 : 1;
}
