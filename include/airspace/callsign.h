// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace quorvel::airspace {

/// `Size` characters of the six-bit alphabet, as aircraft send names and registrations: A to Z, 0 to 9 and the blank;
/// any other code reads `#`. Source: ICAO Annex 10 Vol. IV, 3.1.2.9.1.2, table 3-8.
template <std::size_t Size> struct SixBitText {
    std::array<char, Size> characters{}; ///< all of them, blanks too

    /// The text without the blanks at both ends; may be empty.
    std::string_view text() const {
        std::string_view const all(characters.data(), Size);
        auto const first = all.find_first_not_of(' ');
        if (first == std::string_view::npos) return {};
        return all.substr(first, all.find_last_not_of(' ') - first + 1);
    }

    /// Whether every code was one of the alphabet.
    bool isInAlphabet() const { return std::string_view(characters.data(), Size).find('#') == std::string_view::npos; }
};

/// The identification of an aircraft: the flight number, or the registration where there is none.
using Callsign = SixBitText<8>;

} // namespace quorvel::airspace
