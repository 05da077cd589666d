// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/flight.h"
#include "simulate/payload_writer.h"

namespace quorvel::simulate {

/// Who sends a squitter. Some bits of a ground station's mean something else.
enum class Sender : std::uint8_t { Aircraft, TisB, Rebroadcast };

// The messages of extended squitters, laid out as RTCA DO-260, DO-260A and DO-260B, 2.2.3.2, say; of ground stations
// 2.2.17.3 and 2.2.18.4.
PayloadWriter positionMessage(Aircraft const& aircraft, FlightState const& state, bool odd, Sender sender);
PayloadWriter velocityMessage(Aircraft const& aircraft, FlightState const& state, Sender sender);
PayloadWriter identificationMessage(Aircraft const& aircraft);
PayloadWriter emergencyMessage(Aircraft const& aircraft, Sender sender);
PayloadWriter advisoryMessage(Aircraft const& aircraft, FlightState const& state); ///< version 2
PayloadWriter targetStateMessage(Aircraft const& aircraft, FlightState const& state,
    Sender sender); ///< versions 1 and 2
PayloadWriter operationalStatusMessage(Aircraft const& aircraft, FlightState const& state, Sender sender);
PayloadWriter testMessage(Aircraft const& aircraft); ///< version 1: the Mode A code
PayloadWriter coarsePositionMessage(Aircraft const& aircraft, FlightState const& state, bool odd);

/// Register 3,0 and the message of format 16: an advisory, if there is one (ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1 and
/// 4.3.8.4.2.4). Format 16 has no threat.
PayloadWriter acasRegister(Aircraft const& aircraft, FlightState const& state);
PayloadWriter acasMessage(Aircraft const& aircraft, FlightState const& state);

/// Surveillance status: emergency, ident or nothing (RTCA DO-260B, 2.2.3.2.3.2).
unsigned surveillanceStatus(Aircraft const& aircraft, FlightState const& state);

/// Whether the Mode A code is that of an emergency.
bool hasAlert(Aircraft const& aircraft);

} // namespace quorvel::simulate
