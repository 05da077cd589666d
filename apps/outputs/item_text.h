// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>

#include <string>
#include <vector>

namespace quorvel::outputs {

/// What brought an item: "ADS-B", "Comm-B"; empty for none.
char const* nameOf(airspace::Source source);

/// An emergency or priority as web maps name it: "lifeguard", "minfuel"; "none" for none.
char const* nameOf(airspace::EmergencyState emergency);

/// What the probability of a SIL is counted by, as web maps name it: "perhour".
char const* nameOf(airspace::SilBasis basis);

/// The modes that are on, as web maps name them: "autopilot", "vnav", "althold", "approach", "lnav", "tcas".
std::vector<std::string> namesOf(airspace::SelectedModes const& modes);

/// An advisory of collision avoidance in a few words: "climb, corrective", "do not descend", "ended".
std::string wordsOf(airspace::ResolutionAdvisory const& advisory);

} // namespace quorvel::outputs
