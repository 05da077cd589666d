// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel::modes {

/// The digits of every hexadecimal text that the libraries write.
inline constexpr char kHexDigits[] = "0123456789ABCDEF";

/// What `hexDigitValue` returns for any other character: the one bit that no digit has.
inline constexpr std::uint8_t kNoHexDigit = 16;

/// The value of a hexadecimal digit of either case.
inline std::uint8_t hexDigitValue(char character) {
    static constexpr auto kValues = [] {
        std::array<std::uint8_t, 256> values{};
        for (auto& value : values) value = kNoHexDigit;
        for (std::uint8_t i = 0; i < 10; ++i) values['0' + i] = i;
        for (std::uint8_t i = 10; i < 16; ++i) values['A' + i - 10] = values['a' + i - 10] = i;
        return values;
    }();
    return kValues[static_cast<unsigned char>(character)];
}

/// Appends the last `digits` digits of a number, upper case, with zeros in front.
inline void appendHex(std::string& text, std::uint64_t number, unsigned digits) {
    for (unsigned shift = 4 * digits; shift > 0; shift -= 4) text += kHexDigits[number >> (shift - 4) & 0xF];
}

/// Appends each byte as two upper-case digits, high nibble first.
inline void appendHex(std::string& text, std::string_view bytes) {
    for (char const byte : bytes) appendHex(text, static_cast<unsigned char>(byte), 2);
}

/// Each byte as two upper-case digits, without separators.
inline std::string hexOfBytes(std::string_view bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    appendHex(text, bytes);
    return text;
}

/// "%.2X": upper case, at least two digits, not padded any further.
inline std::string hexOfNumber(std::uint32_t number) {
    unsigned digits = 2;
    while (std::uint64_t{number} >> 4 * digits != 0) ++digits;
    std::string text;
    appendHex(text, number, digits);
    return text;
}

} // namespace quorvel::modes
