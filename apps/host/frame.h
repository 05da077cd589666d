// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvel::host {

/// Milliseconds since 1970-01-01 00:00:00 UTC; 0 is none.
using TimeMs = unsigned long long;

/// One frame as a receiver sent it: the library's record of it, and what the record does not keep.
struct Frame {
    std::shared_ptr<modes::ModeSEncapsulation> record; ///< bytes and time of reception
    std::optional<std::uint64_t> stamp; ///< the receiver's own time stamp, 48 bits, whatever it counts
    std::uint8_t signal = 0;            ///< the receiver's signal level; 0 where the encoding has none
    TimeMs now = 0; ///< the present of its stream when it came: unlike its time, not led astray by damage
};

using Frames = std::vector<Frame>;

inline constexpr std::size_t kModeAcFrameBytes = 2;
inline constexpr std::size_t kShortFrameBytes = 7;
inline constexpr std::size_t kLongFrameBytes = 14;

/// Length of a Mode S frame that begins with this byte: downlink formats from 16 up have their first bit set
/// and are long.
inline std::size_t rawFrameBytes(char firstByte) {
    return (static_cast<unsigned char>(firstByte) & 0x80) != 0 ? kLongFrameBytes : kShortFrameBytes;
}

} // namespace quorvel::host
