// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/callsign.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvel::airspace {

/// The characters by their six-bit codes.
inline constexpr std::string_view kSixBitAlphabet = "#ABCDEFGHIJKLMNOPQRSTUVWXYZ#####"
                                                    " ###############0123456789######";
static_assert(kSixBitAlphabet.size() == 64);

/// The codes of the alphabet, a bit for each.
inline constexpr std::uint64_t kSixBitCodes = [] {
    std::uint64_t codes = 0;
    for (unsigned code = 0; code != kSixBitAlphabet.size(); ++code) {
        if (kSixBitAlphabet[code] != '#') codes |= std::uint64_t{1} << code;
    }
    return codes;
}();

/// Whether the last 6 * Size bits of `codes` are a text of the alphabet.
template <std::size_t Size> constexpr bool isSixBitText(std::uint64_t codes) {
    std::uint64_t isText = 1;
    for (std::size_t i = 0; i < Size; ++i, codes >>= 6) isText &= kSixBitCodes >> (codes & 0x3F);
    return isText != 0;
}

/// The text of the last 6 * Size bits of `codes`.
template <std::size_t Size> SixBitText<Size> sixBitText(std::uint64_t codes) {
    SixBitText<Size> text;
    for (std::size_t i = Size; i-- > 0; codes >>= 6) text.characters[i] = kSixBitAlphabet[codes & 0x3F];
    return text;
}

} // namespace quorvel::airspace
