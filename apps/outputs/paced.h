// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/output.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quorvel::outputs {

/// Spares an output that shows the current state the pictures that nobody could see: of those that come in quick
/// succession, as when a recording is played back at full speed, one in each interval of the host's time is passed on.
/// The last one always is.
class Paced : public Output {
public:
    using SteadyTime = std::chrono::steady_clock::time_point;
    using SteadyClock = std::function<SteadyTime()>;

    Paced(
        std::unique_ptr<Output> output, std::chrono::milliseconds interval,
        SteadyClock clock = [] { return std::chrono::steady_clock::now(); })
        : _output(std::move(output)), _interval(interval), _clock(std::move(clock)) {}

    Wants wants() const override { return _output->wants(); }
    void heard(HeardFrame const& heard) override { _output->heard(heard); }

    bool wantsPicture() override { return (!_last || _clock() - *_last >= _interval) && _output->wantsPicture(); }

    void picture(Picture const& picture) override {
        if (!wantsPicture()) return;
        _last = _clock();
        _output->picture(picture);
    }

    void flush() override { _output->flush(); }
    void finish(Picture const& last) override { _output->finish(last); }

private:
    std::unique_ptr<Output> _output;
    std::chrono::milliseconds _interval;
    SteadyClock _clock;
    std::optional<SteadyTime> _last;
};

} // namespace quorvel::outputs
