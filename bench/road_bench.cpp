// SPDX-License-Identifier: MIT
// The road of a Beast stream through the library, on one thread, in frames per second:
//   BM_Extract/aircraft      cutting the frames out of the stream
//   BM_Decode/aircraft       decoding the frames, repair of the damaged ones included
//   BM_BeastStream/aircraft  the whole road: extract, decode, track
//   BM_AllocationUnit        the yardstick: two small shared objects made and released
// The streams hold that many aircraft and 5 % damaged frames.
#include <modes/modes.h>

#include <benchmark/benchmark.h>

#include <array>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace quorvel::modes;

std::string const& stream(long aircraft) {
    static std::string cached;
    static long cachedAircraft = 0;
    if (cachedAircraft != aircraft) {
        auto const path =
            std::string(TREVALLO_BENCH_STREAMS) + "/aircraft_" + std::to_string(aircraft) + ".beast";
        std::ifstream file(path, std::ios::binary);
        if (!file) throw std::runtime_error("cannot read " + path);
        cached.assign(std::istreambuf_iterator<char>(file), {});
        cachedAircraft = aircraft;
    }
    return cached;
}

// The stream in the pieces in which a socket would deliver it.
constexpr std::size_t kPieceSize = 64 * 1024;

template <class UseFrames> std::int64_t cutInPieces(std::string const& bytes, UseFrames const& use) {
    std::int64_t frames = 0;
    std::string buffer;
    for (std::size_t at = 0; at < bytes.size(); at += kPieceSize) {
        buffer.append(bytes, at, kPieceSize);
        for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Beast)) {
            use(frame);
            ++frames;
        }
    }
    return frames;
}

void BM_Extract(benchmark::State& state) {
    Log::setShowLevel(Log::Error);
    auto const& bytes = stream(state.range(0));
    std::int64_t frames = 0;
    for (auto _ : state)
        frames += cutInPieces(bytes, [](auto const& frame) { benchmark::DoNotOptimize(frame); });
    state.SetItemsProcessed(frames);
}
BENCHMARK(BM_Extract)->ArgName("aircraft")->Arg(200)->Arg(4000);

void BM_Decode(benchmark::State& state) {
    Log::setShowLevel(Log::Error);
    auto const& bytes = stream(state.range(0));
    std::string whole = bytes;
    auto const frames = ModeSEncapsulation::extract(whole, ModeSEncapsulation::Beast);
    for (auto _ : state) {
        ModeSDecoder decoder;
        for (auto const& frame : frames)
            benchmark::DoNotOptimize(decoder.decode(ModeSMessage::DOWNLINK, frame));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(frames.size()));
}
BENCHMARK(BM_Decode)->ArgName("aircraft")->Arg(200)->Arg(4000);

void BM_BeastStream(benchmark::State& state) {
    Log::setShowLevel(Log::Error);
    auto const& bytes = stream(state.range(0));
    std::int64_t frames = 0;
    for (auto _ : state) {
        ModeSDecoder decoder;
        ADSBTracker tracker;
        frames += cutInPieces(bytes, [&](auto const& frame) {
            tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame));
        });
    }
    state.SetItemsProcessed(frames);
}
BENCHMARK(BM_BeastStream)->ArgName("aircraft")->Arg(200)->Arg(4000);

void BM_AllocationUnit(benchmark::State& state) {
    for (auto _ : state) {
        auto record = std::make_shared<std::array<char, 56>>();
        auto message = std::make_shared<std::array<char, 128>>();
        benchmark::DoNotOptimize(record);
        benchmark::DoNotOptimize(message);
    }
}
BENCHMARK(BM_AllocationUnit);

} // namespace
