// SPDX-License-Identifier: MIT
#pragma once

#include "harness/input.h"

#include <cstring>

namespace quorvel::fuzz {

inline int anyInteger(Input& input) { return static_cast<int>(input.number<std::uint32_t>()); }

/// Any bits, so infinities and NaN as well.
inline double anyNumber(Input& input) {
    auto const bits = input.number<std::uint64_t>();
    double number = 0.0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

} // namespace quorvel::fuzz
