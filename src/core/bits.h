// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
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

/// The number made of the `width` bits from `position` on, most significant first; at most 57 bits, which no
/// alignment spreads over more than eight bytes.
template <class Value = std::uint32_t> Value bits(std::string_view bytes, std::size_t position, std::size_t width) {
    assert(width <= 57 && width <= 8 * sizeof(Value) && position + width <= 8 * bytes.size());
    std::size_t const end = position + width;
    std::uint64_t value = 0;
    for (std::size_t i = position / 8; 8 * i < end; ++i) {
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    }
    value >>= (8 - end % 8) % 8; // what follows the last bit in its byte
    return static_cast<Value>(value & ((std::uint64_t{1} << width) - 1));
}

/// Bits that are scattered over two neighbouring bytes, combined into a number in the order of a list of positions,
/// most significant first. What each byte adds to the number is looked up.
class ScatteredBits {
public:
    template <std::size_t N>
    explicit constexpr ScatteredBits(unsigned const (&positions)[N]) : _byte(firstByte(positions)) {
        static_assert(N <= 16);
        for (std::size_t i = 0; i < N; ++i) {
            auto const inBytes = positions[i] - 8 * _byte;
            for (unsigned value = 0; value < 256; ++value) {
                if ((value >> (7 - inBytes % 8) & 1) != 0) {
                    _parts[inBytes / 8][value] |= static_cast<std::uint16_t>(1U << (N - 1 - i));
                }
            }
        }
    }

    std::uint32_t of(std::string_view bytes) const {
        assert(bytes.size() >= _byte + 2);
        return std::uint32_t{_parts[0][static_cast<unsigned char>(bytes[_byte])]} |
               _parts[1][static_cast<unsigned char>(bytes[_byte + 1])];
    }

private:
    template <std::size_t N> static constexpr unsigned firstByte(unsigned const (&positions)[N]) {
        return *std::min_element(positions, positions + N) / 8;
    }

    unsigned _byte;
    std::array<std::array<std::uint16_t, 256>, 2> _parts{};
};

} // namespace quorvel::modes
