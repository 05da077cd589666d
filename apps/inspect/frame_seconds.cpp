// SPDX-License-Identifier: MIT
#include "inspect/frame_seconds.h"

#include <cmath>

namespace quorvel::inspect {

namespace {

constexpr double kMsPerSecond = 1000.0;
constexpr double kTicksPerSecond = 12e6;
constexpr double kMostDifference = 10.0; // s between what stamps and times say
constexpr double kPause = 600.0;         // s

double seconds(airspace::Frame const& frame) { return static_cast<double>(frame.time) / kMsPerSecond; }

} // namespace

double FrameSeconds::next(airspace::Frame const& frame) {
    auto const number = static_cast<double>(_frames++);
    if (_interval) return number * *_interval;
    if (isRestart(frame)) _pauses += kPause;
    _last = frame;
    return seconds(frame) + _pauses;
}

// The times of a stream go on across a restart, its stamps do not.
bool FrameSeconds::isRestart(airspace::Frame const& frame) const {
    if (!_isCounter || !frame.stamp || !_last.stamp) return false;
    auto const counted = (static_cast<double>(*frame.stamp) - static_cast<double>(*_last.stamp)) / kTicksPerSecond;
    return std::abs(counted - (seconds(frame) - seconds(_last))) > kMostDifference;
}

} // namespace quorvel::inspect
