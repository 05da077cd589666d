// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/place.h>

#include <optional>
#include <string>

namespace quorvel::program {

/// Latitude and longitude of "LAT,LON" in degrees, for example "48.35,11.79"; none for anything else.
std::optional<airspace::Place> parsePlace(std::string const& text);

/// Empty for a place, an explanation for anything else: for CLI11's checks.
std::string checkedPlace(std::string const& text);

} // namespace quorvel::program
