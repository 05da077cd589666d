// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <optional>

namespace quorvel::airspace {

/// A place on the globe.
struct Place {
    double latitude = 0.0;  ///< degrees, north positive
    double longitude = 0.0; ///< degrees, east positive

    friend bool operator==(Place const& a, Place const& b) {
        return a.latitude == b.latitude && a.longitude == b.longitude;
    }
    friend bool operator!=(Place const& a, Place const& b) { return !(a == b); }
};

/// Great-circle distance in nautical miles, on a sphere of 3440.065 NM.
TREVALLO_AIRSPACE_EXPORT double distanceNm(Place const& from, Place const& to);

/// What positions must satisfy to be shown.
struct PositionLimits {
    std::optional<Place> receiver; ///< where it is; no limit of range when not known
    double rangeNm = 300.0;        ///< how far it can hear
    bool checksSpeed = true;       ///< false where times mean nothing
};

} // namespace quorvel::airspace
