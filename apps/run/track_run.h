// SPDX-License-Identifier: MIT
#pragma once

#include "net/sinks.h"
#include "net/source_spec.h"
#include "outputs/output.h"
#include "run/database_keeper.h"
#include "run/failures.h"
#include "run/output_set.h"
#include "run/playback.h"
#include "run/stations.h"
#include <airspace/stream.h>

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::run {

struct TrackOptions {
    std::vector<net::SourceSpec> sources;
    std::vector<airspace::StreamOptions> reading; ///< one for each source
    SkyUse sky;
    bool isMerged = false;    ///< all sources into one decoder and tracker, instead of one for each
    double speed = 0;         ///< of recordings: 1 is real time; 0 is full speed
    std::string database;     ///< file of the aircraft database; none when empty
    std::string aircraftList; ///< file with registrations, types and operators; none when empty
};

/// Reads sources, tracks their aircraft and shows them, until the sources end, a signal comes, or `stop` is
/// called. All on one thread and one event loop, so that no source and no output waits for another.
///
/// Recordings are read in the order of their times, frame by frame: a run over recordings alone gives the
/// same output each time, at every speed.
class TrackRun {
public:
    /// Throws HostError when the database cannot be read or a recording cannot be opened.
    explicit TrackRun(TrackOptions const& options);
    ~TrackRun();
    TrackRun(TrackRun const&) = delete;
    TrackRun& operator=(TrackRun const&) = delete;

    /// The loop that outputs run on.
    asio::io_context& context() { return _context; }
    net::NetworkOutputs& network() { return _network; }

    /// Drops targets that were not heard for so many ms; 0 keeps them.
    void setTimeout(airspace::TimeMs timeout) { _stations.setTimeout(timeout); }

    void add(std::unique_ptr<outputs::Output> output) { _outputs.add(std::move(output)); }

    /// Whether there is a source other than recordings. Without one the time of the recordings decides when outputs get
    /// a picture and aircraft are dropped, at whatever speed they are played.
    bool hasLiveSource() const { return _stations.hasLive(); }

    /// Whether a source comes at its own pace: it is not a recording, or one that is played at a given speed.
    bool isLive() const { return _playback.isPaced() || hasLiveSource(); }

    /// Reads to the end. A failure of a source, an output or the database is reported at once; if there was one,
    /// AlreadyReported is thrown after everything else is done.
    void run();

    /// Ends the run as a signal would.
    void stop();

    /// The signal that ended the run; empty when none did.
    std::string const& signal() const { return _signal; }

    /// Everything that there is to show now.
    outputs::Picture picture() const;

private:
    void makeSource(net::SourceSpec const& spec, airspace::StreamOptions const& options);
    void makeLive(Source& source, net::SourceSpec const& spec, airspace::StreamOptions const& options);
    void waitForSignals();
    void tick();
    void take(Source& source, airspace::Frame const& frame);
    void takeRecorded(Source& source, airspace::Frame const& frame);
    void show();
    void stopAtEnd();
    void finish();
    void letReadersFinish();

    asio::io_context _context;
    outputs::Counters _outputCounters;
    net::NetworkOutputs _network;
    asio::signal_set _signals;
    asio::steady_timer _ticking;
    Failures _failures;
    std::optional<DatabaseKeeper> _database;
    Stations _stations;
    Playback _playback;
    OutputSet _outputs;
    bool _isStopped = false;
    airspace::TimeMs _shownSecond = 0; // of recordings
    std::string _signal;
};

} // namespace quorvel::run
