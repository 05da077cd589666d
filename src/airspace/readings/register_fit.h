// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/readings/register_bits.h"

#include <airspace/comm_b.h>

#include <cstdint>

namespace quorvel::airspace {

/// Which of all registers the bits can be, one bit for each of `kRegisters`, that of the first the lowest: their reserved
/// bits are 0, and so are values without their status bit, their constants are right, their codes assigned, and what
/// they say can fly.
std::uint32_t allFittingRegisters(RegisterBits const& mb);

} // namespace quorvel::airspace
