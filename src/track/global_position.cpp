// SPDX-License-Identifier: MIT
#include "track/global_position.h"

#include <modes/cpr.h>

#include <algorithm>

namespace quorvel::modes {

// One frame says where in its zone an aircraft is, not in which zone. Even zones are 6 degrees of latitude
// high (60 around the globe), odd ones 360 / 59: the difference of the two coordinates therefore grows by a
// fixed step from zone to zone, and its rounded value is the number of the zone (ICAO Doc 9871, C.2.6.7). The
// same is done with the longitude, where the number of zones follows from the latitude; this must be the same
// for both frames. The order of the arithmetic is fixed: results are the same to the last bit everywhere.

namespace {

constexpr double kUnit = 7.62939453125e-06; // 2^-17 of a zone
constexpr double kEvenZoneHeight = 6.0;     // degrees
constexpr double kOddZoneHeight = 6.101694915254237;

// The difference of the weighted coordinates as a number of zones: the nearest, the upper one of two. There
// are never more than sixty, so the number is one of 32 bits.
int zoneNumber(double weightedDifference) {
    double const zones = weightedDifference * kUnit + 0.5;
    int const truncated = static_cast<int>(zones);
    return truncated > zones ? truncated - 1 : truncated;
}

double latitudeOf(double zoneHeight, int zone, unsigned int coordinate) {
    double const latitude = zoneHeight * (zone + coordinate * kUnit);
    return latitude >= 270.0 ? latitude - 360.0 : latitude;
}

double longitudeOf(int zones, int zone, unsigned int coordinate) {
    double const longitude = 360.0 / zones * (cprModFunction(zone, zones) + coordinate * kUnit);
    return longitude > 180.0 ? longitude - 360.0 : longitude;
}

} // namespace

std::optional<GlobalPosition> globalPosition(detail::CPRFrame const& even, detail::CPRFrame const& odd) {
    int const latitudeZone = zoneNumber(59.0 * even.latitude - 60.0 * odd.latitude);
    double const evenLatitude = latitudeOf(kEvenZoneHeight, cprModFunction(latitudeZone, 60), even.latitude);
    double const oddLatitude = latitudeOf(kOddZoneHeight, cprModFunction(latitudeZone, 59), odd.latitude);

    int const zones = cprNLFunction(evenLatitude);
    if (zones != cprNLFunction(oddLatitude)) return {};

    int const longitudeZone =
        zoneNumber(static_cast<double>(even.longitude) * (zones - 1) - static_cast<double>(odd.longitude) * zones);
    auto const time = std::max(even.time, odd.time);
    if (even.time > odd.time) {
        return GlobalPosition{evenLatitude, longitudeOf(zones, longitudeZone, even.longitude), time};
    }
    int const oddZones = std::max(zones - 1, 1);
    return GlobalPosition{oddLatitude, longitudeOf(oddZones, longitudeZone, odd.longitude), time};
}

} // namespace quorvel::modes
