// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

namespace quorvel::airspace {

// The standard atmosphere and the speeds of a pitot tube in it. Source: ICAO Doc 7488.

inline constexpr double kSoundAtSeaLevelKt = 661.479;
inline constexpr double kTropopauseFt = 36089.24;

/// Temperature in degrees Celsius.
inline double standardTemperatureCelsius(double altitudeFt) {
    return 15.0 - 0.0019812 * std::min(altitudeFt, kTropopauseFt);
}

/// Pressure as a fraction of the one at sea level.
inline double standardPressureRatio(double altitudeFt) {
    if (altitudeFt <= kTropopauseFt) return std::pow(1.0 - 6.87559e-6 * altitudeFt, 5.25588);
    return 0.223361 * std::exp((kTropopauseFt - altitudeFt) / 20805.8);
}

/// The same out of a table, within 0.0001, for altitudes that codes can tell: -1,000 to 126,700 ft.
double tabulatedPressureRatio(int altitudeFt);

/// The speed of sound.
inline double standardSoundKt(double altitudeFt) {
    return kSoundAtSeaLevelKt * std::sqrt((standardTemperatureCelsius(altitudeFt) + 273.15) / 288.15);
}

/// What a pitot tube measures at a Mach number below 1, as a fraction of the pressure around it.
inline double impactPressureRatio(double mach) {
    auto const x = 1.0 + 0.2 * mach * mach;
    return x * x * x * std::sqrt(x) - 1.0;
}

} // namespace quorvel::airspace
