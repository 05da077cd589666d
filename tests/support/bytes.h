// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvel::modes::test {

/// Bytes from hexadecimal text; blanks between bytes are ignored. Anything else is a mistake in the test and
/// throws.
inline std::string fromHex(std::string_view hex) {
    auto const digit = [](char c) -> int {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        throw std::invalid_argument("not a hexadecimal digit");
    };
    std::string bytes;
    for (std::size_t i = 0; i < hex.size();) {
        if (hex[i] == ' ') {
            ++i;
            continue;
        }
        if (i + 1 == hex.size()) throw std::invalid_argument("odd number of hexadecimal digits");
        bytes += static_cast<char>(digit(hex[i]) << 4 | digit(hex[i + 1]));
        i += 2;
    }
    return bytes;
}

/// The bytes with the bits at `positions` (0 = most significant bit of the first byte) inverted.
inline std::string withBitsInverted(std::string bytes, std::initializer_list<unsigned> positions) {
    for (auto const position : positions) {
        auto& byte = bytes.at(position / 8);
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (0x80U >> position % 8));
    }
    return bytes;
}

/// The bytes with the `width` bits at `position` replaced by `value`.
inline std::string withBits(std::string bytes, unsigned position, unsigned width, unsigned long long value) {
    for (unsigned i = 0; i < width; ++i) {
        auto& byte = bytes.at((position + i) / 8);
        auto const mask = static_cast<unsigned char>(0x80U >> (position + i) % 8);
        bool const set = (value >> (width - 1 - i) & 1) != 0;
        byte =
            static_cast<char>(set ? static_cast<unsigned char>(byte) | mask : static_cast<unsigned char>(byte) & ~mask);
    }
    return bytes;
}

} // namespace quorvel::modes::test
