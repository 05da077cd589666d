// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/known_states.h"
#include <airspace/frame.h>

#include <cstdint>
#include <string>

namespace quorvel::inspect {

/// Lines of JSON with what each Mode S frame of a recording says by the standards, in order. A frame is read by itself;
/// `bds_choice`, `bds_score` and `bds_sure` of a Comm-B reply come from what earlier frames tell of the aircraft, too.
class ReadingLines {
public:
    /// Appends the line of one frame; nothing for a Mode A/C reply, which is not counted either.
    void append(airspace::Frame const& frame, std::string& out);

private:
    std::uint64_t _frames = 0;
    KnownStates _states;
};

} // namespace quorvel::inspect
