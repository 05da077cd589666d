// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

#include <cstdint>
#include <optional>

namespace quorvel::inspect {

/// Tells how far the frames of a recording are apart, in seconds from an arbitrary start.
class FrameSeconds {
public:
    /// If `interval` is given, each frame comes so many seconds after the one before. `isCounter` tells that time
    /// stamps count from when the receiver was switched on: if they start anew, ten minutes have passed.
    FrameSeconds(std::optional<double> interval, bool isCounter) : _interval(interval), _isCounter(isCounter) {}

    /// The time of the next frame.
    double next(airspace::Frame const& frame);

private:
    bool isRestart(airspace::Frame const& frame) const;

    std::optional<double> _interval;
    bool _isCounter;
    std::uint64_t _frames = 0;
    double _pauses = 0.0; // s
    airspace::Frame _last;
};

} // namespace quorvel::inspect
