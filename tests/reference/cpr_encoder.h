// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace quorvel::modes::reference {

// Compact position reporting from the sender's side, by the formulas of ICAO Doc 9871, C.2.6.

struct EncodedPosition {
    unsigned latitude;
    unsigned longitude;
    int zones;               // number of longitude zones that the sender has used
    double latitudeStep;     // degrees per unit
    double longitudeStep;    // degrees per unit
    double receivedLatitude; // that a receiver will find
};

/// Number of longitude zones by the formula, not by the table of transitions.
inline int longitudeZonesByFormula(double latitude) {
    double const pi = std::acos(-1.0);
    if (std::abs(latitude) >= 87.0) return 1; // a transition belongs to the lower number
    if (latitude == 0.0) return 59;
    double const cosine = std::cos(pi / 180.0 * std::abs(latitude));
    return static_cast<int>(std::floor(2.0 * pi / std::acos(1.0 - (1.0 - std::cos(pi / 30.0)) / (cosine * cosine))));
}

inline double positiveRemainder(double value, double divisor) { return value - divisor * std::floor(value / divisor); }

/// The frame (odd = 1 or even = 0) of a position in degrees.
inline EncodedPosition encoded(double latitude, double longitude, int odd) {
    constexpr double kUnits = 131072.0;
    double const zoneHeight = 360.0 / (60 - odd);
    double const y = std::floor(kUnits * positiveRemainder(latitude, zoneHeight) / zoneHeight + 0.5);
    double const received = zoneHeight * (y / kUnits + std::floor(latitude / zoneHeight));
    int const zones = longitudeZonesByFormula(received);
    double const zoneWidth = 360.0 / (zones - odd > 1 ? zones - odd : 1);
    double const x = std::floor(kUnits * positiveRemainder(longitude, zoneWidth) / zoneWidth + 0.5);
    return {static_cast<unsigned>(y) & 0x1FFFF, static_cast<unsigned>(x) & 0x1FFFF, zones, zoneHeight / kUnits,
        zoneWidth / kUnits, received};
}

} // namespace quorvel::modes::reference
