// SPDX-License-Identifier: MIT
#include "run/stations.h"

#include <algorithm>
#include <utility>

namespace quorvel::run {

outputs::SourceState Source::state() const {
    outputs::SourceState state;
    state.name = name;
    state.state = live ? live->state() : hasEnded ? "ended" : "reading";
    state.now = lastFrame == 0 ? 0 : now();
    state.lastFrame = lastFrame;
    state.timeKnown = live || recording->stream().timeKnown();
    state.counters = live ? live->counters() : outputs::Counters(recording->stream().counts());
    return state;
}

airspace::TimeMs Station::now() const {
    airspace::TimeMs latest = 0;
    for (auto const* source : sources) latest = std::max(latest, source->lastFrame == 0 ? 0 : source->now());
    return latest;
}

Source& Stations::add(std::string const& name) {
    auto const own = nameFor(name);
    if (_stations.empty() || !_areMerged) addStation(own);
    auto& station = *_stations.back();
    _sources.push_back(std::unique_ptr<Source>(new Source{own, station, {}, {}}));
    station.sources.push_back(_sources.back().get());
    return *_sources.back();
}

// The only one needs no name.
void Stations::addStation(std::string const& name) {
    if (_stations.size() == 1) _stations.front()->name = _sources.front()->name;
    _stations.push_back(
        std::unique_ptr<Station>(new Station{_stations.empty() ? std::string() : name, StationSky(_sky), {}}));
}

std::string Stations::nameFor(std::string const& name) const {
    auto const isTaken = [&](std::string const& wanted) {
        return std::any_of(
            _sources.begin(), _sources.end(), [&](auto const& source) { return source->name == wanted; });
    };
    auto own = name;
    for (int number = 2; isTaken(own); ++number) own = name + " (" + std::to_string(number) + ")";
    return own;
}

bool Stations::hasLive() const {
    return std::any_of(_sources.begin(), _sources.end(), [](auto const& source) { return source->live != nullptr; });
}

bool Stations::haveEnded() const {
    return std::all_of(_sources.begin(), _sources.end(), [](auto const& source) { return source->hasEnded; });
}

void Stations::setTimeout(airspace::TimeMs timeout) {
    for (auto const& station : _stations) station->sky.setTimeout(timeout);
}

void Stations::dropSilent() {
    for (auto const& station : _stations) station->sky.dropSilent(station->now());
}

void Stations::dropAll() {
    for (auto const& station : _stations) station->sky.dropAll();
}

airspace::TimeMs Stations::now() const {
    airspace::TimeMs latest = 0;
    for (auto const& station : _stations) latest = std::max(latest, station->now());
    return latest;
}

outputs::Aircraft Stations::shown(airspace::Aircraft const& aircraft, Station const& station) const {
    outputs::Aircraft result{aircraft, station.name, {}, {}};
    if (aircraft.addressKind != airspace::AddressKind::Icao) return result;
    auto const listed = _list.find(aircraft.address);
    if (!listed) return result;
    result.type = listed->type;
    result.operatorName = listed->operatorName;
    if (!listed->registration.empty())
        result.registration = {std::string(listed->registration), airspace::Source::None, aircraft.heard, 0};
    return result;
}

outputs::Picture Stations::picture() const {
    outputs::Picture picture;
    picture.now = now();
    for (auto const& station : _stations) {
        for (auto const& aircraft : station->sky.aircraft(station->now()))
            picture.aircraft.push_back(shown(aircraft, *station));
        picture.counters += station->sky.counts();
    }
    for (auto const& source : _sources) {
        auto state = source->state();
        picture.counters += state.counters;
        if (!_areMerged) state.counters += source->station.sky.counts();
        picture.sources.push_back(std::move(state));
    }
    picture.report = [this](outputs::Aircraft const& aircraft) { return reportOf(aircraft); };
    return picture;
}

std::shared_ptr<modes::ADSBTargetReport> Stations::reportOf(outputs::Aircraft const& aircraft) const {
    for (auto const& station : _stations) {
        if (station->name == aircraft.source) return station->sky.report(aircraft);
    }
    return {};
}

} // namespace quorvel::run
