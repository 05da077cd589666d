// SPDX-License-Identifier: MIT
// Decoding, for each downlink format, by a decoder that knows the aircraft; and that of a whole stream.
#include "support/bench_frames.h"
#include "support/measure.h"
#include "support/streams.h"

namespace quorvel::modes::bench {

namespace {

void decode(benchmark::State& state, DFMessage::DownlinkFormat format) {
    auto decoder = decoderInService();
    bool decoded = true;
    takeTurns(state, intactFrames(format),
        [&](auto const& frame) { decoded &= decoder.decode(ModeSMessage::DOWNLINK, frame) != nullptr; });
    if (!decoded) state.SkipWithError("an intact frame was not decoded");
}
BENCHMARK_CAPTURE(decode, DF0, DFMessage::DF0);
BENCHMARK_CAPTURE(decode, DF4, DFMessage::DF4);
BENCHMARK_CAPTURE(decode, DF5, DFMessage::DF5);
BENCHMARK_CAPTURE(decode, DF11, DFMessage::DF11);
BENCHMARK_CAPTURE(decode, DF16, DFMessage::DF16);
BENCHMARK_CAPTURE(decode, DF17, DFMessage::DF17);
BENCHMARK_CAPTURE(decode, DF18, DFMessage::DF18);
BENCHMARK_CAPTURE(decode, DF19, DFMessage::DF19);
BENCHMARK_CAPTURE(decode, DF20, DFMessage::DF20);
BENCHMARK_CAPTURE(decode, DF21, DFMessage::DF21);

// Frames of all formats, 5 % of them damaged, by a decoder that knows nothing at the start.
void decodeStream(benchmark::State& state, char const* name) {
    auto const frames = framesOf(stream(name));
    for (auto _ : state) {
        ModeSDecoder decoder;
        for (auto const& frame : frames) benchmark::DoNotOptimize(decoder.decode(ModeSMessage::DOWNLINK, frame));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(frames.size()));
}
BENCHMARK_CAPTURE(decodeStream, 200, "aircraft_200.beast")->Name("decode/stream/200");
BENCHMARK_CAPTURE(decodeStream, 4000, "aircraft_4000.beast")->Name("decode/stream/4000");

} // namespace

} // namespace quorvel::modes::bench
