// SPDX-License-Identifier: MIT
#include "host/track_session.h"

#include "host/host_error.h"

#include <cerrno>
#include <filesystem>
#include <ios>
#include <limits>

namespace quorvel::host {

namespace {

constexpr unsigned kAltitudeCheckPeriod = 4;       // seconds
constexpr unsigned kAltitudeCheckDifference = 150; // feet
constexpr std::size_t kModeACFrameBytes = 2;
constexpr unsigned long long kHalfDay = 43'200'000; // milliseconds

} // namespace

bool StreamTime::advance(unsigned long long time) {
    bool const startsAnew = time < _now && _now - time > kHalfDay;
    if (time <= _now && !startsAnew) return false;
    bool const isNewSecond = time / 1000 != _now / 1000;
    _now = time;
    return isNewSecond;
}

TrackSession::TrackSession(TrackOptions const& options) : _options(options) {
    if (_options.altitudeCheck) {
        _tracker.setAltituteBaroChecking(true, kAltitudeCheckPeriod, kAltitudeCheckDifference);
    }
    if (_options.database.empty()) return;
    std::error_code error;
    bool const exists = std::filesystem::exists(_options.database, error);
    errno = 0;
    try {
        _tracker.setAircraftDbFile(_options.database);
    } catch (std::ios_base::failure const&) {
        // a database that is not there yet is made at the end, the tracker has taken note of its name
        if (exists) throw systemError("read the aircraft database", _options.database);
    }
}

void TrackSession::take(modes::ModeSEncapsulation::Records const& records) {
    for (auto const& record : records) {
        ++_frames;
        if (record->data().size() == kModeACFrameBytes) {
            ++_modeAC;
            continue;
        }
        auto const message = _decoder.decode(modes::ModeSMessage::DOWNLINK, record);
        if (!message) continue;
        ++_messages;
        auto const target = _tracker.procModeSMsg(message);
        if (!target) continue;
        ++_trackedMessages;
        if (_time.advance(message->timeStamp())) dropSilentTargets();
    }
}

// Targets stamped later than now are of the day before, or of the recording before.
void TrackSession::dropSilentTargets() {
    auto const timeout = _options.timeoutMilliseconds;
    if (!timeout) return;
    if (*timeout < _time.now()) _tracker.killTargets(_time.now() - *timeout);
    for (auto const& target : _tracker.allTargetsSince(_time.now() + kHalfDay)) {
        _tracker.killTarget(target->trackId(), target->icaoAddr());
    }
}

void TrackSession::finish() {
    if (_options.database.empty()) return;
    _tracker.killTargets(
        std::numeric_limits<unsigned long long>::max()); // the database learns from targets that go
    errno = 0;
    try {
        _tracker.saveAircraftDb();
    } catch (std::ios_base::failure const&) {
        throw systemError("write the aircraft database", _options.database);
    }
}

} // namespace quorvel::host
