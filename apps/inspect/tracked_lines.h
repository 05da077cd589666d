// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/known_states.h"
#include <airspace/message.h>
#include <airspace/place.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::inspect {

/// Finds what the frames of a recording say only together with others of the same aircraft: positions, and the
/// registers of Comm-B replies that fit several. Frames are taken in order; all of them count.
class TrackedLines {
public:
    /// `receiver` is a place near the aircraft on the surface, whose positions are left out without it.
    explicit TrackedLines(std::optional<airspace::Place> const& receiver) : _receiver(receiver) {}

    /// The next Mode S frame, and when it came.
    void take(airspace::Frame const& frame, double seconds);

    /// The lines of all that was found, in the order of the frames: objects with `i` and `icao`, of positions with
    /// `latitude`, `longitude`, `src` and integrity (`version`, `nic`, `rc`), of replies with `bds` and its values.
    std::string lines() const;

private:
    struct Heard {
        airspace::Frame frame;
        double seconds;
    };
    using LinesByFrame = std::map<std::uint64_t, std::string>;

    void findPositions(LinesByFrame& lines) const;
    void findRegisters(LinesByFrame& lines) const;

    std::optional<airspace::Place> _receiver;
    std::vector<Heard> _frames;
};

} // namespace quorvel::inspect
