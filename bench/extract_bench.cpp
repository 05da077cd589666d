// SPDX-License-Identifier: MIT
// Cutting frames out of a stream, for each encoding: the same frames of 200 aircraft in all of them.
#include "support/bench_frames.h"
#include "support/measure.h"
#include "support/streams.h"

#include <string>
#include <vector>

namespace quorvel::modes::bench {

namespace {

void extract(benchmark::State& state, ModeSEncapsulation::Format format, char const* name) {
    auto const& bytes = stream(name);
    std::int64_t frames = 0;
    for (auto _ : state)
        frames += forEachFrame(bytes, format, [](auto const& frame) { benchmark::DoNotOptimize(frame); });
    state.SetItemsProcessed(frames);
}
BENCHMARK_CAPTURE(extract, beast, ModeSEncapsulation::Beast, "aircraft_200.beast");
BENCHMARK_CAPTURE(extract, avr_timed, ModeSEncapsulation::Avr, "aircraft_200.avr");
BENCHMARK_CAPTURE(extract, avr, ModeSEncapsulation::Avr, "aircraft_200_untimed.avr");

// This encoding is the bytes of one frame: a call for each.
void extractBinary(benchmark::State& state) {
    std::vector<std::string> frames;
    for (auto const& frame : framesOf(stream("aircraft_200.beast"))) frames.push_back(frame->data());
    std::string buffer;
    takeTurns(state, frames, [&](std::string const& frame) {
        buffer = frame;
        auto const records = ModeSEncapsulation::extract(buffer, ModeSEncapsulation::RawBin);
        benchmark::DoNotOptimize(records.data());
    });
}
BENCHMARK(extractBinary)->Name("extract/bin");

} // namespace

} // namespace quorvel::modes::bench
