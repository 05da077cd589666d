// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/readings/register_bits.h"

#include <airspace/comm_b.h>
#include <airspace/register_choice.h>

#include <cstddef>

namespace quorvel::airspace {

/// How much more likely the 56 bits are if they hold a register than if each were tossed: the natural logarithm of that
/// ratio, how often registers are asked for included. The bits have the register's structure.
/// `place` is that of the register in `kRegisters`.
double evidenceFor(std::size_t place, RegisterBits const& mb, KnownState const& known);

/// The same for "none of them": bits of which nothing is known but that zeros come in whole bytes.
double evidenceForOthers(RegisterBits const& mb);

} // namespace quorvel::airspace
