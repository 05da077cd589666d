// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

namespace quorvel::modes {

/// Aircraft status, type code 28 (RTCA DO-260B, 2.2.3.2.7.8). Valid for the subtypes 0 to 2.
class TREVALLO_EXPORT ADSBAircraftStatusMessage : public ADSBMessage {
public:
    /// What the message reports.
    enum class Subtype : std::uint32_t { NO_INFO = 0, EMERGENCY, TCAS_RA, UNKNOWN };

    /// Emergency or priority status (RTCA DO-260B, 2.2.3.2.7.8.1.1).
    enum class EmergencyState : std::uint32_t {
        NO_EMG = 0, ///< no emergency
        EMERGENCY,  ///< general emergency
        MEDICAL,    ///< lifeguard or medical
        MIN_FUEL,   ///< minimum fuel
        NO_COMM,    ///< no communications
        HIJACK,     ///< unlawful interference
        AC_DOWNED,  ///< downed aircraft
        UNDEFINED,  ///< reserved
    };

    ADSBAircraftStatusMessage();
    std::string description() const override;
    bool decodeImpl() override;

    Subtype subtype() const { return _subtype; }                      ///< `UNKNOWN` before the first decode
    EmergencyState emergencyState() const { return _emergencyState; } ///< reported by the subtype `EMERGENCY` only

private:
    Subtype _subtype = Subtype::UNKNOWN;
    EmergencyState _emergencyState = EmergencyState::NO_EMG;
};

/// As transmitters of versions 0 and 1 send it.
class TREVALLO_EXPORT ADSBAircraftStatusMessageV0 : public ADSBAircraftStatusMessage {};

/// As a version 2 transmitter sends it. A TCAS RA broadcast is logged and invalid.
class TREVALLO_EXPORT ADSBAircraftStatusMessageV2 : public ADSBAircraftStatusMessage {
public:
    std::string description() const override;
    bool decodeImpl() override;

    /// Mode A code, 12 bits; read from the first two payload bytes (deliberate). 0 unless the subtype is
    /// `EMERGENCY`.
    unsigned int modeACode() const { return _modeACode; }
    std::string modeAOctString() const; ///< four octal digits

private:
    unsigned int _modeACode = 0;
};

} // namespace quorvel::modes
