// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvel::modes {

// The 48-bit time stamp of receivers: upper 18 bits second of the UTC day, lower 30 bits nanosecond in that
// second.

inline constexpr std::size_t kReceiverTimeBytes = 6;

/// The time of the six bytes, in milliseconds since 1970-01-01 00:00:00 UTC, on the day of the host's clock.
std::uint64_t receiverTime(std::string_view bytes);

/// The 48 bits for a time in milliseconds. The nanosecond part holds the millisecond times 1000, which is
/// what the text encoding has always written (deliberate).
std::uint64_t receiverTimeBits(std::uint64_t milliseconds);

} // namespace quorvel::modes
