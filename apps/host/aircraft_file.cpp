// SPDX-License-Identifier: MIT
#include "host/aircraft_file.h"

#include "host/host_error.h"
#include "host/stderr_log.h"

#include <cerrno>
#include <filesystem>
#include <ios>
#include <utility>

namespace quorvel::host {

AircraftFile::AircraftFile(std::string path) : _path(std::move(path)) {
    std::error_code error;
    _exists = std::filesystem::exists(_path, error);
    if (!_exists) return;
    errno = 0;
    try {
        _aircraft.load(_path);
    } catch (std::ios_base::failure const&) {
        throw systemError("read the aircraft database", _path);
    }
}

void AircraftFile::teach(modes::ADSBTracker& tracker) const {
    StderrLog::Mute const told; // what is wrong with the file was said when it was read
    if (_exists) tracker.setAircraftDbFile(_path);
}

void AircraftFile::learn(std::shared_ptr<modes::ADSBTarget const> const& target) {
    _aircraft.updateAircraft(target);
}

void AircraftFile::save() {
    errno = 0;
    try {
        _aircraft.save(_path);
    } catch (std::ios_base::failure const&) {
        throw systemError("write the aircraft database", _path);
    }
}

} // namespace quorvel::host
