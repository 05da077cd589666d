// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace quorvel::fuzz {

/// Ends the process with a message about what does not hold; the fuzzer keeps the input that led here.
inline void require(bool holds, char const* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// The same for a number that must lie within bounds, both included. What is not a number is out of bounds.
template <class Number> void requireWithin(Number value, Number low, Number high, char const* what) {
    if (low <= value && value <= high) return;
    std::fprintf(stderr, "out of range: %s is %s\n", what, std::to_string(value).c_str());
    std::abort();
}

} // namespace quorvel::fuzz
