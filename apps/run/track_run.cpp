// SPDX-License-Identifier: MIT
#include "run/track_run.h"

#include "host/console.h"
#include "host/frame_reader.h"
#include "host/host_error.h"
#include "host/stop_signals.h"
#include "run/live_source.h"

#include <asio/post.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quorvel::host {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::size_t kFramesAtOnce = 4096; // of recordings, before others have their turn
constexpr std::chrono::seconds kTick{1};
constexpr std::chrono::minutes kSaveInterval{10};
constexpr std::chrono::seconds kLastWords{2}; // for readers of outputs to take what was written for them

TimeMs hostTime() {
    return static_cast<TimeMs>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                   std::chrono::system_clock::now().time_since_epoch())
                                   .count());
}

void say(std::string const& line) { console::say("trevallo: " + line); }

// Serial lines are terminals too.
bool isTerminal(std::string const& path) {
    if (path == "-") return ::isatty(STDIN_FILENO) != 0;
    int const file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) return false;
    bool const isOne = ::isatty(file) != 0;
    ::close(file);
    return isOne;
}

// Pipes and terminals give what they have when they have it; everything else that has a path is read to its
// end.
bool isPipe(SourceSpec const& spec) {
    struct stat status {};
    int const result = spec.path == "-" ? ::fstat(STDIN_FILENO, &status) : ::stat(spec.path.c_str(), &status);
    if (result != 0) return false;
    return S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) ||
           (S_ISCHR(status.st_mode) && isTerminal(spec.path));
}

} // namespace

/// What one source, or all of them merged, are heard with.
struct TrackRun::Station {
    std::string name; // for the aircraft; empty when there is only one
    Receiver receiver;
    std::vector<Source const*> sources;

    TimeMs now() const;
};

/// One source: a recording or a live one.
struct TrackRun::Source {
    std::string name;
    Station& station;
    std::unique_ptr<FrameReader> recording;
    std::unique_ptr<LiveSource> live;
    Frames frames; // of a recording, read but not taken
    std::size_t at = 0;
    TimeMs lastFrame = 0;
    TimeMs present = 0; // of a recording, as far as its frames are taken
    bool hasEnded = false;

    TimeMs now() const { return live ? live->now() : present; }
    Frame const& next() const { return frames[at]; }
};

TimeMs TrackRun::Station::now() const {
    TimeMs latest = 0;
    for (auto const* source : sources) latest = std::max(latest, source->lastFrame == 0 ? 0 : source->now());
    return latest;
}

TrackRun::TrackRun(TrackOptions options)
    : _options(std::move(options))
    , _network(_context, _outputCounters, say)
    , _signals(_context)
    , _ticking(_context)
    , _pacing(_context) {
    if (!_options.database.empty()) _database.emplace(_options.database);
    for (std::size_t i = 0; i < _options.sources.size(); ++i)
        makeSource(_options.sources[i], _options.reading[i]);
}

TrackRun::~TrackRun() = default;

// A source that is given twice has two names, so that outputs can tell its aircraft from each other.
std::string TrackRun::nameOf(SourceSpec const& spec) const {
    auto const isTaken = [&](std::string const& name) {
        return std::any_of(_sources.begin(), _sources.end(),
                           [&](auto const& source) { return source->name == name; });
    };
    auto name = spec.name;
    for (int number = 2; isTaken(name); ++number) name = spec.name + " (" + std::to_string(number) + ")";
    return name;
}

void TrackRun::makeSource(SourceSpec const& spec, ReadOptions const& options) {
    auto const name = nameOf(spec);
    if (_stations.empty() || !_options.isMerged) {
        auto* const database = _database ? &*_database : nullptr;
        bool const isNamed = !_options.isMerged && _options.sources.size() > 1;
        _stations.push_back(std::unique_ptr<Station>(
            new Station{isNamed ? name : std::string(), Receiver(_options.receiver, database), {}}));
    }
    auto& station = *_stations.back();
    _sources.push_back(std::make_unique<Source>(Source{name, station, {}, {}, {}, 0, 0, 0, false}));
    auto& source = *_sources.back();
    station.sources.push_back(&source);
    if (options.time.reading == TimeReading::Fixed) station.receiver.ignoreSpeeds();
    if (spec.kind == SourceSpec::Kind::File && !isPipe(spec)) {
        source.recording = std::make_unique<FrameReader>(spec.path, options);
    } else {
        makeLive(source, spec, options);
    }
}

