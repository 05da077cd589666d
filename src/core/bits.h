// SPDX-License-Identifier: MIT
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace quorvel::modes {

// Bits of a byte string, counted from 0 at the most significant bit of the first byte, as the standards draw
// them. Reading past the end is the caller's mistake: frames and payloads are checked for their length once,
// on entry.

/// The bit at `position`.
inline bool bit(std::string_view bytes, std::size_t position) {
    assert(position / 8 < bytes.size());
    return (static_cast<unsigned char>(bytes[position / 8]) >> (7 - position % 8) & 1) != 0;
}

/// The number made of the `width` bits from `position` on, most significant first.
template <class Value = std::uint32_t>
Value bits(std::string_view bytes, std::size_t position, std::size_t width) {
    assert(width <= 8 * sizeof(Value) && position + width <= 8 * bytes.size());
    std::uint64_t value = 0;
    for (std::size_t i = position; i < position + width; ++i)
        value = value << 1 | std::uint64_t{bit(bytes, i)};
    return static_cast<Value>(value);
}

/// The number made of the bits at the listed positions, in the order of the list, most significant first.
template <class Positions> std::uint32_t collect(std::string_view bytes, Positions const& positions) {
    assert(std::size(positions) <= 32);
    std::uint32_t value = 0;
    for (auto const position : positions) value = value << 1 | std::uint32_t{bit(bytes, position)};
    return value;
}

} // namespace quorvel::modes
