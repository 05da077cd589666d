// SPDX-License-Identifier: MIT
#include "run/playback.h"

#include <asio/post.hpp>

#include <utility>

namespace quorvel::run {

namespace {

constexpr std::size_t kFramesAtOnce = 4096; // before others have their turn

} // namespace

Playback::Playback(asio::io_context& context, double speed, Failures& failures, Handlers handlers)
    : _context(context), _pacing(context), _speed(speed), _failures(failures), _handlers(std::move(handlers)) {}

void Playback::add(Source& source) { _recordings.push_back({&source, {}}); }

void Playback::start() {
    asio::post(_context, [this] { read(); });
}

void Playback::stop() {
    _isStopped = true;
    _pacing.cancel();
}

void Playback::read() {
    for (std::size_t i = 0; i < kFramesAtOnce && !_isStopped && refill(); ++i) {
        if (!readNext()) return _handlers.paused();
    }
    if (!_isStopped) start();
}

// False when there is none, or its time has not come.
bool Playback::readNext() {
    auto* const recording = earliest();
    if (recording == nullptr || !isDue(recording->next().now)) return false;
    _handlers.heard(*recording->source, recording->frames[recording->at++]);
    return true;
}

Playback::Recording* Playback::earliest() {
    Recording* earliest = nullptr;
    for (auto& recording : _recordings) {
        if (recording.source->hasEnded) continue;
        if (earliest == nullptr || recording.next().now < earliest->next().now) earliest = &recording;
    }
    return earliest;
}

// Whether all recordings have frames, or have ended: a piece is read of each that has none; it may still have none
// after that.
bool Playback::refill() {
    bool areReady = true;
    for (auto& recording : _recordings) {
        if (!recording.source->hasEnded && recording.isEmpty() && !refill(recording)) areReady = false;
    }
    return areReady;
}

bool Playback::refill(Recording& recording) {
    auto& source = *recording.source;
    recording.frames.clear();
    recording.at = 0;
    bool const works = _failures.attempt([&] { source.recording->readPiece(recording.frames); });
    if (source.recording->stream().timeReading() == airspace::TimeReading::Fixed) source.station.sky.ignoreSpeeds();
    source.hasEnded = recording.frames.empty() && (!works || source.recording->hasEnded());
    if (source.hasEnded) _handlers.ended();
    return !recording.frames.empty() || source.hasEnded;
}

bool Playback::isDue(airspace::TimeMs time) {
    if (!isPaced()) return true;
    if (!_begin) {
        _begin = time;
        _beganAt = Clock::now();
    }
    if (time <= *_begin) return true;
    std::chrono::duration<double, std::milli> const wait(static_cast<double>(time - *_begin) / _speed);
    auto const due = _beganAt + std::chrono::duration_cast<Clock::duration>(wait);
    if (due <= Clock::now()) return true;
    readWhenDue(due);
    return false;
}

void Playback::readWhenDue(Clock::time_point due) {
    _pacing.expires_at(due);
    _pacing.async_wait([this](std::error_code const& error) {
        if (!error) read();
    });
}

} // namespace quorvel::run
