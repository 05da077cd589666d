// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>
#include <modes/mops_version.h>

#include <memory>
#include <string>

namespace quorvel::modes {

class ADSBTarget;

/// What is remembered of one aircraft.
class TREVALLO_EXPORT Aircraft {
public:
    /// An aircraft with nothing known but its address.
    explicit Aircraft(unsigned int const& icaoAddr);

    unsigned int icaoAddr() const { return _icaoAddr; } ///< 24-bit aircraft address
    std::string icaoAddrString() const;                 ///< six upper-case hexadecimal digits with leading zeros

    /// ADS-B version that the aircraft was confirmed to follow; `MOPS_UNKNOWN` at the start.
    MOPSVersion mopsVersion() const { return _mopsVersion; }
    void setMopsVersion(MOPSVersion const& version) { _mopsVersion = version; }

    /// Three-letter airline designator (ICAO Doc 8585), taken from the callsign; empty at the start.
    std::string airline() const { return _airline; }
    void setAirline(std::string const& airline) { _airline = airline; }

private:
    unsigned int _icaoAddr;
    MOPSVersion _mopsVersion = MOPS_UNKNOWN;
    std::string _airline;
};

/// What is remembered of aircraft across runs: a table in memory and a CSV file with the columns "icao_addr",
/// "mops_version" and "airline".
///
/// Bad rows are logged and skipped. A file that cannot be read or written makes the CSV library's exception
/// (`std::ios_base::failure`) reach the caller; the table keeps what it had, and the file name is remembered
/// all the same.
class TREVALLO_EXPORT AircraftDB {
public:
    /// An empty table without a file name.
    AircraftDB();

    /// A copy is a table of its own, of the same `Aircraft` objects. A database that was moved from may only
    /// be destroyed or assigned to.
    AircraftDB(AircraftDB const& other);
    AircraftDB(AircraftDB&& other) noexcept;
    AircraftDB& operator=(AircraftDB const& other);
    AircraftDB& operator=(AircraftDB&& other) noexcept;

    /// Saves nothing.
    ~AircraftDB();

    /// The aircraft of an address, or an empty pointer.
    std::shared_ptr<Aircraft> findAircraft(unsigned int const& icao) const;

    /// The aircraft of an address, made if there is none yet.
    std::shared_ptr<Aircraft> createAircraft(unsigned int const& icao);

    /// Stores an aircraft under its own address in place of what was there. An empty pointer is ignored.
    void updateAircraft(std::shared_ptr<Aircraft> const& aircraft);

    /// Learns version and airline from a target with an address and a confirmed version; ignores all others.
    void updateAircraft(std::shared_ptr<ADSBTarget const> const& target);

    /// Adds the rows of a file to the table; later rows of an address win. False when there is no name.
    bool load(std::string const& fileName);

    /// Writes all aircraft of known version, in ascending order of their addresses, replacing the file. False
    /// when there is no name; without an argument, the name is that of the last `load` or `save`.
    ///
    /// An ordinary file is replaced as a whole or not at all, whatever happens while it is written; its
    /// permissions stay, and so does a symbolic link that leads to it. Devices and pipes are written
    /// directly.
    bool save(std::string const& fileName);
    bool save();

private:
    struct TREVALLO_HIDDEN Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace quorvel::modes
