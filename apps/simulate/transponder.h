// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/flight.h"

#include <cstdint>
#include <string>

namespace quorvel::simulate {

// The frames that an aircraft's transponder sends, laid out as the standards say (ICAO Annex 10 Vol.
// IV, 3.1.2; RTCA DO-260, DO-260A, DO-260B).

// Replies to interrogations, 7 or 14 bytes.
std::string airAirReply(Aircraft const& aircraft, FlightState const& state);     ///< DF0
std::string longAirAirReply(Aircraft const& aircraft, FlightState const& state); ///< DF16
std::string altitudeReply(Aircraft const& aircraft, FlightState const& state);   ///< DF4
std::string identityReply(Aircraft const& aircraft);                             ///< DF5
std::string commBAltitudeReply(Aircraft const& aircraft,
    FlightState const& state);                            ///< DF20, identification in it
std::string commBIdentityReply(Aircraft const& aircraft); ///< DF21, identification in it
std::string allCallReply(Aircraft const& aircraft,
    std::uint32_t interrogator); ///< DF11, code 0 is a squitter

// Extended squitters (DF17), 14 bytes.
std::string identificationSquitter(Aircraft const& aircraft);
std::string positionSquitter(Aircraft const& aircraft, FlightState const& state, bool odd);
std::string velocitySquitter(Aircraft const& aircraft, FlightState const& state);
std::string aircraftStatusSquitter(Aircraft const& aircraft);
std::string targetStatusSquitter(Aircraft const& aircraft);
std::string operationalStatusSquitter(Aircraft const& aircraft);

} // namespace quorvel::simulate
