// SPDX-License-Identifier: MIT
#pragma once

#include "host/position_gate.h"

#include <optional>
#include <string>

namespace quorvel::host {

/// Latitude and longitude of "LAT,LON" in degrees, for example "48.35,11.79"; none for anything else.
std::optional<Place> parsePlace(std::string const& text);

/// Empty for a place, an explanation for anything else: for CLI11's checks.
std::string checkedPlace(std::string const& text);

} // namespace quorvel::host
