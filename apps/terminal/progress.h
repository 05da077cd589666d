// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quorvel::terminal {

/// Shows on standard error how much of a file has been read or written, how fast, and how long the rest will
/// take, twice a second. Shows nothing when standard error is not a terminal or the total is not known.
class Progress {
public:
    using SteadyTime = std::chrono::steady_clock::time_point;
    using SteadyClock = std::function<SteadyTime()>;

    /// For a file of this name. The unit of the total, bytes or time, is up to the caller.
    Progress(
        std::string const& name, std::optional<std::uint64_t> whole,
        SteadyClock clock = [] { return std::chrono::steady_clock::now(); });
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// Records how much of the total and how many frames are done by now.
    void advance(std::uint64_t done, std::uint64_t frames);

    /// Erases the line from the screen, so that another one can be written.
    static void erase();

private:
    std::string _name;
    std::uint64_t _whole;
    bool _shows;
    SteadyClock _clock;
    SteadyTime _begin;
    SteadyTime _lastShown;
};

} // namespace quorvel::terminal
