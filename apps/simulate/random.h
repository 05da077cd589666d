// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quorvel::simulate {

/// Random numbers that are the same for a seed on every machine and with every standard library (splitmix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : _state(seed) {}

    std::uint64_t next() {
        std::uint64_t z = _state += 0x9E3779B97F4A7C15;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
        z = (z ^ z >> 27) * 0x94D049BB133111EB;
        return z ^ z >> 31;
    }

    /// A whole number from 0 to `bound` - 1.
    std::uint64_t below(std::uint64_t bound) { return next() % bound; }

    /// A number from `low` up to, not including, `high`.
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(next() >> 11) / 9007199254740992.0; // 53 bits
    }

    bool chance(double share) { return between(0.0, 1.0) < share; }

private:
    std::uint64_t _state;
};

} // namespace quorvel::simulate
