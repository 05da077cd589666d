// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

namespace quorvel::modes {

/// Test message, type code 23 (RTCA DO-260B, 2.2.3.2.7.3). Always valid; subtypes other than 0 are logged.
class TREVALLO_EXPORT ADSBTestMessage : public ADSBMessage {
public:
    ADSBTestMessage();
    std::string description() const override; ///< holds the subtype as one raw byte (deliberate)
    bool decodeImpl() override;

    std::uint8_t subtype() const { return _subtype; }         ///< 0 to 7
    std::string const& testData() const { return _testData; } ///< the 6 bytes after the first; empty before a decode

private:
    std::uint8_t _subtype = 0;
    std::string _testData;
};

} // namespace quorvel::modes
