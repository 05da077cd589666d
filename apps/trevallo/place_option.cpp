// SPDX-License-Identifier: MIT
#include "trevallo/place_option.h"

#include <cmath>
#include <sstream>

namespace quorvel::program {

std::optional<airspace::Place> parsePlace(std::string const& text) {
    std::istringstream in(text);
    airspace::Place place{};
    char comma = 0;
    bool const isPlace = in >> place.latitude >> comma >> place.longitude && comma == ',' && in.peek() == EOF &&
                         std::fabs(place.latitude) <= 90 && std::fabs(place.longitude) <= 180;
    return isPlace ? std::optional(place) : std::nullopt;
}

std::string checkedPlace(std::string const& text) {
    return parsePlace(text) ? "" : "a place is LAT,LON in degrees, for example 48.35,11.79";
}

} // namespace quorvel::program
