// SPDX-License-Identifier: MIT
// From the stream in memory to the targets: extract, decode, track. 60 % long frames, 5 % damaged; decoder
// and tracker know nothing at the start. Each stream exists as Beast and as AVR text with time stamps.
#include "support/measure.h"
#include "support/streams.h"

namespace quorvel::modes::bench {

namespace {

void road(benchmark::State& state, ModeSEncapsulation::Format format) {
    auto const& bytes =
        stream("aircraft_" + std::to_string(state.range(0)) + "." + ModeSEncapsulation::identifier(format));
    takeStream(state, bytes, format);
}
BENCHMARK_CAPTURE(road, beast, ModeSEncapsulation::Beast)->Arg(200)->Arg(4000);
BENCHMARK_CAPTURE(road, avr, ModeSEncapsulation::Avr)->Arg(200)->Arg(4000);

} // namespace

} // namespace quorvel::modes::bench
