// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvel::modes {

// The 48-bit time stamp of receivers: upper 18 bits second of the UTC day, lower 30 bits nanosecond in that
// second.

inline constexpr std::size_t kReceiverTimeBytes = 6;

/// The start of the UTC day of a time, both in milliseconds since 1970-01-01 00:00:00 UTC. Receivers do not
/// tell the day: it is that of the host's clock.
std::uint64_t midnightBefore(std::uint64_t milliseconds);

/// The time of the six bytes on the day that began at `midnight`, both in milliseconds.
std::uint64_t receiverTime(std::string_view bytes, std::uint64_t midnight);

/// The 48 bits for a time in milliseconds. The nanosecond part holds the millisecond times 1000, which is
/// what the text encoding has always written (deliberate).
std::uint64_t receiverTimeBits(std::uint64_t milliseconds);

} // namespace quorvel::modes
