// SPDX-License-Identifier: MIT
#pragma once

#include "run/aircraft_file.h"
#include "run/failures.h"

#include <chrono>
#include <string>

namespace quorvel::run {

/// Saves the aircraft database of a run from time to time, so that what was heard of aircraft that are gone
/// is kept even if the power fails. A file that cannot be saved is a failure, and the run continues.
class DatabaseKeeper {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::minutes kInterval{10};

    /// Throws HostError when the file cannot be read at all; one that can be read but not saved is reported.
    DatabaseKeeper(std::string const& path, Failures& failures, Clock::time_point now);

    /// Gives a sky what is remembered, and records what it drops. Must live as long as the sky.
    void serve(airspace::CoreSky& sky) { _file.serve(sky); }

    /// Saves when the last time was an interval ago.
    void saveWhenDue(Clock::time_point now);

    void save();

private:
    AircraftFile _file;
    Failures& _failures;
    Clock::time_point _savedAt;
};

} // namespace quorvel::run
