// SPDX-License-Identifier: MIT
#include "simulate/standard_air.h"

#include <cmath>

namespace quorvel::simulate {

namespace {

constexpr double kKelvin = 273.15;
constexpr double kSeaLevelKelvin = 288.15;
constexpr double kSeaLevelPressure = 1013.25; // hPa
constexpr double kSeaLevelSound = 661.4788;   // knots
constexpr double kLapse = 0.0019812;          // kelvin per foot
constexpr double kTropopause = 36089.24;      // feet
constexpr double kTropopauseKelvin = 216.65;
constexpr double kPressureExponent = 5.255880;
constexpr double kScaleHeight = 20805.8; // feet, above the tropopause

// Impact pressure over static pressure of a Mach number, and back.
double impactOf(double mach) { return std::pow(1.0 + 0.2 * mach * mach, 3.5) - 1.0; }
double machOfImpact(double ratio) { return std::sqrt(5.0 * (std::pow(ratio + 1.0, 2.0 / 7.0) - 1.0)); }

double soundAt(double celsius) { return kSeaLevelSound * std::sqrt((celsius + kKelvin) / kSeaLevelKelvin); }

} // namespace

double standardTemperature(double feet) {
    return (feet < kTropopause ? kSeaLevelKelvin - kLapse * feet : kTropopauseKelvin) - kKelvin;
}

double standardPressure(double feet) {
    double const lower = feet < kTropopause ? feet : kTropopause;
    double const pressure = kSeaLevelPressure * std::pow(1.0 - kLapse * lower / kSeaLevelKelvin, kPressureExponent);
    return feet < kTropopause ? pressure : pressure * std::exp((kTropopause - feet) / kScaleHeight);
}

double machOf(double trueAirspeed, double celsius) { return trueAirspeed / soundAt(celsius); }

double trueAirspeedOf(double mach, double celsius) { return mach * soundAt(celsius); }

double indicatedAirspeedOf(double mach, double pressure) {
    return kSeaLevelSound * machOfImpact(impactOf(mach) * pressure / kSeaLevelPressure);
}

double machOfIndicated(double knots, double pressure) {
    return machOfImpact(impactOf(knots / kSeaLevelSound) * kSeaLevelPressure / pressure);
}

} // namespace quorvel::simulate
