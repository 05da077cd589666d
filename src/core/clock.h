// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

namespace quorvel::modes::clock {

// The only place that reads the system clock. Tests replace it with a source of their own.

using TimePoint = std::chrono::system_clock::time_point;
using Source = TimePoint (*)();

/// Now, truncated to whole seconds or milliseconds since 1970-01-01 00:00:00 UTC.
std::int64_t nowSeconds();
std::uint64_t nowMilliseconds();

/// Makes `source` the clock of the process and returns the one before; null stands for the system clock.
Source setSource(Source source);

} // namespace quorvel::modes::clock
