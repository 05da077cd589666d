// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>
#include <modes/mops_version.h>

namespace quorvel::modes {

/// Aircraft operational status, type code 31 (RTCA DO-260B, 2.2.3.2.7.2): the version of the transmitter.
/// Version number 0 is logged and invalid; 3 to 7 are logged and valid.
class TREVALLO_EXPORT ADSBAircraftOperationalStatusMessage : public ADSBMessage {
public:
    ADSBAircraftOperationalStatusMessage();
    std::string description() const override;
    bool decodeImpl() override;

    std::uint8_t versionNumber() const { return _versionNumber; } ///< 0 to 7
    MOPSVersion version() const;                                  ///< the same; `MOPS_UNKNOWN` from 3 up
    bool nicSupplementA() const { return _nicSupplementA; }       ///< NIC supplement A

private:
    std::uint8_t _versionNumber = 0;
    bool _nicSupplementA = false;
};

} // namespace quorvel::modes
