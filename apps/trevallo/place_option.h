// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace quorvel::host {

/// Latitude and longitude of "LAT,LON" in degrees, for example "48.35,11.79"; none for anything else.
struct LatLon {
    double latitude;
    double longitude;
};
std::optional<LatLon> parsePlace(std::string const& text);

/// Empty for a place, an explanation for anything else: for CLI11's checks.
std::string checkedPlace(std::string const& text);

} // namespace quorvel::host
