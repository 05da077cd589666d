// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_target_report.h>

#include "host/counters.h"
#include "host/frame.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::host {

/// One aircraft as all outputs show it.
struct Aircraft {
    /// The target's report. Its position is the last that passed the plausibility checks, with the time at
    /// which that one was reported; not valid when none has passed.
    std::shared_ptr<modes::ADSBTargetReport> report;
    std::string source; ///< the name of the source that heard it; empty when sources are merged or only one
    TimeMs now = 0;     ///< the present time of that source
    std::uint64_t messages = 0;         ///< replies given to the target
    std::uint64_t positionsRefused = 0; ///< positions of this aircraft that did not pass the checks

    /// Milliseconds since a time; 0 for a time to come, so that clocks that go backwards give no huge ages.
    TimeMs age(TimeMs since) const { return since < now ? now - since : 0; }
};

/// How one source is doing.
struct SourceState {
    std::string name;      ///< as given: a file, tcp://…
    std::string state;     ///< "reading", "connected", "waiting to connect again", "ended", …
    TimeMs now = 0;        ///< its present time
    TimeMs lastFrame = 0;  ///< when its last frame was received; 0 when there was none
    bool timeKnown = true; ///< whether its times are of any calendar
    Counters counters;
};

/// Everything that there is to show at one moment.
struct Picture {
    TimeMs now = 0;                   ///< the latest time of all sources
    std::vector<Aircraft> aircraft;   ///< by source, then by address
    std::vector<SourceState> sources; ///< in the order given
    Counters counters;                ///< of all sources and outputs
};

} // namespace quorvel::host
