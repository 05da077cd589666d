// SPDX-License-Identifier: MIT
#pragma once

#include "support/bytes.h"
#include "support/frames.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace quorvel::modes::reference {

// The plain way to find damaged bits: try each position, or each pair in lexicographic order, and compute the
// parity of the frame by division.

inline std::uint32_t parityOfFrame(std::string const& frame) {
    return test::dividedParity(std::string_view(frame).substr(0, frame.size() - 3));
}

inline std::optional<unsigned> searchBit(std::string const& frame, std::uint32_t parity) {
    for (unsigned i = 0; i < 8 * frame.size(); ++i) {
        if (parityOfFrame(test::withBitsInverted(frame, {i})) == parity) return i;
    }
    return {};
}

inline std::optional<std::pair<unsigned, unsigned>> searchPair(std::string const& frame, std::uint32_t parity) {
    for (unsigned i = 0; i < 8 * frame.size(); ++i) {
        for (unsigned j = i + 1; j < 8 * frame.size(); ++j) {
            if (parityOfFrame(test::withBitsInverted(frame, {i, j})) == parity) return {{i, j}};
        }
    }
    return {};
}

} // namespace quorvel::modes::reference
