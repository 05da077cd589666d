// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quorvel::airspace {

/// The four bytes from `position` on, the first of them the highest.
inline std::uint32_t word(std::string_view bytes, std::size_t position) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + position, sizeof word);
    if constexpr (std::endian::native == std::endian::big) return word;
    return word << 24 | (word << 8 & 0xFF0000) | (word >> 8 & 0xFF00) | word >> 24;
}

} // namespace quorvel::airspace
