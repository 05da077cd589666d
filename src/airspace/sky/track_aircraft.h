// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <airspace/place.h>

#include "airspace/sky/standard_track.h"

#include <optional>

namespace quorvel::airspace {

/// What is known of the aircraft of a track at a moment: its items, and what they and its address tell without saying it.
Aircraft aircraftOf(TrackKey key, StandardTrack const& track, TimeMs now, std::optional<Place> const& receiver);

} // namespace quorvel::airspace