void TrackRun::makeLive(Source& source, SourceSpec const& spec, ReadOptions const& options) {
    LiveSource::Handlers handlers;
    handlers.heard = [this, &source](Frames& frames) {
        for (auto const& frame : frames) take(source, frame);
        flush();
    };
    handlers.said = say;
    handlers.ended = [this, &source] { ended(source); };
    handlers.failed = [this, &source](std::exception_ptr const& failure) {
        attempt([&] { std::rethrow_exception(failure); });
        ended(source);
    };
    handlers.hostTime = hostTime;
    source.live = LiveSource::make(spec, options, _context, std::move(handlers));
}

void TrackRun::setTimeout(TimeMs timeout) {
    for (auto const& station : _stations) station->receiver.setTimeout(timeout);
}

void TrackRun::add(std::unique_ptr<Output> output) {
    auto const wants = output->wants();
    _wantsFrames = _wantsFrames || wants != Output::Wants::Pictures;
    _wantsAircraft = _wantsAircraft || wants == Output::Wants::FramesWithAircraft;
    _outputs.push_back(std::move(output));
}

bool TrackRun::hasLiveSource() const {
    return std::any_of(_sources.begin(), _sources.end(),
                       [](auto const& source) { return source->live != nullptr; });
}

bool TrackRun::isLive() const { return _options.speed > 0 || hasLiveSource(); }

void TrackRun::run() {
    waitForSignals();
    _savedAt = SteadyClock::now();
    for (auto const& source : _sources) {
        if (source->live) source->live->start();
    }
    if (isLive()) tick();
    asio::post(_context, [this] { readRecordings(); });
    _context.run();
    finish();
    if (!_failure.empty()) throw FailureTold(_failure);
}

// A second signal ends the program as ever, but for the second of a terminal that was closed.
void TrackRun::waitForSignals() {
    for (int const signal : stopSignals()) _signals.add(signal);
    _signals.async_wait([this](std::error_code const& error, int number) {
        if (error) return;
        _signal = nameOfSignal(number);
        stop();
    });
}

void TrackRun::stop() {
    if (_isStopped) return;
    _isStopped = true;
    std::error_code ignored;
    _signals.cancel(ignored);
    _signals.remove(SIGINT, ignored);
    _signals.remove(SIGTERM, ignored);
    _ticking.cancel();
    _pacing.cancel();
    for (auto const& source : _sources) {
        if (source->live) source->live->stop();
    }
    // sockets of outputs stay open: the loop ends when what is stopped has come to its end
    asio::post(_context, [this] { asio::post(_context, [this] { _context.stop(); }); });
}

void TrackRun::ended(Source& source) {
    source.hasEnded = true;
    bool const isLast =
        std::all_of(_sources.begin(), _sources.end(), [](auto const& each) { return each->hasEnded; });
    if (isLast) stop();
}

void TrackRun::tick() {
    _ticking.expires_after(kTick);
    _ticking.async_wait([this](std::error_code const& error) {
        if (error) return;
        if (hasLiveSource()) show();
        saveDatabase();
        tick();
    });
}

void TrackRun::readRecordings() {
    for (std::size_t i = 0; i < kFramesAtOnce && !_isStopped; ++i) {
        if (!refillRecordings()) break;
        auto* const recording = earliestRecording();
        if (recording == nullptr) return flush();
        auto const& frame = recording->next();
        if (!isDue(frame.now)) return flush(); // and comes again when it is
        take(*recording, frame);
        ++recording->at;
        if (auto const second = recording->now() / 1000; second != _shownSecond && !hasLiveSource()) {
            _shownSecond = second;
            show();
        }
    }
    if (!_isStopped) asio::post(_context, [this] { readRecordings(); });
}

TrackRun::Source* TrackRun::earliestRecording() {
    Source* earliest = nullptr;
    for (auto const& source : _sources) {
        if (!source->recording || source->hasEnded) continue;
        if (earliest == nullptr || source->next().now < earliest->next().now) earliest = source.get();
    }
    return earliest;
}

// Whether all recordings have frames, or have ended: of those that have none a piece is read, in which there
// may be none either.
bool TrackRun::refillRecordings() {
    bool areReady = true;
    for (auto const& source : _sources) {
        bool const isEmpty = source->recording && !source->hasEnded && source->at == source->frames.size();
        if (isEmpty && !refill(*source)) areReady = false;
    }
    return areReady;
}

bool TrackRun::refill(Source& recording) {
    recording.frames.clear();
    recording.at = 0;
    bool const works = attempt([&] { recording.recording->readPiece(recording.frames); });
    if (recording.recording->clock().reading() == TimeReading::Fixed)
        recording.station.receiver.ignoreSpeeds();
    if (recording.frames.empty() && (!works || recording.recording->hasEnded())) ended(recording);
    return !recording.frames.empty() || recording.hasEnded;
}

