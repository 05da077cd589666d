// SPDX-License-Identifier: MIT
// From the bytes of a receiver, with doubled escapes, to aircraft by the standards: cut, date, read, judge, track. 5 % of
// the frames are damaged; stream and sky know nothing at the start.
#include "support/bench_frames.h"
#include "support/streams.h"

#include <airspace/sky.h>
#include <airspace/stream.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

namespace quorvel::modes::bench {

namespace {

constexpr std::size_t kPiece = 64 * 1024; // as a socket delivers a busy stream

// Returns how many frames there are.
std::int64_t take(std::string_view bytes, airspace::Sky& sky) {
    airspace::Stream stream;
    airspace::Frames frames;
    std::int64_t count = 0;
    auto const takeFrames = [&] {
        sky.takeAll(frames);
        count += static_cast<std::int64_t>(frames.size());
        frames.clear();
    };
    for (; !bytes.empty(); bytes.remove_prefix(std::min(kPiece, bytes.size()))) {
        stream.feed(bytes.substr(0, kPiece), 0, frames);
        takeFrames();
    }
    stream.finish(0, frames);
    takeFrames();
    return count;
}

void takeAll(benchmark::State& state, std::string const& bytes) {
    std::int64_t frames = 0;
    for (auto _ : state) {
        airspace::Sky sky;
        frames += take(bytes, sky);
    }
    state.SetItemsProcessed(frames);
}

void sky(benchmark::State& state) { takeAll(state, stream("sky_" + std::to_string(state.range(0)) + ".beast")); }
BENCHMARK(sky)->Arg(200)->Arg(4000)->Arg(20'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

std::size_t bytesInUse() {
    auto const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// What a sky keeps for one aircraft, after the frames of so many have come and gone.
void skyMemory(benchmark::State& state) {
    auto const& bytes = stream("sky_" + std::to_string(state.range(0)) + ".beast");
    double perAircraft = 0;
    for (auto _ : state) {
        auto const before = bytesInUse();
        airspace::Sky sky;
        take(bytes, sky);
        perAircraft = static_cast<double>(bytesInUse() - before) / static_cast<double>(sky.size());
    }
    state.counters["bytes_per_aircraft"] = perAircraft;
}
BENCHMARK(skyMemory)->Name("memory/aircraft")->Arg(4000)->Arg(100'000)->Unit(benchmark::kMillisecond);

// Squitters of forged addresses, each heard once or again and again, among those of 200 aircraft.
std::string forged(std::size_t addresses) {
    constexpr std::size_t kFrames = 1'000'000;
    auto bytes = stream("sky_200.beast");
    auto const append = [&bytes](char byte) {
        bytes += byte;
        if (byte == '\x1A') bytes += byte;
    };
    auto const intact = framesOf(stream("intact_200.beast"));
    DF17Message const message;
    std::string frame;
    for (auto const& each : intact) {
        if (each->data().size() == 14 && downlinkFormat(each->data()) == DFMessage::DF17) frame = each->data();
    }
    for (std::size_t i = 0; i < kFrames; ++i) {
        auto const address = scatteredAddress(i % addresses);
        for (unsigned byte = 0; byte < 3; ++byte)
            frame[1 + byte] = static_cast<char>(address >> (16 - 8 * byte) & 0xFF);
        setParity(frame, message.calculateParity(frame));
        bytes += "\x1A"
                 "3";
        for (char const byte : std::string_view("\0\0\0\0\0\0\x40", 7)) append(byte);
        for (char const byte : frame) append(byte);
    }
    return bytes;
}

void forgedAddresses(benchmark::State& state) {
    static std::map<std::int64_t, std::string> streams;
    auto& bytes = streams[state.range(0)];
    if (bytes.empty()) bytes = forged(static_cast<std::size_t>(state.range(0)));
    takeAll(state, bytes);
}
BENCHMARK(forgedAddresses)->Name("sky/forged")->Arg(200)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quorvel::modes::bench
