// SPDX-License-Identifier: MIT
#include <airspace/squawk.h>

#include <array>
#include <cstddef>

namespace quorvel::airspace {

namespace {

using HalfTable = std::array<std::uint16_t, 64>;

// What each value of six neighbouring bits of the field adds to the code, by the weights of these bits.
constexpr HalfTable codesOf(std::array<std::uint16_t, 6> const& weights) {
    HalfTable codes{};
    for (unsigned value = 0; value < codes.size(); ++value) {
        for (unsigned i = 0; i < weights.size(); ++i) {
            if ((value >> (5 - i) & 1U) != 0) codes[value] = static_cast<std::uint16_t>(codes[value] | weights[i]);
        }
    }
    return codes;
}

constexpr auto kUpperHalf = codesOf({00010, 01000, 00020, 02000, 00040, 04000}); // C1 A1 C2 A2 C4 A4
constexpr auto kLowerHalf = codesOf({00100, 00001, 00200, 00002, 00400, 00004}); // B1 D1 B2 D2 B4 D4

} // namespace

Squawk readIdentityCode(std::uint32_t code) {
    return {static_cast<std::uint16_t>(kUpperHalf[code >> 7 & 0x3F] | kLowerHalf[code & 0x3F])};
}

std::string textOf(Squawk squawk) {
    std::string digits(4, '0');
    for (std::size_t i = 0; i < digits.size(); ++i)
        digits[i] = static_cast<char>('0' + (squawk.code >> (9 - 3 * i) & 7));
    return digits;
}

} // namespace quorvel::airspace
