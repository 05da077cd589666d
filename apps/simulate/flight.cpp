// SPDX-License-Identifier: MIT
#include "simulate/flight.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quorvel::simulate {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRadians = kPi / 180.0;
constexpr double kEarthRadius = 3440.065; // nautical miles

using Vector = std::array<double, 3>;

Vector sum(Vector const& a, double scaleA, Vector const& b, double scaleB) {
    return {a[0] * scaleA + b[0] * scaleB, a[1] * scaleA + b[1] * scaleB, a[2] * scaleA + b[2] * scaleB};
}

double product(Vector const& a, Vector const& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector upAt(Place const& place) {
    double const latitude = place.latitude * kRadians;
    double const longitude = place.longitude * kRadians;
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
}

Vector northAt(Place const& place) {
    double const latitude = place.latitude * kRadians;
    double const longitude = place.longitude * kRadians;
    return {-std::sin(latitude) * std::cos(longitude), -std::sin(latitude) * std::sin(longitude), std::cos(latitude)};
}

Vector eastAt(Place const& place) {
    double const longitude = place.longitude * kRadians;
    return {-std::sin(longitude), std::cos(longitude), 0.0};
}

Place placeOf(Vector const& up) {
    return {std::asin(std::clamp(up[2], -1.0, 1.0)) / kRadians, std::atan2(up[1], up[0]) / kRadians};
}

Vector headingFrom(Place const& place, double degrees) {
    return sum(northAt(place), std::cos(degrees * kRadians), eastAt(place), std::sin(degrees * kRadians));
}

// Degrees clockwise from north of a direction at a place.
double bearing(Place const& place, Vector const& direction) {
    double const degrees = std::atan2(product(direction, eastAt(place)), product(direction, northAt(place))) / kRadians;
    return degrees < 0 ? degrees + 360.0 : degrees;
}

std::string makeCallsign(Random& random) {
    std::string callsign;
    for (int i = 0; i < 3; ++i) callsign += static_cast<char>('A' + random.below(26));
    return callsign + std::to_string(1 + random.below(9999));
}

Equipment makeEquipment(Random& random) {
    auto const percent = random.below(100);
    if (percent < 20) return Equipment::Version0;
    if (percent < 35) return Equipment::Version1;
    return percent < 88 ? Equipment::Version2 : Equipment::None;
}

} // namespace

Aircraft::Aircraft(std::uint32_t address, Place const& around, double radius, Random& random)
    : _address(address)
    , _callsign(makeCallsign(random))
    , _squawk(static_cast<std::uint32_t>(1 + random.below(07777)))
    , _category(static_cast<std::uint8_t>(1 + random.below(5)))
    , _equipment(makeEquipment(random))
    , _onGround(random.chance(0.08)) {
    double const distance = radius * std::sqrt(random.between(0.0, 1.0)) / kEarthRadius;
    auto const outward = headingFrom(around, random.between(0.0, 360.0));
    _start = sum(upAt(around), std::cos(distance), outward, std::sin(distance));
    _direction = headingFrom(placeOf(_start), random.between(0.0, 360.0));

    _groundSpeed = _onGround ? random.between(0.0, 40.0) : random.between(120.0, 540.0);
    _startAltitude = _onGround ? 0.0 : random.between(1500.0, 41000.0);
    bool const level = _onGround || random.chance(0.5);
    _finalAltitude = level ? _startAltitude : random.between(1500.0, 41000.0);
    _verticalRate = random.between(500.0, 3000.0) * (_finalAltitude < _startAltitude ? -1.0 : 1.0);
    if (level) _verticalRate = 0.0;
}

FlightState Aircraft::at(double seconds) const {
    double const angle = _groundSpeed / 3600.0 * seconds / kEarthRadius;
    auto const up = sum(_start, std::cos(angle), _direction, std::sin(angle));
    auto const direction = sum(_direction, std::cos(angle), _start, -std::sin(angle));
    auto const place = placeOf(up);

    double const climbed = _startAltitude + _verticalRate / 60.0 * seconds;
    bool const arrived = _verticalRate < 0 ? climbed <= _finalAltitude : climbed >= _finalAltitude;
    return {place, arrived ? _finalAltitude : climbed, _groundSpeed, bearing(place, direction),
        arrived ? 0.0 : _verticalRate};
}

} // namespace quorvel::simulate
