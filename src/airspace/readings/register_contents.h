// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/readings/register_bits.h"

#include <airspace/comm_b.h>

namespace quorvel::airspace {

// What each register holds, whether the bits fit it or not.

DataLinkCapability readDataLinkCapability(RegisterBits const& mb);
CommonUsageCapability readCommonUsageCapability(RegisterBits const& mb);
AircraftIdentification readAircraftIdentification(RegisterBits const& mb);
AircraftRegistration readAircraftRegistration(RegisterBits const& mb);
ActiveAdvisory readActiveAdvisory(RegisterBits const& mb);
SelectedIntention readSelectedIntention(RegisterBits const& mb);
RoutineMeteorology readRoutineMeteorology(RegisterBits const& mb);
HazardMeteorology readHazardMeteorology(RegisterBits const& mb);
TrackAndTurn readTrackAndTurn(RegisterBits const& mb);
AirReferencedState readAirReferencedState(RegisterBits const& mb);
HeadingAndSpeed readHeadingAndSpeed(RegisterBits const& mb);

} // namespace quorvel::airspace
