// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

namespace quorvel::modes {

/// Aircraft identification, type codes 1 to 4 (RTCA DO-260B, 2.2.3.2.5). Always valid.
class TREVALLO_EXPORT ADSBIdentityMessage : public ADSBMessage {
public:
    ADSBIdentityMessage();
    std::string description() const override; ///< "TC=ACID, EC=0, CS=ABC123  "
    bool decodeImpl() override;

    /// Emitter category, 0 to 7, within the set that the type code names (4 is set A, 1 is set D).
    std::uint8_t emitterCategory() const { return _emitterCategory; }

    /// Always 8 characters: letters, digits and blanks as sent, trailing blanks included, "?" for invalid
    /// codes. Eight blanks before the first decode.
    std::string const& callsign() const { return _callsign; }

private:
    std::uint8_t _emitterCategory = 0;
    std::string _callsign = std::string(8, ' ');
};

} // namespace quorvel::modes
