// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_tracker.h>
#include <modes/modes_decoder.h>

#include "host/aircraft.h"
#include "host/aircraft_file.h"
#include "host/counters.h"
#include "host/frame.h"
#include "host/position_gate.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::host {

/// What becomes of a reply that the decoder has repaired. A repair that fits by chance makes an aircraft that
/// does not exist.
enum class RepairedReplies : std::uint8_t {
    Keep,  ///< they are taken like all others
    Known, ///< they update targets and make none
    Drop,  ///< they are not given to the tracker
};

struct ReceiverOptions {
    bool altitudeCheck = false; ///< ignore altitudes that jump
    RepairedReplies repaired = RepairedReplies::Known;
    PositionLimits positions;
};

/// Takes frames down the road, for one receiver or several merged: decode, judge, track, drop what has fallen
/// silent.
class Receiver {
public:
    /// The database, when there is one, must live as long as the receiver.
    Receiver(ReceiverOptions const& options, AircraftFile* database);

    /// What came of a frame.
    struct Result {
        std::shared_ptr<modes::ModeSMessage> message; ///< none when it could not be decoded
        std::shared_ptr<modes::ADSBTarget> target;    ///< none when it was given to no target
    };

    /// Takes a frame, whose record bears its time. Nothing comes of Mode A/C replies.
    Result take(Frame const& frame);

    /// How long targets are kept that are not heard, in ms; 0, the initial value, keeps them.
    void setTimeout(TimeMs timeout) { _timeout = timeout; }

    /// Leaves the speed of jumps alone, where times do not tell when positions were reported.
    void ignoreSpeeds() { _options.positions.checksSpeed = false; }

    /// Drops the targets that have fallen silent, and those that were heard after the present, before a clock
    /// was set back: they would be young for as long as it went back. To be called about once a second.
    void dropSilentTargets(TimeMs now);

    /// Drops all targets, so that the database learns from them.
    void dropAllTargets();

    /// One target, or all in the order of their addresses, as they are to be shown at a time.
    Aircraft shown(modes::ADSBTarget const& target, TimeMs now) const;
    std::vector<Aircraft> aircraft(TimeMs now) const;

    modes::ADSBTracker const& tracker() const { return _tracker; }
    std::size_t targets() const { return _targets; }

    Counters const& counters() const { return _counters; } ///< of decoding, tracking and positions

private:
    struct Tracked {
        bool isTarget = false;
        TimeMs latest = 0; // that it was heard at
        PositionGate gate;
    };

    bool isWelcome(modes::ModeSMessage const& message) const;
    bool isLostForLackOfRoom(modes::ModeSMessage const& message) const;
    std::shared_ptr<modes::ADSBTarget> trackWhenFull(std::shared_ptr<modes::ModeSMessage> const& message);
    bool makeRoom(TimeMs now);
    void dropTargetsOfTheFuture(TimeMs now);
    void judgePosition(modes::ADSBTarget const& target);
    void forget(std::vector<std::shared_ptr<modes::ADSBTarget>> const& killed);

    ReceiverOptions _options;
    AircraftFile* _database;
    modes::ModeSDecoder _decoder;
    modes::ADSBTracker _tracker;
    std::vector<Tracked> _tracked; // by track number
    std::size_t _targets = 0;
    TimeMs _timeout = 0;
    TimeMs _latest = 0; // of all targets
    TimeMs _lastRoomMade = 0;
    Counters _counters;
};

} // namespace quorvel::host
