// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <string>

namespace quorvel::host {

/// While it lives, the signals to stop (SIGINT, SIGTERM) end the reading instead of the program, so that what
/// has been read is still shown and saved. A second one ends the program as ever. One object at a time.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(StopSignals const&) = delete;
    StopSignals& operator=(StopSignals const&) = delete;

    /// Whether a signal has come.
    static bool requested();

    /// The name of the signal that came, empty when none has.
    static std::string name();

    /// Waits until there is something to read; false when a signal came first. Without an object of this
    /// class it just waits.
    static bool waitReadable(int file);
};

} // namespace quorvel::host
