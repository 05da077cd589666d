// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/place.h>

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// Keeps impossible positions from being shown: forged, from a wrong pair of frames, from a repaired
/// frame. One for each aircraft.
///
/// A position must be within range of the receiver and reachable from the last one shown. After three
/// refusals in a row, of places that could be one flight, the new place is believed, and what is reachable
/// from there is shown, even beyond the range. A position that is not on the globe is never believed.
class PositionGate {
public:
    enum class Verdict : std::uint8_t { Shown, Believed, OutOfRange, TooFast, Impossible };

    struct Shown {
        Place place;
        TimeMs time = 0;
    };

    /// Takes a new position, reported at `time`. `Shown` and `Believed` ones become `shown()`.
    Verdict judge(Place const& place, TimeMs time, PositionLimits const& limits);

    /// The last position that passed.
    std::optional<Shown> const& shown() const { return _shown; }

    std::uint64_t refused() const { return _refused; } ///< positions that did not pass

private:
    static constexpr int kRefusalsInARow = 3;

    std::optional<Shown> _shown;
    Shown _lastRefused;
    int _refusedInARow = 0; // of places that could be one flight
    std::uint64_t _refused = 0;
};

} // namespace quorvel::airspace
