// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvel::inspect {

/// A span of a recording without a frame.
struct Gap {
    airspace::TimeMs start;
    airspace::TimeMs length;
};

/// How many frames came when, in constant memory however long the recording is. A single time far from those
/// before and after it is a damaged time stamp and is replaced by theirs.
class RateHistory {
public:
    static constexpr airspace::TimeMs kNotableGap = 10'000; ///< ms; longer ones are listed
    static constexpr std::size_t kMostIntervals = 50;       ///< their width doubles when there are more
    static constexpr std::size_t kMostGaps = 100;           ///< as many are listed, all are counted

    void take(airspace::TimeMs time);

    /// To be called after the last frame.
    void finish();

    airspace::TimeMs first() const { return _first; }
    airspace::TimeMs last() const { return _last; }
    double seconds() const { return static_cast<double>(_last - _first) / 1000; }
    std::uint64_t frames() const { return _frames; }
    std::uint64_t busiestSecond() const { return _busiest; } ///< frames in it
    std::vector<Gap> const& gaps() const { return _gaps; }   ///< the first of them
    std::uint64_t gapCount() const { return _gapCount; }

    /// Frames in each interval from the first frame on.
    std::vector<std::uint64_t> const& intervals() const { return _intervals; }
    airspace::TimeMs intervalWidth() const { return _width; } ///< ms

private:
    void record(airspace::TimeMs time);
    void countSecond(airspace::TimeMs time);
    void countInterval(airspace::TimeMs time);

    std::optional<airspace::TimeMs> _before;  // the time before the one that is waiting
    std::optional<airspace::TimeMs> _waiting; // until the next one shows whether it is plausible
    airspace::TimeMs _first = 0;
    airspace::TimeMs _last = 0;
    std::uint64_t _frames = 0;
    airspace::TimeMs _second = 0;
    std::uint64_t _inSecond = 0;
    std::uint64_t _busiest = 0;
    std::vector<Gap> _gaps;
    std::uint64_t _gapCount = 0;
    std::vector<std::uint64_t> _intervals;
    airspace::TimeMs _width = 1000;
};

} // namespace quorvel::inspect
