// SPDX-License-Identifier: MIT
#pragma once

#include "harness/input.h"

namespace quorvel::fuzz {

/// What a target does with one input; each program has one.
void runTarget(Input input);

} // namespace quorvel::fuzz
