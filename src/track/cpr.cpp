// SPDX-License-Identifier: MIT
#include <modes/cpr.h>

#include "track/longitude_zones.h"

#include <algorithm>
#include <limits>

namespace quorvel::modes {

// The wide intermediate results keep every pair of arguments defined.

int cprModFunction(int a, int b) {
    if (b == 0) return 0;
    long long const remainder = static_cast<long long>(a) % b;
    return static_cast<int>(remainder < 0 ? remainder + b : remainder);
}

int cprNLFunction(double lat) { return longitudeZones(lat); }

int cprNFunction(double lat, int i) {
    auto const zones = static_cast<long long>(cprNLFunction(lat)) - i;
    return static_cast<int>(std::clamp<long long>(zones, 1, std::numeric_limits<int>::max()));
}

double cprDlonFunction(double lat, int i) { return 360.0 / cprNFunction(lat, i); }

} // namespace quorvel::modes
