// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>
#include <modes/mops_version.h>

#include <memory>
#include <string>

namespace quorvel::modes {

/// Makes the message object of an ADS-B payload. Keeps nothing between calls. Source: type codes of the
/// versions 0, 1 and 2, ICAO Doc 9871, A.2.3.1, B.2.3.1 and C.2.3.1.
class TREVALLO_EXPORT ADSBDecoder {
public:
    ADSBDecoder();

    /// Decodes the 7 bytes of an ME field as a transmitter of this version means them. Returns an object of
    /// the class for its type code and version, or an empty pointer: for fewer than 7 bytes, for a type that
    /// the version does not have, for a payload that its class finds invalid, and, with a line in the log,
    /// for a reserved type code. Version 1 aircraft status is decoded as version 0 (deliberate: it has no
    /// variant of its own).
    std::shared_ptr<ADSBMessage> decode(MOPSVersion version, std::string const& me) const;
};

} // namespace quorvel::modes
