// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/place.h>

#include "airspace/sky/standard_track.h"

#include <optional>

namespace quorvel::airspace {

/// A value that was worked out, and the time of the oldest report that it comes from.
struct DerivedValue {
    double value = 0.0;
    TrackTime updated = 0;
};

/// What the reported items of an aircraft tell without saying it. A value is there only if its inputs are fresh (but for distance and bearing, which age with the position), and what
/// it stands for was not reported itself. Source of each is `Source::Derived`.
struct DerivedItems {
    std::optional<DerivedValue> mach;           ///< of indicated airspeed and altitude, else of true airspeed
    std::optional<DerivedValue> trueAirspeedKt; ///< of Mach number and temperature, of the standard atmosphere at worst
    std::optional<DerivedValue> temperatureCelsius;      ///< static: of true airspeed and Mach number, both reported
    std::optional<DerivedValue> totalTemperatureCelsius; ///< of the static one, reported or derived, and Mach number
    std::optional<DerivedValue> windSpeedKt;             ///< of the two velocities, by true heading
    std::optional<DerivedValue> windDirectionDegrees;    ///< where it comes from, true, 0 up to 360
    std::optional<DerivedValue> gnssHeightFt;            ///< of pressure altitude and the reported difference
    std::optional<DerivedValue> distanceNm;              ///< from the receiver
    std::optional<DerivedValue> bearingDegrees;          ///< from the receiver, true, 0 up to 360
};

/// What can be derived at a time. A heading that is magnetic gives a wind only with the variation at the aircraft, degrees
/// to the east positive.
DerivedItems deriveItems(TrackItems const& items, TrackTime now, std::optional<Place> const& receiver = {},
    std::optional<double> variationDegrees = {});

/// Mach number of an indicated airspeed, taken as calibrated, at a pressure altitude, below the speed of sound.
/// Source: ICAO Doc 7488, and the equation of a pitot tube in subsonic flow (ISO 5878's atmosphere).
double machOfIndicatedAirspeed(double indicatedAirspeedKt, double altitudeFt);

/// Static temperature in degrees Celsius, of true airspeed and Mach number. Source: ICAO Doc 7488, speed of sound.
double temperatureOfSpeeds(double trueAirspeedKt, double mach);

/// The speed of sound in kt at a static temperature. Source: the same.
double soundKt(double temperatureCelsius);

/// Initial great-circle bearing in degrees, true, 0 up to 360.
double bearingDegrees(Place const& from, Place const& to);

/// A wind: where it comes from, and its speed.
struct Wind {
    double speedKt = 0.0;
    double directionDegrees = 0.0;
};

/// The wind that makes a velocity over ground of one through the air, both by true north: over ground = air + wind.
Wind windOf(double trueAirspeedKt, double trueHeadingDegrees, double groundSpeedKt, double trackDegrees);

} // namespace quorvel::airspace
