// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::host {

/// What the database knows of one aircraft.
struct KnownAircraft {
    unsigned version = 0; ///< MOPS version, 0 to 2
    std::string airline;  ///< three-letter designator; empty when it is not known

    bool operator==(KnownAircraft const&) const = default;
};

using AircraftByAddress = std::map<unsigned, KnownAircraft>;

/// Something in a database file that is not as it should be.
struct Finding {
    enum class Remedy {
        Changed, ///< the row is good for something, but is to be written otherwise
        Dropped, ///< the row cannot be used
    };
    std::size_t line; ///< counted from 1
    Remedy remedy;
    std::string text;
};

/// A database file as far as it can be read.
struct ParsedAircraft {
    AircraftByAddress aircraft; ///< of the good rows, and of the others what they are worth
    std::vector<Finding> findings;
};

/// Reads a database file (CSV with the columns "icao_addr", "mops_version" and "airline") whatever has
/// happened to it. The library's own reader skips what it cannot read; this one says what that is, and makes
/// the best of it: blanks, letters of the wrong case, and missing or needless cells cost no row.
ParsedAircraft parseAircraft(std::string_view content);

/// The file that the library reads without a word.
std::string aircraftCsv(AircraftByAddress const& aircraft);

/// Adds what another file knows, which wins where the two differ; what it does not know stays. Returns the
/// addresses of which both knew something else.
std::vector<unsigned> mergeAircraft(AircraftByAddress& aircraft, AircraftByAddress const& later);

/// Text with its ASCII letters in upper case: the host's locale plays no part.
std::string upperCase(std::string text);

/// Which aircraft are shown: all whose address and airline begin like this.
struct AircraftFilter {
    std::string address; ///< upper-case hexadecimal digits
    std::string airline;
};

AircraftByAddress filtered(AircraftByAddress const& aircraft, AircraftFilter const& filter);

/// A table for people, and a line of JSON for each aircraft.
std::string aircraftTable(AircraftByAddress const& aircraft);
std::string aircraftJson(AircraftByAddress const& aircraft);

} // namespace quorvel::host
