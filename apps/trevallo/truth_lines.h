// SPDX-License-Identifier: MIT
#pragma once

#include "files/byte_sink.h"
#include "simulate/traffic.h"

#include <cstdint>
#include <string>

namespace quorvel::program {

/// The truth about simulated traffic as lines of JSON: all that is true of each aircraft in each second, and which
/// register each Comm-B reply holds.
class TruthLines {
public:
    /// Times count from midnight, `startOfDay` nanoseconds before the start. Throws HostError when the file cannot be
    /// written.
    TruthLines(std::string const& target, simulate::Traffic const& traffic, std::uint64_t startOfDay);

    /// Writes what was true up to a frame, and what is true of it.
    void take(simulate::Frame const& frame);

    /// Writes what was true up to the end, nanoseconds after the start.
    void finish(std::uint64_t end);

private:
    void writeUpTo(std::uint64_t nanoseconds);

    files::ByteSink _output;
    simulate::Traffic const& _traffic;
    std::uint64_t _startOfDay;
    std::uint64_t _second = 0; // the next one
};

} // namespace quorvel::program
