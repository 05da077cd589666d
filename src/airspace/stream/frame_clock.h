// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/stream.h>

#include "airspace/stream/clock_kind.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace quorvel::airspace {

/// Gives each frame of one source its time.
///
/// A time of day that steps back by more than half a day is the next day's: a recording goes on across
/// midnight; one that steps forward by as much is a late frame of the day before. A counter is anchored where
/// it begins, unwrapped at 48 bits, and anchored again after a jump. The date of a recording is not in its
/// frames: without one its times are those of 1970-01-02, and `timeKnown` says so; a live source has the
/// host's date.
class FrameClock {
public:
    FrameClock(TimeOptions const& options, Origin origin);

    /// Looks at the next frames of a stream, which arrived at once, to detect how its time stamps count. False while
    /// more are needed. Nothing more is needed when these are the last (`isWhole`): the likeliest is taken then, except
    /// for a connection that gave no hint.
    bool settle(std::span<Frame const> next, TimeMs arrival, bool isWhole);

    /// Whether nothing more is needed.
    bool isSettled() const { return !_kind; }

    /// Puts the time of reception into the frame, the present of the stream at most, and that present.
    /// `arrival` is the host's clock, 0 for recordings. Until it is known what stamps of a live stream count,
    /// that is its time.
    void stamp(Frame& frame, TimeMs arrival, Counts& counts);

    TimeReading reading() const { return _reading; } ///< `Auto` until it is detected
    bool timeKnown() const { return _timeKnown; }

    /// How the stamps were found to count, once, if that is unexpected; else empty.
    std::string takeRemark() { return std::exchange(_remark, {}); }

    /// The present of the stream: the latest time, except for damaged stamps.
    TimeMs now() const { return _now; }

private:
    void decide(TimeReading found, std::span<Frame const> last, TimeMs arrival);
    void advance(TimeMs time, Counts& counts);
    TimeMs ofDay(std::uint64_t stamp, TimeMs arrival) const;
    TimeMs ofCounter(std::uint64_t stamp, TimeMs arrival, Counts& counts);

    TimeReading _reading;
    TimeMs _start;
    Origin _origin;
    bool _timeKnown;
    std::unique_ptr<ClockKind> _kind; // until it is known
    std::string _remark;
    TimeMs _now = 0;
    int _farFrames = 0;                     // in a row, far from the present
    std::optional<std::uint64_t> _lastTick; // for counters
    std::uint64_t _anchorTick = 0;
    TimeMs _anchorTime = 0;
};

} // namespace quorvel::airspace
