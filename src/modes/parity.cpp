// SPDX-License-Identifier: MIT
#include "modes/parity.h"

#include "core/bits.h"
#include "modes/parity_marks.h"

#include <array>

namespace quorvel::modes::parity {

namespace {

// What each value of each data byte adds to the remainder.
constexpr unsigned kDataBytes = kDataBits / 8;
constexpr auto kByteMarks = [] {
    std::array<std::array<std::uint32_t, 256>, kDataBytes> marks{};
    for (unsigned byte = 0; byte < kDataBytes; ++byte) {
        for (unsigned value = 0; value < 256; ++value) {
            for (unsigned i = 0; i < 8; ++i) {
                if ((value >> (7 - i) & 1) != 0) marks[byte][value] ^= kMarks[8 * byte + i];
            }
        }
    }
    return marks;
}();

// Bits from the parity field on leave no mark.
std::uint32_t markOf(unsigned position) { return position < kDataBits ? kMarks[position] : 0; }

// What the first `bytes` bytes of a frame add up to, the first of them being byte `FirstByte` of a long
// frame.
template <unsigned FirstByte> std::uint32_t sumOfBytes(std::string_view frame, std::size_t bytes) {
    std::uint32_t result = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        result ^= kByteMarks[FirstByte + i][static_cast<unsigned char>(frame[i])];
    }
    return result;
}

} // namespace

std::uint32_t remainder(std::string_view frame, unsigned frameBits) {
    constexpr unsigned kShortFrameFirstByte = kShortFrameOffset / 8;
    // fast paths for the two lengths that replies have
    if (frameBits == kLongFrameBits && frame.size() >= kDataBytes) return sumOfBytes<0>(frame, kDataBytes);
    if (frameBits == kShortFrameBits && frame.size() >= kDataBytes - kShortFrameFirstByte) {
        return sumOfBytes<kShortFrameFirstByte>(frame, kDataBytes - kShortFrameFirstByte);
    }
    std::uint32_t result = 0;
    for (unsigned i = 0; i < frameBits && i / 8 < frame.size(); ++i) {
        if (bit(frame, i)) result ^= markOf(offsetOf(frameBits) + i);
    }
    return result;
}

} // namespace quorvel::modes::parity
