// SPDX-License-Identifier: MIT
#pragma once

#include "support/road.h"

#include <benchmark/benchmark.h>

namespace quorvel::modes::bench {

/// Spends the iterations of a benchmark on the items in turn.
template <class Items, class Use> void takeTurns(benchmark::State& state, Items const& items, Use const& use) {
    if (items.empty()) return state.SkipWithError("there is nothing to measure with");
    auto item = items.begin();
    for (auto _ : state) {
        use(*item);
        if (++item == items.end()) item = items.begin();
    }
    state.SetItemsProcessed(state.iterations());
}

/// Spends the iterations of a benchmark on the whole road of a stream, by a receiver that knows nothing at
/// the start.
inline void takeStream(benchmark::State& state, std::string const& bytes, ModeSEncapsulation::Format format) {
    std::int64_t frames = 0;
    for (auto _ : state) {
        Receiver receiver;
        frames += receiver.take(bytes, format);
    }
    state.SetItemsProcessed(frames);
}

} // namespace quorvel::modes::bench
