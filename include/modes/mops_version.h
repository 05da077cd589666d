// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstdint>
#include <string>

namespace quorvel::modes {

/// Version of the ADS-B minimum operational performance standards that an aircraft's transmitter follows.
/// Source: RTCA DO-260B, 2.2.3.2.7.2.5 (version number subfield).
enum MOPSVersion : std::uint32_t {
    MOPS_V0 = 0,      ///< DO-260
    MOPS_V1 = 1,      ///< DO-260A
    MOPS_V2 = 2,      ///< DO-260B
    MOPS_UNKNOWN = 3, ///< not known, or a version that this library does not know
};

/// Reads a version from decimal text, as the aircraft database stores it: "0", "1" and "2" give that version,
/// every other number (negative ones included) gives `MOPS_UNKNOWN`. Throws what `std::stoi` throws
/// (`std::invalid_argument`, `std::out_of_range`) for text that is not a number; `out` is then left as it was.
TREVALLO_EXPORT void ConvMOPSVersion(std::string const& text, MOPSVersion& out);

} // namespace quorvel::modes
