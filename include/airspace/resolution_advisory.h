// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvel::airspace {

/// An advisory against one threat, or several that it passes on the same side (ARA bit 1 is 1).
/// Source: ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.1.
struct SameSenseAdvisory {
    bool isCorrective = false;    ///< ARA bit 2: the vertical rate must change; else it is to be kept
    bool isDownward = false;      ///< ARA bit 3: pass below; else above
    bool isIncreasedRate = false; ///< ARA bit 4
    bool isSenseReversal = false; ///< ARA bit 5
    bool crossesAltitude = false; ///< ARA bit 6: the threat's altitude will be crossed
    bool isPositive = false;      ///< ARA bit 7: climb or descend; else a limit of the vertical rate
};

/// An advisory to pass above some threats and below others (ARA bit 1 is 0, multiple threat bit is 1).
/// Source: ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.1.
struct MixedSenseAdvisory {
    bool correctsUpward = false;   ///< ARA bit 2
    bool requiresClimb = false;    ///< ARA bit 3: a positive climb
    bool correctsDownward = false; ///< ARA bit 4
    bool requiresDescent = false;  ///< ARA bit 5: a positive descent
    bool crossesAltitude = false;  ///< ARA bit 6
    bool isSenseReversal = false;  ///< ARA bit 7
};

/// What is known of the threat. Source: ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.5 and 4.3.8.4.2.2.1.6.
enum class ThreatType : std::uint8_t {
    None,     ///< no identity data
    Address,  ///< its address
    Position, ///< its altitude, range and bearing
    Reserved, ///< not assigned
};

/// A resolution advisory of an airborne collision avoidance system, as register 3,0, the MV field of format 16 and the
/// aircraft status message (6,1 subtype 2) hold it. Source: ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.
struct ResolutionAdvisory {
    std::uint16_t ara = 0;           ///< active resolution advisories, 14 bits, the first of them the highest
    std::uint8_t rac = 0;            ///< resolution advisory complements, 4 bits, the first of them the highest
    bool isTerminated = false;       ///< it has ended, and is shown for 18 s more
    bool hasMultipleThreats = false; ///< two or more threats

    std::optional<SameSenseAdvisory> sameSense;   ///< when ARA bit 1 is 1
    std::optional<MixedSenseAdvisory> mixedSense; ///< when ARA bit 1 is 0 and there are multiple threats

    bool noBelow = false; ///< complement received: do not pass below
    bool noAbove = false; ///< do not pass above
    bool noLeft = false;  ///< do not turn left
    bool noRight = false; ///< do not turn right

    ThreatType threatType = ThreatType::None;   ///< what follows
    std::optional<std::uint32_t> threatAddress; ///< 24 bits
    std::optional<int> threatAltitudeFt;        ///< ft
    std::optional<double> threatRangeNm;        ///< NM, to 0.1; none if unknown or beyond 12.55 NM
    std::optional<int> threatBearingDegrees;    ///< relative to own heading, middle of a sector of 6 degrees

    /// Whether there is, or was just now, any advisory.
    bool isIssued() const { return sameSense.has_value() || mixedSense.has_value(); }
};

/// Reads the bits from 9 on of the seven bytes of register 3,0, of an MV field or of a message 6,1 subtype 2, which
/// all have one layout; what the first eight say is not looked at. Bytes of another number give no advisory.
TREVALLO_AIRSPACE_EXPORT ResolutionAdvisory readResolutionAdvisory(std::string_view register3_0);

} // namespace quorvel::airspace
