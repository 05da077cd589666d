// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace quorvel::modes::parity {

// The Mode S parity code (ICAO Annex 10 Vol. IV, 3.1.2.3.3) over frames of 112 or 56 bits, of which the last
// 24, the parity field, do not count. Positions are counted from 0 at the first bit transmitted.

/// Remainder of the frame's data; missing bytes count as zeros.
std::uint32_t remainder(std::string_view frame, unsigned frameBits);

// Repair. The code is linear: how far a frame's remainder is off (`syndrome`, remainder XOR the wanted one)
// depends on the damaged bits alone. Each bit leaves a mark of its own, bits of the parity field leave none;
// so the damaged bits are looked up by their mark where a search would compute the remainder of every frame
// that differs in one bit (112) or two (6,216). The results are those of the search, which meets low
// positions first.

/// The lowest position whose inversion changes the remainder by `syndrome`.
std::optional<unsigned> findBit(std::uint32_t syndrome, unsigned frameBits);

/// The first pair of positions, in lexicographic order, whose inversion changes the remainder by `syndrome`.
std::optional<std::pair<unsigned, unsigned>> findPair(std::uint32_t syndrome, unsigned frameBits);

} // namespace quorvel::modes::parity
