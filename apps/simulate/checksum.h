// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvel::simulate {

/// The frame with its parity appended, `overlay` (an address or an interrogator's code) overlaid on it
/// (ICAO Annex 10 Vol. IV, 3.1.2.3.3).
std::string withParity(std::string const& data, std::uint32_t overlay);

/// Remainder of the data by the Mode S generator, 24 bits.
std::uint32_t parityOf(std::string const& data);

} // namespace quorvel::simulate