// Recordings that are played wait for their time.
bool TrackRun::isDue(TimeMs time) {
    if (_options.speed <= 0) return true;
    if (!_played) {
        _played = time;
        _playedAt = SteadyClock::now();
    }
    if (time <= *_played) return true;
    std::chrono::duration<double, std::milli> const wait(static_cast<double>(time - *_played) /
                                                         _options.speed);
    auto const due = _playedAt + std::chrono::duration_cast<SteadyClock::duration>(wait);
    if (due <= SteadyClock::now()) return true;
    _pacing.expires_at(due);
    _pacing.async_wait([this](std::error_code const& error) {
        if (!error) readRecordings();
    });
    return false;
}

void TrackRun::take(Source& source, Frame const& frame) {
    source.lastFrame = frame.record->timeStamp();
    source.present = frame.now;
    auto const result = source.station.receiver.take(frame);
    if (!_wantsFrames) return;
    std::optional<Aircraft> aircraft;
    if (_wantsAircraft && result.target) {
        aircraft = source.station.receiver.shown(*result.target, source.lastFrame);
        aircraft->source = source.station.name;
    }
    HeardFrame const heard{frame, result.message.get(), aircraft ? &*aircraft : nullptr};
    tellOutputs([&](Output& output) {
        if (output.wants() != Output::Wants::Pictures) output.heard(heard);
    });
}

void TrackRun::show() {
    for (auto const& station : _stations) station->receiver.dropSilentTargets(station->now());
    std::optional<Picture> shown;
    tellOutputs([&](Output& output) {
        if (output.wantsPicture()) {
            if (!shown) shown = picture();
            output.picture(*shown);
        }
        output.flush();
    });
}

void TrackRun::flush() {
    tellOutputs([](Output& output) { output.flush(); });
}

Picture TrackRun::picture() const {
    Picture picture;
    picture.now = now();
    for (auto const& station : _stations) {
        for (auto& aircraft : station->receiver.aircraft(station->now())) {
            aircraft.source = station->name;
            picture.aircraft.push_back(std::move(aircraft));
        }
        picture.counters += station->receiver.counters();
    }
    for (auto const& source : _sources) {
        SourceState state;
        state.name = source->name;
        state.state = source->live ? source->live->state() : source->hasEnded ? "ended" : "reading";
        state.now = source->lastFrame == 0 ? 0 : source->now();
        state.lastFrame = source->lastFrame;
        state.timeKnown = source->live || source->recording->clock().timeKnown();
        state.counters = source->live ? source->live->counters() : source->recording->counters();
        picture.counters += state.counters;
        if (!_options.isMerged) state.counters += source->station.receiver.counters();
        picture.sources.push_back(std::move(state));
    }
    picture.counters += _outputCounters;
    return picture;
}

TimeMs TrackRun::now() const {
    TimeMs latest = 0;
    for (auto const& station : _stations) latest = std::max(latest, station->now());
    return latest;
}

// What has been heard of aircraft that are gone is kept even if the power fails.
void TrackRun::saveDatabase() {
    if (!_database || SteadyClock::now() - _savedAt < kSaveInterval) return;
    _savedAt = SteadyClock::now();
    attempt([&] { _database->save(); });
}

void TrackRun::finish() {
    for (auto const& station : _stations) station->receiver.dropSilentTargets(station->now());
    auto const last = picture();
    tellOutputs([&](Output& output) {
        output.finish(last);
        output.flush();
    });
    _context.restart();
    auto const deadline = SteadyClock::now() + kLastWords;
    while (!_network.isIdle() && SteadyClock::now() < deadline) _context.run_one_until(deadline);
    if (!_database) return;
    for (auto const& station : _stations) station->receiver.dropAllTargets();
    attempt([&] { _database->save(); });
}

// What fails does not take the others with it. Several that fail for one reason are one failure. Who reads
// standard output no longer has seen enough: nothing to be told.
template <class Step> bool TrackRun::attempt(Step const& step) {
    try {
        step();
        return true;
    } catch (HostError const& failure) {
        if (_failure != failure.what() && failure.code() != EPIPE) say(failure.what());
        _failure = failure.what();
        return false;
    }
}

// An output that fails is left out from then on. When the last one that was worth it is gone, there is
// nothing to run for.
template <class Step> void TrackRun::tellOutputs(Step const& step) {
    auto const isWorthIt = [&] {
        return std::any_of(_outputs.begin(), _outputs.end(),
                           [](auto const& output) { return output->isWorthRunningFor(); });
    };
    bool const was = isWorthIt();
    for (auto output = _outputs.begin(); output != _outputs.end();) {
        bool const works = attempt([&] { step(**output); });
        output = works ? std::next(output) : _outputs.erase(output);
    }
    if (was && !isWorthIt()) stop();
}

} // namespace quorvel::host
