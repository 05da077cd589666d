// SPDX-License-Identifier: MIT
#include "run/station_sky.h"

namespace quorvel::run {

StationSky::StationSky(SkyUse const& use) {
    bool const isLibrary = use.values == Values::Library;
    if (!isLibrary) _standard.emplace(use.options);
    if (isLibrary || use.hasPages || use.hasDatabase) _core.emplace(use.options);
}

airspace::Reply StationSky::take(airspace::Frame const& frame) {
    if (!_standard) return _core->take(frame);
    if (_core) _core->take(frame);
    return _standard->take(frame);
}

void StationSky::setTimeout(airspace::TimeMs timeout) {
    if (_standard) _standard->setTimeout(timeout);
    if (_core) _core->setTimeout(timeout);
}

void StationSky::ignoreSpeeds() {
    if (_standard) _standard->ignoreSpeeds();
    if (_core) _core->ignoreSpeeds();
}

void StationSky::dropSilent(airspace::TimeMs now) {
    if (_standard) _standard->dropSilent(now);
    if (_core) _core->dropSilent(now);
}

void StationSky::dropAll() {
    if (_standard) _standard->dropAll();
    if (_core) _core->dropAll();
}

std::vector<airspace::Aircraft> StationSky::aircraft(airspace::TimeMs now) const {
    return _standard ? _standard->aircraft(now) : _core->aircraft(now);
}

std::optional<airspace::Aircraft> StationSky::find(airspace::Reply const& reply, airspace::TimeMs now) const {
    if (_standard) return _standard->find(reply, now);
    return reply.isTracked ? _core->find(reply.address, now) : std::nullopt;
}

airspace::Counts const& StationSky::counts() const { return _standard ? _standard->counts() : _core->counts(); }

std::shared_ptr<modes::ADSBTargetReport> StationSky::report(airspace::Aircraft const& aircraft) const {
    bool const canKnow = _core && aircraft.addressKind == airspace::AddressKind::Icao;
    return canKnow ? _core->report(aircraft.address) : nullptr;
}

} // namespace quorvel::run
