// SPDX-License-Identifier: MIT
// The parity of a frame, computed from its bytes.
#include "support/bench_frames.h"
#include "support/measure.h"

#include <string>
#include <vector>

namespace quorvel::modes::bench {

namespace {

void parity(benchmark::State& state, DFMessage::DownlinkFormat format, ModeSMessage const& message) {
    std::vector<std::string> frames;
    for (auto const& frame : intactFrames(format)) frames.push_back(frame->data());
    takeTurns(state, frames, [&](auto const& frame) { benchmark::DoNotOptimize(message.calculateParity(frame)); });
}
BENCHMARK_CAPTURE(parity, short, DFMessage::DF4, DF4Message());
BENCHMARK_CAPTURE(parity, long, DFMessage::DF17, DF17Message());

} // namespace

} // namespace quorvel::modes::bench
