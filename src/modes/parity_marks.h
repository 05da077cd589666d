// SPDX-License-Identifier: MIT
#pragma once

#include "core/wire.h"

#include <array>
#include <cstdint>

namespace quorvel::modes::parity {

// What single bits add to the remainder of a frame: the table that both the parity of a frame and the search
// for its damaged bits come from.

inline constexpr std::uint32_t kGenerator = 0x1FFF409;
using wire::kParityBits;
inline constexpr unsigned kLongFrameBits = 8 * wire::kLongFrameBytes;
inline constexpr unsigned kDataBits = kLongFrameBits - kParityBits;
inline constexpr unsigned kShortFrameBits = 8 * wire::kShortFrameBytes;
inline constexpr unsigned kShortFrameOffset =
    kLongFrameBits - kShortFrameBits; // the end of a long frame that starts with zeros

// What each data bit of a long frame adds to the remainder, the last data bit being x^24 modulo the
// generator.
inline constexpr auto kMarks = [] {
    std::array<std::uint32_t, kDataBits> marks{};
    std::uint32_t mark = kGenerator ^ (1U << kParityBits);
    for (unsigned i = kDataBits; i-- > 0;) {
        marks[i] = mark;
        mark <<= 1;
        if ((mark >> kParityBits & 1) != 0) mark ^= kGenerator;
    }
    return marks;
}();
static_assert(kMarks[0] == 0x3935EA && kMarks[1] == 0x1C9AF5 && kMarks[87] == 0xFFF409);

/// Where a frame starts among the bits of a long one.
constexpr unsigned offsetOf(unsigned frameBits) { return frameBits == kLongFrameBits ? 0 : kShortFrameOffset; }

} // namespace quorvel::modes::parity
