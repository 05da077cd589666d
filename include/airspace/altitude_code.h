// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// In which way an altitude code is made. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.5.4.
enum class AltitudeCoding : std::uint8_t {
    None,       ///< all bits are 0: not known, or not to be told
    Steps25Ft,  ///< Q is 1: multiples of 25 ft from -1,000 to 50,175 ft
    Steps100Ft, ///< Q is 0: the code of Mode C (Gillham), -1,000 to 126,700 ft
    Metric,     ///< M is 1: metric units, whose steps no standard has settled
    Invalid,    ///< a code that Mode C does not have
};

/// An altitude as it was sent.
struct AltitudeCode {
    AltitudeCoding coding = AltitudeCoding::None; ///< how
    std::optional<std::int32_t> altitudeFt;       ///< ft; only of codes in steps of 25 and 100 ft
};

/// Reads a 13-bit altitude field (AC): bits C1 A1 C2 A2 C4 A4 M B1 Q B2 D2 B4 D4, the first of them the highest.
/// Source: ICAO Annex 10 Vol. IV, 3.1.2.6.5.4; the code of Mode C: the appendix to its chapter 3.
TREVALLO_AIRSPACE_EXPORT AltitudeCode readAltitudeCode(std::uint32_t code);

/// Reads the 12-bit altitude of an airborne position message: the same without M.
/// Source: RTCA DO-260B, 2.2.3.2.3.4; ICAO Doc 9871, table A-2-5.
TREVALLO_AIRSPACE_EXPORT AltitudeCode readSquitterAltitudeCode(std::uint32_t code);

} // namespace quorvel::airspace
