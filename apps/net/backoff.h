// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <utility>

namespace quorvel::net {

/// The pauses between attempts to connect: each twice as long as the one before, up to a minute.
class Backoff {
public:
    std::chrono::seconds next() { return std::exchange(_next, std::min(2 * _next, kLongest)); }

    /// Starts again with the shortest pause, after a connection that worked.
    void reset() { _next = kFirst; }

private:
    static constexpr std::chrono::seconds kFirst{1};
    static constexpr std::chrono::seconds kLongest{60};

    std::chrono::seconds _next = kFirst;
};

} // namespace quorvel::net
