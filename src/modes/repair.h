// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace quorvel::modes::repair {

// The parity code is linear: how far a frame's remainder is off (`syndrome`, remainder XOR the wanted one)
// depends on the damaged bits alone. Each bit leaves a mark of its own, bits of the parity field leave none;
// so the damaged bits are looked up by their mark where a search would compute the remainder of every frame
// that differs in one bit (112) or two (6,216). The results are those of the search, which meets low
// positions first. Positions are counted from 0 at the first bit transmitted.

/// The lowest position whose inversion changes the remainder by `syndrome`.
std::optional<unsigned> findBit(std::uint32_t syndrome, unsigned frameBits);

/// The first pair of positions, in lexicographic order, whose inversion changes the remainder by `syndrome`.
std::optional<std::pair<unsigned, unsigned>> findPair(std::uint32_t syndrome, unsigned frameBits);

/// Inverts the bit at a position that the frame has.
void invertBit(std::string& frame, unsigned position);

} // namespace quorvel::modes::repair
