// SPDX-License-Identifier: MIT
#pragma once

#include "files/aircraft_list.h"
#include "net/live_source.h"
#include "outputs/output.h"
#include "outputs/picture.h"
#include "run/frame_reader.h"
#include "run/station_sky.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::run {

struct Station;

/// One source of a run, and how far it has come.
struct Source {
    std::string name;
    Station& station;
    std::unique_ptr<FrameReader> recording; ///< either this
    std::unique_ptr<net::LiveSource> live;  ///< or this
    airspace::TimeMs lastFrame = 0;         ///< when the last frame was received; 0 before the first
    airspace::TimeMs present = 0;           ///< of a recording, as far as its frames are taken
    bool hasEnded = false;

    airspace::TimeMs now() const { return live ? live->now() : present; }
    outputs::SourceState state() const;
};

/// What receives one source, or all of them merged.
struct Station {
    std::string name; ///< for the aircraft; empty when there is only one
    StationSky sky;
    std::vector<Source const*> sources;

    airspace::TimeMs now() const;
};

/// The sources of a run with the skies that hear them: each its own, or one for all.
class Stations {
public:
    /// Aircraft are shown with what the list says of them.
    Stations(SkyUse const& sky, bool areMerged, files::AircraftList list = {})
        : _sky(sky), _areMerged(areMerged), _list(std::move(list)) {}

    /// Adds a source, neither recording nor live yet, which lives as long as this. One that is given twice
    /// has two names, so that outputs can distinguish its aircraft.
    Source& add(std::string const& name);

    std::vector<std::unique_ptr<Source>> const& sources() const { return _sources; }
    std::vector<std::unique_ptr<Station>> const& all() const { return _stations; }

    /// An aircraft of a station as outputs show it.
    outputs::Aircraft shown(airspace::Aircraft const& aircraft, Station const& station) const;

    bool hasLive() const;   ///< whether any source is live
    bool haveEnded() const; ///< whether all sources have

    /// Drops targets that were not heard for so many ms; 0 keeps them.
    void setTimeout(airspace::TimeMs timeout);

    void dropSilent();
    void dropAll();

    airspace::TimeMs now() const; ///< the latest time of all sources

    /// Everything that there is to show now, except the counts of outputs. It asks the stations for reports,
    /// so they must live as long.
    outputs::Picture picture() const;

private:
    std::string nameFor(std::string const& name) const;
    void addStation(std::string const& name);
    std::shared_ptr<modes::ADSBTargetReport> reportOf(outputs::Aircraft const& aircraft) const;

    SkyUse _sky;
    bool _areMerged;
    files::AircraftList _list;
    std::vector<std::unique_ptr<Station>> _stations;
    std::vector<std::unique_ptr<Source>> _sources;
};

} // namespace quorvel::run
