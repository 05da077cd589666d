// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace quorvel::modes {

constexpr int kMostLongitudeZones = 59;

// Latitudes at which the number of longitude zones falls: below the first there are 59, below the next 58,
// and so on; from the last on there is 1. These are the solutions of
//
//     NL = 2 pi / arccos(1 - (1 - cos(pi / 30)) / cos^2(latitude))
//
// for NL = 59 to 3, rounded to eight decimals, and 87 for NL = 2. The rounded values are the ones that count
// (ICAO Doc 9871, C.2.6.2), so they are listed here as data; a test compares them with the formula.
// clang-format off
constexpr std::array<double, kMostLongitudeZones - 1> kTransitionLatitudes = {
    10.47047130, 14.82817437, 18.18626357, 21.02939493, 23.54504487, 25.82924707,
    27.93898710, 29.91135686, 31.77209708, 33.53993436, 35.22899598, 36.85025108,
    38.41241892, 39.92256684, 41.38651832, 42.80914012, 44.19454951, 45.54626723,
    46.86733252, 48.16039128, 49.42776439, 50.67150166, 51.89342469, 53.09516153,
    54.27817472, 55.44378444, 56.59318756, 57.72747354, 58.84763776, 59.95459277,
    61.04917774, 62.13216659, 63.20427479, 64.26616523, 65.31845310, 66.36171008,
    67.39646774, 68.42322022, 69.44242631, 70.45451075, 71.45986473, 72.45884545,
    73.45177442, 74.43893416, 75.42056257, 76.39684391, 77.36789461, 78.33374083,
    79.29428225, 80.24923213, 81.19801349, 82.13956981, 83.07199445, 83.99173563,
    84.89166191, 85.75541621, 86.53536998, 87.0,
};
// clang-format on

// For each whole degree, how many transitions are at it or below: where the search for a latitude starts. At most two
// transitions are within one degree.
constexpr auto transitionsByDegree() {
    std::array<unsigned char, 87> below{};
    for (std::size_t degree = 0; degree < below.size(); ++degree) {
        while (kTransitionLatitudes[below[degree]] <= static_cast<double>(degree)) ++below[degree];
    }
    return below;
}
constexpr auto kTransitionsByDegree = transitionsByDegree();

/// Number of longitude zones at a latitude in degrees, 59 to 1. A transition belongs to the lower number, and
/// what is not a number compares below none of them.
inline int longitudeZones(double latitude) {
    auto const distance = std::abs(latitude);
    if (!(distance < kTransitionLatitudes.back())) return 1;
    auto above = kTransitionsByDegree[static_cast<std::size_t>(distance)];
    while (kTransitionLatitudes[above] <= distance) ++above;
    return kMostLongitudeZones - above;
}

} // namespace quorvel::modes
