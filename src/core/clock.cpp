// SPDX-License-Identifier: MIT
#include "core/clock.h"

#include <atomic>

namespace quorvel::modes::clock {

namespace {

std::atomic<Source> steered{nullptr};

TimePoint now() {
    auto const source = steered.load(std::memory_order_relaxed);
    return source ? source() : std::chrono::system_clock::now();
}

template <class Unit> auto sinceEpoch() {
    return std::chrono::duration_cast<Unit>(now().time_since_epoch()).count();
}

} // namespace

std::int64_t nowSeconds() { return sinceEpoch<std::chrono::seconds>(); }

std::uint64_t nowMilliseconds() {
    return static_cast<std::uint64_t>(sinceEpoch<std::chrono::milliseconds>());
}

Source setSource(Source source) { return steered.exchange(source); }

} // namespace quorvel::modes::clock
