// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>

namespace quorvel::modes {

/// Hands out the track numbers 1 to 4095 in rising order, then from 1 again, without those that a target
/// holds.
///
/// Targets that came in reports bring their own numbers: several may hold the same one, and numbers outside
/// the range (0 is none) count as targets only. So each number has a count of its holders, and the next free
/// one is the next without any: what a search through all targets finds, without the search.
class TrackNumbers {
public:
    static constexpr unsigned int kFirst = 1;
    static constexpr unsigned int kLast = 4095;

    /// A free number, 0 when there are as many targets as numbers. It stays free until a target holds it, but
    /// the next call moves on from it.
    unsigned int next() {
        if (_targets >= kLast - kFirst + 1) return 0;
        auto const from = _next > kFirst && _next <= kLast ? _next : kFirst;
        auto number = firstFree(from, kLast + 1);
        if (number > kLast) number = firstFree(kFirst, from); // fewer targets than numbers: there is one
        _next = number + 1;
        return number;
    }

    /// A target holds the number, or holds it no longer.
    void hold(unsigned int number) {
        ++_targets;
        if (inRange(number)) ++_holders[number];
    }
    void release(unsigned int number) {
        --_targets;
        if (inRange(number)) --_holders[number];
    }

private:
    static bool inRange(unsigned int number) { return kFirst <= number && number <= kLast; }

    // The first number in [from, end) that nobody holds, `end` if there is none.
    unsigned int firstFree(unsigned int from, unsigned int end) const {
        auto const* const first = _holders.data();
        return static_cast<unsigned int>(std::find(first + from, first + end, 0) - first);
    }

    std::array<unsigned short, kLast + 1> _holders{}; // by number; at most one for each target
    unsigned int _targets = 0;
    unsigned int _next = kFirst;
};

} // namespace quorvel::modes
