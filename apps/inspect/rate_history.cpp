// SPDX-License-Identifier: MIT
#include "inspect/rate_history.h"

#include <algorithm>

namespace quorvel::inspect {

namespace {

airspace::TimeMs middleOf(airspace::TimeMs a, airspace::TimeMs b, airspace::TimeMs c) {
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

} // namespace

void RateHistory::take(airspace::TimeMs time) {
    if (_waiting) {
        record(_before ? middleOf(*_before, *_waiting, time) : *_waiting);
        _before = _waiting;
    }
    _waiting = time;
}

void RateHistory::finish() {
    if (_waiting) record(*_waiting);
    _waiting.reset();
    _busiest = std::max(_busiest, _inSecond);
}

void RateHistory::record(airspace::TimeMs time) {
    if (_frames == 0) {
        _first = _last = time;
        _second = time / 1000;
    }
    ++_frames;
    time = std::max(time, _first); // frames come a little out of order
    if (time > _last + kNotableGap) {
        ++_gapCount;
        if (_gaps.size() < kMostGaps) _gaps.push_back({_last, time - _last});
    }
    countSecond(time);
    countInterval(time);
    _last = std::max(_last, time);
}

void RateHistory::countSecond(airspace::TimeMs time) {
    if (time / 1000 > _second) {
        _busiest = std::max(_busiest, _inSecond);
        _second = time / 1000;
        _inSecond = 0;
    }
    ++_inSecond;
}

void RateHistory::countInterval(airspace::TimeMs time) {
    while ((time - _first) / _width >= kMostIntervals) {
        for (std::size_t i = 0; i < _intervals.size(); i += 2)
            _intervals[i / 2] = _intervals[i] + (i + 1 < _intervals.size() ? _intervals[i + 1] : 0);
        _intervals.resize((_intervals.size() + 1) / 2);
        _width *= 2;
    }
    auto const index = static_cast<std::size_t>((time - _first) / _width);
    if (index >= _intervals.size()) _intervals.resize(index + 1);
    ++_intervals[index];
}

} // namespace quorvel::inspect
