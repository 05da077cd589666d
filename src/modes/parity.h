// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace quorvel::modes::parity {

/// Remainder of a frame's data by the Mode S parity code (ICAO Annex 10 Vol. IV, 3.1.2.3.3). Frames have 112
/// or 56 bits, of which the last 24, the parity field, do not count; missing bytes count as zeros.
std::uint32_t remainder(std::string_view frame, unsigned frameBits);

} // namespace quorvel::modes::parity
