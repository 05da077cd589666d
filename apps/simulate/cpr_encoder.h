// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvel::simulate {

/// A position in compact position reporting form, 17 bits each; 12 of a coarse one.
struct CompactPosition {
    std::uint32_t latitude;
    std::uint32_t longitude;
};

/// Number of longitude zones at a latitude in degrees, 1 to 59 (RTCA DO-260B, A.1.7.2).
int longitudeZones(double latitude);

/// Encodes a position in degrees as an airborne or surface frame, even or odd (RTCA DO-260B, A.1.7.3).
/// Surface frames have zones of a quarter of the size, coarse ones 12 bits (2.2.17.3.5).
CompactPosition encodeAirborne(double latitude, double longitude, bool odd);
CompactPosition encodeSurface(double latitude, double longitude, bool odd);
CompactPosition encodeCoarse(double latitude, double longitude, bool odd);

} // namespace quorvel::simulate
