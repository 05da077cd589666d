// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::simulate {

// The standard atmosphere (ICAO Doc 7488) by pressure altitude in feet, up to 65,000 ft, and what instruments make of it.

double standardTemperature(double feet); ///< degrees Celsius
double standardPressure(double feet);    ///< hPa

/// Mach number of a true airspeed in knots, in air of this temperature in degrees Celsius.
double machOf(double trueAirspeed, double celsius);

/// True airspeed in knots, the other way round.
double trueAirspeedOf(double mach, double celsius);

/// What a perfect airspeed indicator shows below the speed of sound, in knots; pressure in hPa.
double indicatedAirspeedOf(double mach, double pressure);

/// The Mach number at which it shows that.
double machOfIndicated(double knots, double pressure);

} // namespace quorvel::simulate
