// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/flight.h"
#include "simulate/random.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvel::simulate {

/// Which aircraft there are.
enum class Mix : std::uint8_t {
    All, ///< of every kind, each with all that its kind sends
    Adsb ///< ADS-B aircraft and plain transponders, with the messages of the core library's tracker
};

/// Aircraft within `radius` nautical miles of each place in turn, made up at random; of random places anywhere on
/// earth when there are none.
std::vector<Aircraft> makeFleet(Mix mix, std::size_t count, std::vector<Place> places, double radius, Random& random);

/// One ADS-B aircraft of `Mix::Adsb`, or one with a plain transponder.
Aircraft makeAdsbAircraft(std::uint32_t address, Place const& around, double radius, Random& random);

} // namespace quorvel::simulate
