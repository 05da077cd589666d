// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/counts.h>

#include <string>
#include <vector>

namespace quorvel::inspect {

/// The counts of what a recording holds besides frames, those that are 0 left out.
std::vector<airspace::CountText> lossesIn(airspace::Counts const& counters);

/// A line for each of them after the recording's name.
std::string lossesText(std::string const& name, airspace::Counts const& counters);

} // namespace quorvel::inspect
