// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

#include "adsb/payload_fields.h"

namespace quorvel::modes {

/// What airborne and surface positions share, at the same place of the payload: the compact position report
/// (RTCA DO-260B, 2.2.3.2.3.5 to 2.2.3.2.3.8).
struct PositionFields {
    bool timeApplicability;
    unsigned int cprFormat; // 1 even, 0 odd
    unsigned int cprLatitude;
    unsigned int cprLongitude;
};

PositionFields readPositionFields(Payload const& payload);

/// Their rows, in the order of the payload.
void listPositionFields(ADSBMessage& message);

/// ", CPR=EVEN, LAT=93000, LON=51372": how descriptions of positions end.
std::string positionText(unsigned int cprFormat, unsigned int cprLatitude, unsigned int cprLongitude);

} // namespace quorvel::modes
