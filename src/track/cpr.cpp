// SPDX-License-Identifier: MIT
#include <modes/cpr.h>

#include "track/longitude_zones.h"

#include <algorithm>
#include <limits>

namespace quorvel::modes {

// Every pair of arguments is defined, even where the hardware's arithmetic is not.

int cprModFunction(int a, int b) {
    if (b == 0 || b == -1) return 0;
    int const remainder = a % b;
    if (remainder >= 0) return remainder;
    return static_cast<int>(static_cast<unsigned int>(remainder) + static_cast<unsigned int>(b));
}

int cprNLFunction(double lat) { return longitudeZones(lat); }

int cprNFunction(double lat, int i) {
    auto const zones = static_cast<long long>(cprNLFunction(lat)) - i;
    return static_cast<int>(std::clamp<long long>(zones, 1, std::numeric_limits<int>::max()));
}

double cprDlonFunction(double lat, int i) { return 360.0 / cprNFunction(lat, i); }

} // namespace quorvel::modes
