// SPDX-License-Identifier: MIT
#pragma once

#include "host/counters.h"
#include "host/frame.h"

#include <optional>
#include <string>

namespace quorvel::host {

/// How the time of a frame is told from its time stamp.
enum class TimeReading : std::uint8_t {
    Auto,         ///< found out: counter or time of day by the stamps, arrival or nothing without them
    Receiver,     ///< 18 bits second of the UTC day, 30 bits nanosecond
    Counter12MHz, ///< ticks since the receiver was switched on
    Arrival,      ///< the host's clock when the frame came
    Fixed,        ///< one time for all
};

struct TimeOptions {
    TimeReading reading = TimeReading::Auto;
    TimeMs start = 0; ///< the date, or date and time, at which the stream begins; 0 when not known
};

/// Where a stream comes from, and so what the host's clock says about it.
enum class Origin : std::uint8_t {
    Recording,  ///< nothing: the same recording gives the same times
    Pipe,       ///< the date, and the time of what bears none; it may be a receiver's or a recording's
    Connection, ///< the present time
};

/// Parses "2024-05-01" or "2024-05-01T12:34:56[.789]Z"; none for anything else.
std::optional<TimeMs> parseTime(std::string const& text);

/// Gives each frame of one source its time.
///
/// A time of day that steps back by more than half a day is the next day's: a recording goes on across
/// midnight; one that steps forth by as much is a late frame of the day before. A counter is anchored where
/// it begins, unwrapped at 48 bits, and anchored anew after a jump. The date of a recording is not in its
/// frames: without one its times are those of 1970-01-02, and `timeKnown` says so; a live source has the
/// host's date.
class FrameClock {
public:
    FrameClock(TimeOptions const& options, Origin origin);

    /// Looks at the frames from the beginning of a stream to find out how its time stamps count. False while
    /// more frames are needed to tell; not when these are all (`isWhole`) or very many.
    bool settle(Frames const& sample, TimeMs arrival, bool isWhole);

    /// Puts the time of reception into the frame's record and returns it: the present of the stream at most.
    /// `arrival` is the host's clock, 0 for recordings.
    TimeMs stamp(Frame& frame, TimeMs arrival, Counters& counters);

    TimeReading reading() const { return _reading; } ///< `Auto` until it is found out
    bool timeKnown() const { return _timeKnown; }
    TimeMs now() const {
        return _now;
    } ///< the present of the stream: the latest time, but for damaged stamps

private:
    void advance(TimeMs time, Counters& counters);
    TimeMs ofDay(std::uint64_t stamp, TimeMs arrival) const;
    TimeMs ofCounter(std::uint64_t stamp, TimeMs arrival, Counters& counters);

    TimeReading _reading;
    TimeMs _start;
    Origin _origin;
    bool _timeKnown;
    TimeMs _now = 0;
    int _farFrames = 0;                     // in a row, far from the present
    std::optional<std::uint64_t> _lastTick; // for counters
    std::uint64_t _anchorTick = 0;
    TimeMs _anchorTime = 0;
};

} // namespace quorvel::host
