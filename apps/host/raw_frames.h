// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quorvel::host {

inline constexpr std::size_t kShortFrameBytes = 7;
inline constexpr std::size_t kLongFrameBytes = 14;

/// Length of a frame that begins with this byte: downlink formats from 16 up have their first bit set and are
/// long.
inline std::size_t rawFrameBytes(char firstByte) {
    return (static_cast<unsigned char>(firstByte) & 0x80) != 0 ? kLongFrameBytes : kShortFrameBytes;
}

} // namespace quorvel::host
