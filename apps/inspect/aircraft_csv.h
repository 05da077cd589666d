// SPDX-License-Identifier: MIT
#pragma once

#include "files/aircraft_rows.h" // IWYU pragma: export

#include <string>
#include <vector>

namespace quorvel::inspect {

/// Adds what another file knows, which wins where the two differ; what it does not know stays. Returns the addresses
/// for which the two differed.
std::vector<unsigned> mergeAircraft(files::AircraftByAddress& aircraft, files::AircraftByAddress const& later);

/// Which aircraft are shown: all whose address and airline start with these.
struct AircraftFilter {
    std::string address; ///< upper-case hexadecimal digits
    std::string airline;
};

files::AircraftByAddress filtered(files::AircraftByAddress const& aircraft, AircraftFilter const& filter);

/// A table for people, and a line of JSON for each aircraft.
std::string aircraftTable(files::AircraftByAddress const& aircraft);
std::string aircraftJson(files::AircraftByAddress const& aircraft);

} // namespace quorvel::inspect
