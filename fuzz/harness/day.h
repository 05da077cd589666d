// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvel::fuzz {

// The clock stands still while a target runs, so that the same input always does the same.

inline constexpr std::uint64_t kDayMilliseconds = 86'400'000;
inline constexpr std::uint64_t kMidnight = 19'844 * kDayMilliseconds; // 2024-05-01 00:00:00 UTC
inline constexpr std::uint64_t kNow = kMidnight + 45'296'789;         // 12:34:56.789

} // namespace quorvel::fuzz
