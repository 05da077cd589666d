// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace quorvel::simulate {

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kRadians = kPi / 180.0;
inline constexpr double kEarthRadius = 3440.065;                       // nautical miles
inline constexpr double kRadiansPerKnot = 1.0 / 3600.0 / kEarthRadius; // seen from the centre of the earth, each second

/// A place on earth in degrees, north and east positive.
struct Place {
    double latitude;
    double longitude;
};

/// From the centre of the earth, whose radius is 1: x to the equator at the zero meridian, z to the north pole.
using Vector = std::array<double, 3>;

Vector sum(Vector const& a, double scaleA, Vector const& b, double scaleB);
double product(Vector const& a, Vector const& b);
Vector crossProduct(Vector const& a, Vector const& b);
double lengthOf(Vector const& a);

/// Unit vectors at a place.
Vector upAt(Place const& place);
Vector directionAt(Place const& place, double degrees); ///< clockwise from true north

Place placeOf(Vector const& up);

/// Degrees clockwise from true north of a direction at a place, [0, 360).
double bearing(Place const& place, Vector const& direction);

/// Degrees as an angle of [0, 360).
double withinTurn(double degrees);

/// Where something is on the earth and where it faces: unit vectors at right angles.
struct Pose {
    Vector up;
    Vector forward;

    Vector left() const { return crossProduct(up, forward); }

    /// The rotation, in radians per second about an axis through the centre of the earth, of something that moves
    /// forward and turns to the right at a constant rate: it stays the same all along.
    Vector rotation(double forwardRate, double turnRate) const { return sum(left(), forwardRate, up, -turnRate); }

    Pose rotated(Vector const& rotation, double seconds) const;
};

} // namespace quorvel::simulate
