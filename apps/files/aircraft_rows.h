// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::files {

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
        Changed, ///< the row is usable, but should be written differently
        Dropped, ///< the row cannot be used
    };
    std::size_t line; ///< counted from 1
    Remedy remedy;
    std::string text;
    bool isLoss = false; ///< what the line says is not among the aircraft, or not certain
};

/// A database file as far as it can be read.
struct ParsedAircraft {
    AircraftByAddress aircraft; ///< from the good rows, and what is usable of the others
    std::vector<Finding> findings;
};

/// Reads a database file (CSV with the columns "icao_addr", "mops_version" and "airline") however damaged. The
/// library's own reader skips what it cannot read; this one says what that is, and keeps what it can: rows with blanks,
/// letters of the wrong case, and missing or needless cells are not lost.
ParsedAircraft parseAircraft(std::string_view content);

/// The file that the library reads without complaints.
std::string aircraftCsv(AircraftByAddress const& aircraft);

/// Text with its ASCII letters in upper case: whatever the host's locale.
std::string upperCase(std::string text);

} // namespace quorvel::files
