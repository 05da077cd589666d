// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

namespace quorvel::modes {

/// Target state and status, type code 29 (RTCA DO-260B, 2.2.3.2.7.1). Valid for the subtypes 0 and 1, which
/// are read from the same positions.
class TREVALLO_EXPORT ADSBTargetStatusMessage : public ADSBMessage {
public:
    ADSBTargetStatusMessage();
    std::string description() const override;
    bool decodeImpl() override;

    std::uint8_t subtype() const { return _subtype; } ///< 0 to 3
    std::uint8_t nacp() const { return _nacp; }       ///< navigation accuracy category for position, 0 to 15
    std::uint8_t nicBaro() const { return _nicBaro; } ///< barometric altitude integrity code, 0 or 1
    std::uint8_t sil() const { return _sil; }         ///< source integrity level, 0 to 3

private:
    std::uint8_t _subtype = 0;
    std::uint8_t _nacp = 0;
    std::uint8_t _nicBaro = 0;
    std::uint8_t _sil = 0;
};

/// As a version 1 transmitter sends it.
class TREVALLO_EXPORT ADSBTargetStatusMessageV1 : public ADSBTargetStatusMessage {};

/// As a version 2 transmitter sends it. Subtype 0 is invalid (deliberate).
class TREVALLO_EXPORT ADSBTargetStatusMessageV2 : public ADSBTargetStatusMessage {
public:
    std::string description() const override;
    bool decodeImpl() override;

    bool silSupp() const { return _silSupp; } ///< SIL supplement: false per hour, true per sample

private:
    bool _silSupp = false;
};

} // namespace quorvel::modes
