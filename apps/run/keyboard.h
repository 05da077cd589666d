// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/live_table.h"
#include "run/track_run.h"

#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>

namespace quorvel::host {

/// Lets the keys that are pressed, and changes of the terminal's size, reach the live table at once.
class Keyboard {
public:
    /// Both must live as long as the keyboard.
    Keyboard(LiveTable& table, TrackRun& run);
    ~Keyboard();
    Keyboard(Keyboard const&) = delete;
    Keyboard& operator=(Keyboard const&) = delete;

private:
    void waitForKey();
    void waitForSize();
    void poll();

    LiveTable& _table;
    TrackRun& _run;
    asio::posix::stream_descriptor _keys;
    asio::steady_timer _timer;
};

} // namespace quorvel::host
