// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/compact_position.h>
#include <airspace/place.h>

#include <optional>
#include <vector>

namespace quorvel::inspect {

/// A position message of an aircraft.
struct PositionMessage {
    airspace::CompactPosition position;
    double seconds = 0.0;                ///< when it came
    std::optional<double> groundSpeedKt; ///< at most, on the surface
};

/// Where an aircraft was when it sent a position message.
struct FoundPlace {
    airspace::Place place;
    bool isOfPair = false; ///< it made a pair with another message; else the place is the one next to a pair's
};

/// Finds the places of all position messages of one aircraft, in order of time, at once: a place is found with what came
/// before and after. Messages of both formats make pairs; of the places that pairs give, those stay that one
/// aircraft can reach one after the other. Each message is decoded around them by its own numbers, up to 30 s away from
/// the nearest. Surface positions need `reference`, as `globalPosition` says; it also gives the place of those without a
/// pair. One result for each message.
/// Source: RTCA DO-260B, 2.2.10.3 and A.1.7.
std::vector<std::optional<FoundPlace>> findPlaces(
    std::vector<PositionMessage> const& messages, std::optional<airspace::Place> const& reference);

} // namespace quorvel::inspect
