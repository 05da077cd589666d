// SPDX-License-Identifier: MIT
#include "core/clock.h"

#include <atomic>
#include <ctime>

namespace quorvel::modes::clock {

namespace {

std::atomic<Source> steered{nullptr};

template <class Unit> auto sinceEpoch(TimePoint time) {
    return std::chrono::duration_cast<Unit>(time.time_since_epoch()).count();
}

} // namespace

// Read for every message: the calendar time in whole seconds costs a tenth of a full reading of the clock.
std::int64_t nowSeconds() {
    if (auto const source = steered.load(std::memory_order_relaxed)) {
        return sinceEpoch<std::chrono::seconds>(source());
    }
    return static_cast<std::int64_t>(std::time(nullptr));
}

std::uint64_t nowMilliseconds() {
    auto const source = steered.load(std::memory_order_relaxed);
    auto const now = source ? source() : std::chrono::system_clock::now();
    return static_cast<std::uint64_t>(sinceEpoch<std::chrono::milliseconds>(now));
}

Source setSource(Source source) { return steered.exchange(source); }

} // namespace quorvel::modes::clock
