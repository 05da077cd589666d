// SPDX-License-Identifier: MIT
#pragma once

#include "net/live_source.h"
#include "outputs/counters.h"
#include <airspace/frame.h>
#include <airspace/stream.h>

#include <chrono>
#include <string>

namespace quorvel::net {

/// The present time of a live stream.
class LiveClock {
public:
    void heard(airspace::TimeMs now, airspace::TimeMs lastFrame) {
        _now = now;
        _lastFrame = lastFrame;
        _heardAt = std::chrono::steady_clock::now();
    }
    airspace::TimeMs now() const {
        if (_now == 0 || _isOver) return _now;
        auto const since =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - _heardAt);
        return _now + static_cast<airspace::TimeMs>(since.count());
    }
    airspace::TimeMs lastFrame() const { return _lastFrame; }
    void end() { _isOver = true; } // time stops

private:
    airspace::TimeMs _now = 0;
    airspace::TimeMs _lastFrame = 0;
    bool _isOver = false;
    std::chrono::steady_clock::time_point _heardAt;
};

/// What the connections of one source have in common.
struct SourceCommon {
    std::string name;
    airspace::StreamOptions options;
    LiveSource::Handlers handlers;
    outputs::Counters counters;
    LiveClock present;

    void say(std::string const& what) const { handlers.message(name + ": " + what); }

    /// With those of a connection that is still open.
    template <class Reading> outputs::Counters countersWith(Reading const* reading) const {
        auto sum = counters;
        if (reading != nullptr) sum += reading->counts();
        return sum;
    }
};

} // namespace quorvel::net
