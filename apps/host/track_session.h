// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_tracker.h>
#include <modes/modes_decoder.h>
#include <modes/modes_encapsulation.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::host {

/// The time of a stream: the latest that a believed message of it bore, in milliseconds since 1970-01-01
/// 00:00:00 UTC. Receivers tell the time of day only. A step back by more than half a day is a new day or
/// another recording; time then goes on from there.
class StreamTime {
public:
    unsigned long long now() const { return _now; }

    /// Takes note of a message's time; true when it is the first of a new second.
    bool advance(unsigned long long time);

private:
    unsigned long long _now = 0;
};

struct TrackOptions {
    bool altitudeCheck = false;
    std::optional<unsigned long long> timeoutMilliseconds; ///< targets not heard for so long are dropped
    std::string database;                                  ///< file of the aircraft database; none when empty
};

/// Takes frame records down the road: decode, track, and drop what has fallen silent.
class TrackSession {
public:
    /// Throws HostError when the database cannot be read. One that does not exist yet is made at the end.
    explicit TrackSession(TrackOptions const& options);

    void take(modes::ModeSEncapsulation::Records const& records);

    /// Drops all targets, so that the database learns from them, and saves it. Does nothing without a
    /// database. Throws HostError when it cannot be written.
    void finish();

    modes::ADSBTracker const& tracker() const { return _tracker; }
    unsigned long long now() const { return _time.now(); }

    std::uint64_t frames() const { return _frames; } ///< records taken
    std::uint64_t modeACFrames() const {
        return _modeAC;
    }                                                    ///< of them Mode A/C replies, which are not decoded
    std::uint64_t messages() const { return _messages; } ///< of them decoded
    std::uint64_t tracked() const { return _trackedMessages; } ///< of them believed and given to a target

private:
    void dropSilentTargets();

    TrackOptions _options;
    modes::ModeSDecoder _decoder;
    modes::ADSBTracker _tracker;
    StreamTime _time;
    std::uint64_t _frames = 0;
    std::uint64_t _modeAC = 0;
    std::uint64_t _messages = 0;
    std::uint64_t _trackedMessages = 0;
};

} // namespace quorvel::host
