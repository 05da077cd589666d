// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/live_table.h"
#include "run/track_run.h"

#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>

namespace quorvel::run {

/// Passes keys that are pressed, and changes of the terminal's size, to the live table at once.
class Keyboard {
public:
    /// Both must live as long as the keyboard.
    Keyboard(outputs::LiveTable& table, TrackRun& run);
    ~Keyboard();
    Keyboard(Keyboard const&) = delete;
    Keyboard& operator=(Keyboard const&) = delete;

private:
    void waitForKey();
    void waitForSize();
    void poll();

    outputs::LiveTable& _table;
    TrackRun& _run;
    asio::posix::stream_descriptor _keys;
    asio::steady_timer _timer;
};

} // namespace quorvel::run
