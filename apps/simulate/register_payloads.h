// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/flight.h"
#include "simulate/payload_writer.h"

namespace quorvel::simulate {

/// What a register of the transponder holds, by number: 0x40 for 4,0. All zeros of one that is not served. Source: ICAO
/// Doc 9871, tables A-2-16 to A-2-96.
PayloadWriter registerPayload(unsigned number, Aircraft const& aircraft, FlightState const& state);

} // namespace quorvel::simulate
