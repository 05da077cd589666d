// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/stream.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>

namespace quorvel::airspace {

/// The evidence for each reading of time stamps.
struct ClockVotes {
    std::size_t timeOfDay = 0;
    std::size_t counter = 0;
    std::size_t neither = 0;

    /// The reading with enough votes, and four times as many as against it; else `Auto`.
    TimeReading winner(std::size_t enough) const;
};

/// Evidence by position squitters of one aircraft: they come half a second apart, even and odd in turn.
class SquitterRate {
public:
    void take(Frame const& frame);
    ClockVotes const& votes() const { return _votes; }

private:
    struct Position {
        std::uint64_t stamp;
        bool isOdd;
    };
    std::unordered_map<std::uint32_t, Position> _last; // by address
    ClockVotes _votes;
};

/// Evidence by arrival: stamps advance as fast as the host's clock.
class ArrivalRate {
public:
    /// The last stamp of what arrived at once.
    void take(std::uint64_t stamp, TimeMs arrival);
    ClockVotes const& votes() const { return _votes; }

private:
    std::optional<std::uint64_t> _stamp;
    TimeMs _arrival = 0;
    ClockVotes _votes;
};

/// Evidence by the values alone: whether they can be times of day, and how many there are in how much time.
class StampRange {
public:
    void take(std::uint64_t stamp);
    std::size_t stamps() const { return _stamps; }
    bool areNotTimesOfDay() const;
    bool areMany() const;    ///< enough for one that is damaged not to matter
    bool areLong() const;    ///< longer than a counter could go without a value that is not a time of day
    bool areTooFast() const; ///< as times of day: more than the channel holds

private:
    std::size_t _stamps = 0;
    std::size_t _impossible = 0;
    std::uint64_t _lastImpossible = 0;
    std::size_t _farFromFirst = 0;
    TimeMs _beginning = 0;
    TimeMs _first = ~TimeMs{0};
    TimeMs _last = 0;
};

/// Detects what the time stamps of a stream count, from its start.
class ClockKind {
public:
    explicit ClockKind(Origin origin) : _origin(origin) {}

    /// Takes note of the frames that arrived at once.
    void take(std::span<Frame const> frames, TimeMs arrival);

    /// What they count, as soon as that is clear; `Auto` before.
    TimeReading found() const;

    /// What they most likely count, when nothing more will come; `Auto` for a connection that gave no hint.
    TimeReading guess() const;

private:
    TimeReading withoutStamps() const;

    Origin _origin;
    std::size_t _frames = 0;
    StampRange _range;
    SquitterRate _squitters;
    ArrivalRate _arrivals;
};

} // namespace quorvel::airspace
