// SPDX-License-Identifier: MIT
#include <airspace/place.h>

#include "airspace/sky/earth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvel::airspace {

namespace {

double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

} // namespace

double distanceNm(Place const& from, Place const& to) {
    auto const sineOfHalf = [](double degrees) { return std::sin(radians(degrees) / 2); };
    auto const north = sineOfHalf(to.latitude - from.latitude);
    auto const east = sineOfHalf(to.longitude - from.longitude);
    auto const chord = north * north + std::cos(radians(from.latitude)) * std::cos(radians(to.latitude)) * east * east;
    return 2 * kEarthRadiusNm * std::asin(std::min(1.0, std::sqrt(chord)));
}

} // namespace quorvel::airspace
