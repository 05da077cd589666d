// SPDX-License-Identifier: MIT
#pragma once

#include "host/counters.h"

#include <string>
#include <vector>

namespace quorvel::host {

/// The counts of what a recording holds besides frames, those that are 0 left out.
std::vector<CounterText> lossesIn(Counters const& counters);

/// A line for each of them after the recording's name.
std::string lossesText(std::string const& name, Counters const& counters);

} // namespace quorvel::host
