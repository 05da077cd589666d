// SPDX-License-Identifier: MIT
#pragma once

#include "host/aircraft_file.h"
#include "host/output.h"
#include "host/receiver.h"
#include "host/stream_input.h"
#include "run/sinks.h"
#include "run/source_spec.h"

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorvel::host {

struct TrackOptions {
    std::vector<SourceSpec> sources;
    std::vector<ReadOptions> reading; ///< one for each source
    ReceiverOptions receiver;
    bool isMerged = false; ///< all sources into one decoder and tracker, instead of one for each
    double speed = 0;      ///< of recordings: 1 is real time; 0 is as fast as it goes
    std::string database;  ///< file of the aircraft database; none when empty
};

/// Reads sources, tracks their aircraft and shows them, until the sources end, a signal comes, or `stop` is
/// called. All on one thread and one event loop, so that no source and no output waits for another.
///
/// Recordings are read in the order of their times, frame by frame: a run over recordings alone gives the
/// same output each time, at every speed.
class TrackRun {
public:
    /// Throws HostError when the database cannot be read or a recording cannot be opened.
    explicit TrackRun(TrackOptions options);
    ~TrackRun();
    TrackRun(TrackRun const&) = delete;
    TrackRun& operator=(TrackRun const&) = delete;

    /// Where outputs live.
    asio::io_context& context() { return _context; }
    NetworkOutputs& network() { return _network; }

    /// Drops targets that were not heard for so many ms; 0 keeps them.
    void setTimeout(TimeMs timeout);

    void add(std::unique_ptr<Output> output);

    /// Whether there is a source other than recordings. Without one the time of the recordings tells when
    /// outputs are shown the moment and aircraft are dropped, at whatever speed they are played.
    bool hasLiveSource() const;

    /// Whether a source comes at its own pace: it is no recording, or one that is played at a speed.
    bool isLive() const;

    /// Reads to the end. A failure of a source, an output or the database is said at once; it throws
    /// FailureTold when there was one, after all else was done.
    void run();

    /// Ends the run as a signal would.
    void stop();

    /// The signal that ended the run; empty when none did.
    std::string const& signal() const { return _signal; }

    /// Everything that there is to show now.
    Picture picture() const;

private:
    struct Station;
    struct Source;

    std::string nameOf(SourceSpec const& spec) const;
    void makeSource(SourceSpec const& spec, ReadOptions const& options);
    void makeLive(Source& source, SourceSpec const& spec, ReadOptions const& options);
    void waitForSignals();
    void tick();
    void readRecordings();
    Source* earliestRecording();
    bool refillRecordings();
    bool refill(Source& recording);
    bool isDue(TimeMs time);
    void take(Source& source, Frame const& frame);
    void show();
    void flush();
    void finish();
    void saveDatabase();
    void ended(Source& source);
    template <class Step> bool attempt(Step const& step);
    template <class Step> void tellOutputs(Step const& step);
    TimeMs now() const;

    TrackOptions _options;
    asio::io_context _context;
    Counters _outputCounters;
    NetworkOutputs _network;
    asio::signal_set _signals;
    asio::steady_timer _ticking;
    asio::steady_timer _pacing;
    std::optional<AircraftFile> _database;
    std::vector<std::unique_ptr<Station>> _stations;
    std::vector<std::unique_ptr<Source>> _sources;
    std::vector<std::unique_ptr<Output>> _outputs;
    bool _wantsFrames = false;
    bool _wantsAircraft = false;
    bool _isStopped = false;
    TimeMs _shownSecond = 0;       // of recordings
    std::optional<TimeMs> _played; // the time at which playing began
    std::chrono::steady_clock::time_point _playedAt;
    std::chrono::steady_clock::time_point _savedAt;
    std::string _signal;
    std::string _failure; // the last one
};

} // namespace quorvel::host
