// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/counts.h>

#include <vector>

namespace quorvel::outputs {

/// What happened to everything that came in, and to sources and outputs.
struct Counters : airspace::Counts {
    Count reconnections = 0; ///< connections to sources made again
    Count outputDropped = 0; ///< items that a reader of an output missed because it was too slow or not connected

    Counters() = default;
    Counters(airspace::Counts const& counts) : airspace::Counts(counts) {}

    /// Adds each count of another.
    Counters& operator+=(Counters const& other) {
        airspace::Counts::operator+=(other);
        reconnections += other.reconnections;
        outputDropped += other.outputDropped;
        return *this;
    }
};

/// All counts with their texts, in a fixed order; formats that did not occur are left out.
std::vector<airspace::CountText> listed(Counters const& counters);

} // namespace quorvel::outputs
