// SPDX-License-Identifier: MIT
#include "simulate/pose.h"

#include <algorithm>
#include <cmath>

namespace quorvel::simulate {

namespace {

Vector northAt(Place const& place) {
    double const latitude = place.latitude * kRadians;
    double const longitude = place.longitude * kRadians;
    return {-std::sin(latitude) * std::cos(longitude), -std::sin(latitude) * std::sin(longitude), std::cos(latitude)};
}

Vector eastAt(Place const& place) {
    double const longitude = place.longitude * kRadians;
    return {-std::sin(longitude), std::cos(longitude), 0.0};
}

// About a unit vector as axis (Rodrigues).
Vector turned(Vector const& a, Vector const& axis, double angle) {
    auto const inPlane = sum(a, std::cos(angle), crossProduct(axis, a), std::sin(angle));
    return sum(inPlane, 1.0, axis, product(axis, a) * (1.0 - std::cos(angle)));
}

} // namespace

Vector sum(Vector const& a, double scaleA, Vector const& b, double scaleB) {
    return {a[0] * scaleA + b[0] * scaleB, a[1] * scaleA + b[1] * scaleB, a[2] * scaleA + b[2] * scaleB};
}

double product(Vector const& a, Vector const& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector crossProduct(Vector const& a, Vector const& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double lengthOf(Vector const& a) { return std::sqrt(product(a, a)); }

Vector upAt(Place const& place) {
    double const latitude = place.latitude * kRadians;
    double const longitude = place.longitude * kRadians;
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
}

Vector directionAt(Place const& place, double degrees) {
    return sum(northAt(place), std::cos(degrees * kRadians), eastAt(place), std::sin(degrees * kRadians));
}

Place placeOf(Vector const& up) {
    return {std::asin(std::clamp(up[2], -1.0, 1.0)) / kRadians, std::atan2(up[1], up[0]) / kRadians};
}

double bearing(Place const& place, Vector const& direction) {
    double const degrees = std::atan2(product(direction, eastAt(place)), product(direction, northAt(place))) / kRadians;
    return degrees < 0 ? degrees + 360.0 : degrees;
}

double withinTurn(double degrees) { return degrees - 360.0 * std::floor(degrees / 360.0); }

Pose Pose::rotated(Vector const& rotation, double seconds) const {
    double const rate = lengthOf(rotation);
    if (rate == 0.0) return *this;
    auto const axis = sum(rotation, 1.0 / rate, rotation, 0.0);
    return {turned(up, axis, rate * seconds), turned(forward, axis, rate * seconds)};
}

} // namespace quorvel::simulate
