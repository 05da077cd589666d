// SPDX-License-Identifier: MIT
// What decoder and tracker keep in memory for one aircraft, after the frames of 4,000 have come and gone.
#include "support/road.h"
#include "support/streams.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

namespace quorvel::modes::bench {

namespace {

// With what the allocator needs for each piece.
std::size_t bytesInUse() {
    auto const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void memory(benchmark::State& state) {
    auto const& bytes = stream("aircraft_4000.beast");
    double perTarget = 0;
    for (auto _ : state) {
        auto const before = bytesInUse();
        Receiver receiver;
        receiver.take(bytes, ModeSEncapsulation::Beast);
        auto const kept = static_cast<double>(bytesInUse() - before);
        perTarget = kept / static_cast<double>(receiver.tracker.allTargets().size());
    }
    state.counters["bytes_per_aircraft"] = perTarget;
}
BENCHMARK(memory)->Name("memory/target");

} // namespace

} // namespace quorvel::modes::bench
