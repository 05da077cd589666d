// SPDX-License-Identifier: MIT
#include "simulate/cpr_encoder.h"

#include <algorithm>
#include <cmath>

namespace quorvel::simulate {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kEvenZones = 60;
constexpr double kSteps = 131072.0;     // 2^17
constexpr double kCoarseSteps = 4096.0; // 2^12

double positiveRemainder(double value, double divisor) { return value - divisor * std::floor(value / divisor); }

// Where in its zone a coordinate is, in steps; `bits` of them fit into a zone.
double stepsInZone(double coordinate, double zone, double stepsPerZone) {
    return std::floor(stepsPerZone * positiveRemainder(coordinate, zone) / zone + 0.5);
}

std::uint32_t low17Bits(double steps) {
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(steps)) & 0x1FFFF;
}

CompactPosition encode(double latitude, double longitude, bool odd, double stepsPerZone) {
    double const latitudeZone = 360.0 / (kEvenZones - (odd ? 1 : 0));
    double const latitudeSteps = stepsInZone(latitude, latitudeZone, stepsPerZone);
    // The receiver counts longitude zones at the latitude that it will have decoded, so the sender does too.
    double const decodedLatitude = latitudeZone * (latitudeSteps / stepsPerZone + std::floor(latitude / latitudeZone));
    int const zones = std::max(longitudeZones(decodedLatitude) - (odd ? 1 : 0), 1);
    return {low17Bits(latitudeSteps), low17Bits(stepsInZone(longitude, 360.0 / zones, stepsPerZone))};
}

} // namespace

int longitudeZones(double latitude) {
    double const magnitude = std::fabs(latitude);
    if (magnitude < 1e-9) return 59;
    if (magnitude > 87.0) return 1;
    if (magnitude == 87.0) return 2;
    double const ratio = (1.0 - std::cos(kPi / 30.0)) / std::pow(std::cos(kPi / 180.0 * magnitude), 2);
    return static_cast<int>(std::floor(2.0 * kPi / std::acos(1.0 - ratio)));
}

CompactPosition encodeAirborne(double latitude, double longitude, bool odd) {
    return encode(latitude, longitude, odd, kSteps);
}

CompactPosition encodeSurface(double latitude, double longitude, bool odd) {
    return encode(latitude, longitude, odd, 4 * kSteps);
}

CompactPosition encodeCoarse(double latitude, double longitude, bool odd) {
    return encode(latitude, longitude, odd, kCoarseSteps);
}

} // namespace quorvel::simulate
