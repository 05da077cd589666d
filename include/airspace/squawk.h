// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <string>

namespace quorvel::airspace {

/// What a Mode A code of an emergency says (ICAO Annex 10 Vol. IV, 2.1.4.2).
enum class Emergency : std::uint8_t {
    None,
    Unlawful, ///< 7500: unlawful interference
    Radio,    ///< 7600: radio failure
    General,  ///< 7700
};

/// A Mode A code.
struct Squawk {
    std::uint16_t code = 0; ///< 0 to 07777, three bits for each digit

    /// The emergency that it stands for.
    Emergency emergency() const {
        return code == 07500   ? Emergency::Unlawful
               : code == 07600 ? Emergency::Radio
               : code == 07700 ? Emergency::General
                               : Emergency::None;
    }
};

/// Its four digits: "7500".
TREVALLO_AIRSPACE_EXPORT std::string textOf(Squawk squawk);

/// The code of a 13-bit identity field: bits C1 A1 C2 A2 C4 A4 X B1 D1 B2 D2 B4 D4, the first of them the highest. X
/// is not used. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.7.1.
TREVALLO_AIRSPACE_EXPORT Squawk readIdentityCode(std::uint32_t code);

} // namespace quorvel::airspace
