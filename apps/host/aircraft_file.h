// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_aircraftdb.h>
#include <modes/adsb_tracker.h>

#include <memory>
#include <string>

namespace quorvel::host {

/// The file in which aircraft are remembered from run to run, for all receivers of a run together.
class AircraftFile {
public:
    /// Reads the file; one that does not exist yet is made when saving. Throws HostError when it cannot be
    /// read.
    explicit AircraftFile(std::string path);

    /// Gives a tracker what is remembered.
    void teach(modes::ADSBTracker& tracker) const;

    /// Takes note of a target that was dropped.
    void learn(std::shared_ptr<modes::ADSBTarget const> const& target);

    /// Writes the file. Throws HostError when it cannot be written.
    void save();

private:
    std::string _path;
    bool _exists;
    modes::AircraftDB _aircraft;
};

} // namespace quorvel::host
