// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace quorvel::modes::test {

/// Repeatable noise; the seed belongs into the message of a failing test.
class Noise {
public:
    explicit Noise(std::uint64_t seed) : _generator(seed) {}

    std::uint64_t below(std::uint64_t bound) { return _generator() % bound; }

    /// The same as a length or index, which has 32 bits on small machines.
    std::size_t length(std::size_t bound) { return static_cast<std::size_t>(below(bound)); }

    std::string bytes(std::size_t count) {
        std::string result;
        while (result.size() < count) result += static_cast<char>(_generator() & 0xFF);
        return result;
    }

private:
    std::mt19937_64 _generator;
};

} // namespace quorvel::modes::test
