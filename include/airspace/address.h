// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <string>

namespace quorvel::airspace {

/// What the address of a message is. Source: ICAO Annex 10 Vol. IV, 3.1.2.8.7.3; RTCA DO-260B, 2.2.3.2.1.5.
enum class AddressKind : std::uint8_t {
    None,      ///< the format has none
    Icao,      ///< the 24-bit address that a state assigned
    NonIcao,   ///< anonymous, or of a ground vehicle or an obstacle: emitter category C tells the last two
    TrackFile, ///< of a ground station: 12 bits of a Mode A code and 12 bits track number
    TisB,      ///< of a ground station that knows no address of the aircraft: its own choice
    Reserved,  ///< not assigned
};

/// An address as six upper-case hexadecimal digits, behind a "~" if no state assigned it.
TREVALLO_AIRSPACE_EXPORT std::string addressText(std::uint32_t address, AddressKind kind = AddressKind::Icao);

} // namespace quorvel::airspace
