// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::host {

/// Shows on standard error how far a file has been read, how fast, and how long the rest will take, twice a
/// second. Says nothing when standard error is no terminal or the input is no ordinary file.
class Progress {
public:
    Progress(std::string const& name, std::optional<std::uint64_t> size);
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// Takes note of how many bytes of the file and how many frames have been read by now.
    void advance(std::uint64_t bytes, std::uint64_t frames);

    /// Takes the line off the screen, so that another one can be written.
    static void erase();

private:
    std::string _name;
    std::uint64_t _size;
    bool _shows;
    std::chrono::steady_clock::time_point _begin;
    std::chrono::steady_clock::time_point _lastShown;
};

} // namespace quorvel::host
