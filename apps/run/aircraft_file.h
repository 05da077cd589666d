// SPDX-License-Identifier: MIT
#pragma once

#include "files/aircraft_rows.h"
#include <airspace/core_sky.h>

#include <modes/adsb_aircraftdb.h>

#include <functional>
#include <memory>
#include <string>

namespace quorvel::run {

/// Throws HostError, with the first line and what is wrong with it, when an ordinary file holds more than can be read:
/// replacing it would lose that.
void requireReadable(std::string const& path);

enum class Backup { IfShrunk, Always };

/// Calls a function that replaces a file. The old one is kept as FILE.bak; with `IfShrunk`, only when the new one is
/// less than half as long. Throws HostError when it cannot be kept; nothing is replaced then.
void replaceWithBackup(std::string const& path, Backup backup, std::function<void()> const& replace);

/// The file in which aircraft are remembered from run to run, for all receivers of a run together.
class AircraftFile {
public:
    /// Reads the file; one that does not exist yet is created when saving, with its folder. What can be read of
    /// a damaged one is used. Throws HostError when it cannot be read at all.
    explicit AircraftFile(std::string path);
    ~AircraftFile();
    AircraftFile(AircraftFile const&) = delete;
    AircraftFile& operator=(AircraftFile const&) = delete;

    /// Throws HostError when saving would lose rows that cannot be read.
    void requireSavable() const { requireReadable(_path); }

    /// Gives a sky what is remembered, and records what it drops. Must live as long as the sky.
    void serve(airspace::CoreSky& sky);

    /// Writes the file. What others have added since it was read is kept. Throws HostError when it cannot be
    /// written, or when that would lose rows.
    void save();

private:
    class TemporaryFile;

    void load(std::string const& content);
    void addUnknown(files::AircraftByAddress const& aircraft);

    std::string _path;
    std::unique_ptr<TemporaryFile> _prepared; // what the library reads where it does not take the file as it is
    bool _isRead = false;
    modes::AircraftDB _aircraft;
};

} // namespace quorvel::run
