// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/place.h>

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// A position in compact position reporting: where the aircraft is within its zones, not within which.
/// Source: RTCA DO-260B, 2.2.3.2.3.5 to 2.2.3.2.3.8 and A.1.7; ICAO Doc 9871, C.2.6.
struct CompactPosition {
    std::uint32_t latitude = 0;  ///< 17 bits
    std::uint32_t longitude = 0; ///< 17 bits
    bool isOdd = false;          ///< the format
    bool isOnSurface = false;    ///< of a surface position message, whose zones have a quarter of the size
};

/// How far the two messages of a pair may be apart, in seconds: 10 in the air, 25 on the surface, 50 there at a ground
/// speed known to be at most 25 kt. Source: RTCA DO-260B, 2.2.10.3.1 and A.1.7.7.
TREVALLO_AIRSPACE_EXPORT double pairWindowSeconds(bool isOnSurface, std::optional<double> groundSpeedKt = {});

/// The number of longitude zones at a latitude in degrees: 59 at the equator, 2 at exactly 87 degrees, 1 beyond.
/// Source: RTCA DO-260B, A.1.7.2.
TREVALLO_AIRSPACE_EXPORT int longitudeZones(double latitude);

/// The place of `newer`, found together with a message of the other format that came shortly before.
///
/// Airborne positions need no reference. On the surface, four places in longitude and two in latitude fit; the one
/// nearest to `reference` is taken, across 180 degrees too. None if the two do not make a pair (the same format, one
/// airborne and one on the surface), if their latitudes lie in different longitude zones or beyond a pole, and on the
/// surface without a reference. Longitudes are from -180 up to, but not, 180 degrees.
/// Source: RTCA DO-260B, A.1.7.7 and A.1.7.8.
TREVALLO_AIRSPACE_EXPORT std::optional<Place> globalPosition(
    CompactPosition const& older, CompactPosition const& newer, std::optional<Place> const& reference = {});

/// The place that fits `position` nearest to `reference`: right if that is within half a zone, 180 NM in the air
/// and 45 NM on the surface. None if it would lie beyond a pole, or if the reference is not on the globe.
/// Source: RTCA DO-260B, A.1.7.4 and A.1.7.6.
TREVALLO_AIRSPACE_EXPORT std::optional<Place> localPosition(CompactPosition const& position, Place const& reference);

} // namespace quorvel::airspace
