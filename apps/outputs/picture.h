// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <modes/adsb_target_report.h>

#include "outputs/counters.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::outputs {

/// One aircraft as all outputs show it.
struct Aircraft : airspace::Aircraft {
    std::string source; ///< the name of the source that heard it; empty when sources are merged or only one

    // of a list of aircraft; empty where it says nothing
    std::string type;         ///< designator of the type: "A320"
    std::string operatorName; ///< who flies it

    /// Its address as a text, "~" in front of those that no state assigned: no two aircraft of a source have the same.
    std::string name() const { return airspace::addressText(address, addressKind); }
};

/// How one source is doing.
struct SourceState {
    std::string name;               ///< as given: a file, tcp://…
    std::string state;              ///< "reading", "connected", "waiting to connect again", "ended", …
    airspace::TimeMs now = 0;       ///< its present time
    airspace::TimeMs lastFrame = 0; ///< when its last frame was received; 0 when there was none
    bool timeKnown = true;          ///< whether its times are of any calendar
    Counters counters;
};

/// Everything that there is to show at one moment.
struct Picture {
    airspace::TimeMs now = 0;         ///< the latest time of all sources
    std::vector<Aircraft> aircraft;   ///< by source, then by address
    std::vector<SourceState> sources; ///< in the order given
    Counters counters;                ///< of all sources and outputs

    /// The core's report of an aircraft of the picture, for its page; an empty pointer when it is gone.
    std::function<std::shared_ptr<modes::ADSBTargetReport>(Aircraft const&)> report;
};

} // namespace quorvel::outputs
