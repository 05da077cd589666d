// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/flight.h"
#include "simulate/payload_writer.h"

#include <cstdint>
#include <string>

namespace quorvel::simulate {

// The frames that an aircraft's transponder sends, laid out as ICAO Annex 10 Vol. IV, 3.1.2, says.

// Replies to interrogations, 7 or 14 bytes.
std::string airAirReply(Aircraft const& aircraft, FlightState const& state);     ///< DF0
std::string longAirAirReply(Aircraft const& aircraft, FlightState const& state); ///< DF16, an advisory in it
std::string altitudeReply(Aircraft const& aircraft, FlightState const& state);   ///< DF4
std::string identityReply(Aircraft const& aircraft, FlightState const& state);   ///< DF5
std::string commBAltitudeReply(
    Aircraft const& aircraft, FlightState const& state, unsigned registerNumber); ///< DF20, as 0x40 for 4,0
std::string commBIdentityReply(Aircraft const& aircraft, FlightState const& state, unsigned registerNumber); ///< DF21
std::string allCallReply(Aircraft const& aircraft, FlightState const& state,
    std::uint32_t interrogator); ///< DF11; code 0 is a squitter

/// An extended squitter of the aircraft itself, 14 bytes: DF17, or DF18 of a transmitter that is no transponder.
std::string squitter(Aircraft const& aircraft, FlightState const& state, PayloadWriter const& message);

/// The extended squitter of a ground station about it (DF18).
std::string groundStationSquitter(Aircraft const& aircraft, PayloadWriter const& message);

} // namespace quorvel::simulate
