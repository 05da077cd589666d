// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <string>
#include <vector>

namespace quorvel::files {

/// The signals to stop: SIGINT, SIGTERM, and SIGHUP of a closed terminal, unless it was ignored when the program was
/// started, as by nohup.
std::vector<int> stopSignals();

/// The name of one of them.
std::string nameOfSignal(int signal);

/// While it lives, the signals to stop end the reading instead of the program, so that what has been read is
/// still shown and saved. A second one ends the program as usual, except SIGHUP, which may come twice when a
/// terminal is closed, from the shell and from the kernel. One object at a time.
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

} // namespace quorvel::files
