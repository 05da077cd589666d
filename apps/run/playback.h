// SPDX-License-Identifier: MIT
#pragma once

#include "run/failures.h"
#include "run/stations.h"
#include <airspace/frame.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace quorvel::run {

/// Reads recordings in the order of their times, frame by frame, at full speed or at a given one. Others on the loop
/// have their turn in between.
class Playback {
public:
    struct Handlers {
        std::function<void(Source& source, airspace::Frame const& frame)> heard;
        std::function<void()> paused; ///< nothing more comes for the moment
        std::function<void()> ended;  ///< a recording came to its end, or failed
    };

    /// At a speed of 1 a second takes a second; 0 is full speed. A recording that cannot be read any further is a
    /// failure, and has ended.
    Playback(asio::io_context& context, double speed, Failures& failures, Handlers handlers);

    /// A source that is a recording; it must live as long as the playback.
    void add(Source& source);

    bool isPaced() const { return _speed > 0; }

    void start();
    void stop();

private:
    using Clock = std::chrono::steady_clock;

    struct Recording {
        Source* source;
        airspace::Frames frames; // read but not taken
        std::size_t at = 0;

        bool isEmpty() const { return at == frames.size(); }
        airspace::Frame const& next() const { return frames[at]; }
    };

    void read();
    bool readNext();
    bool refill();
    bool refill(Recording& recording);
    Recording* earliest();
    bool isDue(airspace::TimeMs time);
    void readWhenDue(Clock::time_point due);

    asio::io_context& _context;
    asio::steady_timer _pacing;
    double _speed;
    Failures& _failures;
    Handlers _handlers;
    std::vector<Recording> _recordings;
    bool _isStopped = false;
    std::optional<airspace::TimeMs> _begin; // the time at which playing started
    Clock::time_point _beganAt;
};

} // namespace quorvel::run
