// SPDX-License-Identifier: MIT
#include "run/track_run.h"

#include "files/aircraft_list.h"
#include "files/host_error.h"
#include "files/stop_signals.h"
#include "files/time_text.h"
#include "net/live_source.h"
#include "terminal/console.h"

#include <asio/post.hpp>

#include <chrono>
#include <csignal>
#include <exception>
#include <memory>

namespace quorvel::run {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::seconds kTick{1};
constexpr std::chrono::seconds kLastWords{2}; // for readers of outputs to take what was written for them

files::AircraftList listOf(TrackOptions const& options) {
    return options.aircraftList.empty() ? files::AircraftList() : files::readAircraftList(options.aircraftList);
}

void say(std::string const& line) { terminal::console::say("trevallo: " + line); }

} // namespace

TrackRun::TrackRun(TrackOptions const& options)
    : _network(_context, _outputCounters, say)
    , _signals(_context)
    , _ticking(_context)
    , _failures(say)
    , _stations(options.sky, options.isMerged, listOf(options))
    , _playback(_context, options.speed, _failures,
          {[this](Source& source, airspace::Frame const& frame) { takeRecorded(source, frame); },
              [this] { _outputs.flush(); }, [this] { stopAtEnd(); }})
    , _outputs(_failures, [this] { stop(); }) {
    if (!options.database.empty()) _database.emplace(options.database, _failures, SteadyClock::now());
    for (std::size_t i = 0; i < options.sources.size(); ++i) makeSource(options.sources[i], options.reading[i]);
    if (!_database) return;
    for (auto const& station : _stations.all()) _database->serve(*station->sky.core());
}

TrackRun::~TrackRun() = default;

void TrackRun::makeSource(net::SourceSpec const& spec, airspace::StreamOptions const& options) {
    auto& source = _stations.add(spec.name);
    if (options.time.reading == airspace::TimeReading::Fixed) source.station.sky.ignoreSpeeds();
    if (!net::isRecording(spec)) return makeLive(source, spec, options);
    source.recording = std::make_unique<FrameReader>(spec.path, options);
    _playback.add(source);
}

void TrackRun::makeLive(Source& source, net::SourceSpec const& spec, airspace::StreamOptions const& options) {
    auto const ended = [this, &source] {
        source.hasEnded = true;
        stopAtEnd();
    };
    net::LiveSource::Handlers handlers;
    handlers.heard = [this, &source](airspace::Frames& frames) {
        for (auto const& frame : frames) take(source, frame);
        _outputs.flush();
    };
    handlers.message = say;
    handlers.ended = ended;
    handlers.failed = [this, ended](std::exception_ptr const& failure) {
        _failures.attempt([&] { std::rethrow_exception(failure); });
        ended();
    };
    handlers.hostTime = files::hostTime;
    source.live = net::LiveSource::make(spec, options, _context, std::move(handlers));
}

void TrackRun::run() {
    waitForSignals();
    for (auto const& source : _stations.sources()) {
        if (source->live) source->live->start();
    }
    if (isLive()) tick();
    _playback.start();
    _context.run();
    finish();
    if (!_failures.last().empty()) throw files::AlreadyReported(_failures.last());
}

// A second signal ends the program as usual, except the second one of a closed terminal.
void TrackRun::waitForSignals() {
    for (int const signal : files::stopSignals()) _signals.add(signal);
    _signals.async_wait([this](std::error_code const& error, int number) {
        if (error) return;
        _signal = files::nameOfSignal(number);
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
    _playback.stop();
    for (auto const& source : _stations.sources()) {
        if (source->live) source->live->stop();
    }
    // sockets of outputs stay open: the loop ends when everything that was stopped has ended
    asio::post(_context, [this] { asio::post(_context, [this] { _context.stop(); }); });
}

void TrackRun::stopAtEnd() {
    if (_stations.haveEnded()) stop();
}

void TrackRun::tick() {
    _ticking.expires_after(kTick);
    _ticking.async_wait([this](std::error_code const& error) {
        if (error) return;
        if (hasLiveSource()) show();
        if (_database) _database->saveWhenDue(SteadyClock::now());
        tick();
    });
}

void TrackRun::takeRecorded(Source& source, airspace::Frame const& frame) {
    take(source, frame);
    auto const second = source.present / 1000;
    if (hasLiveSource() || std::exchange(_shownSecond, second) == second) return;
    show();
}

void TrackRun::take(Source& source, airspace::Frame const& frame) {
    source.lastFrame = frame.time;
    source.present = frame.now;
    auto const& station = source.station;
    auto const reply = source.station.sky.take(frame);
    if (!_outputs.wantsFrames()) return;
    std::optional<outputs::Aircraft> aircraft;
    if (_outputs.wantsAircraft()) {
        if (auto const found = station.sky.find(reply, frame.time)) aircraft.emplace(_stations.shown(*found, station));
    }
    _outputs.heard({frame, reply, aircraft ? &*aircraft : nullptr});
}

void TrackRun::show() {
    _stations.dropSilent();
    _outputs.show([this] { return picture(); });
}

outputs::Picture TrackRun::picture() const {
    auto picture = _stations.picture();
    picture.counters += _outputCounters;
    return picture;
}

void TrackRun::finish() {
    _stations.dropSilent();
    _outputs.finish(picture());
    letReadersFinish();
    if (!_database) return;
    _stations.dropAll();
    _database->save();
}

void TrackRun::letReadersFinish() {
    _context.restart();
    auto const deadline = SteadyClock::now() + kLastWords;
    while (!_network.isIdle() && SteadyClock::now() < deadline) _context.run_one_until(deadline);
}

} // namespace quorvel::run
