// SPDX-License-Identifier: MIT
#pragma once

#include <modes/detail/tracked.h>
#include <modes/mops_version.h>

namespace quorvel::modes {

/// Quality of a position, each from 0 (unknown) up.
struct PositionQuality {
    unsigned char nucp; ///< navigation uncertainty category, up to 9
    unsigned char nic;  ///< navigation integrity category, up to 11
    unsigned char pic;  ///< position integrity category, up to 14

    bool operator==(PositionQuality const&) const = default;
};

/// What a position message of version 0 says: more than those of the later versions, which send accuracy and
/// integrity level in messages of their own.
struct PositionQualityV0 : PositionQuality {
    unsigned char nacp; ///< navigation accuracy category, up to 11
    unsigned char sil;  ///< surveillance integrity level, up to 3

    bool operator==(PositionQualityV0 const&) const = default;
};

/// The NIC supplements as far as they have been received.
struct NICSupplements {
    /// Bits, so that a rule can stand for several states.
    enum State : unsigned char { NotReceived = 1, Off = 2, On = 4 };

    State a = NotReceived;
    State b = NotReceived;
    State c = NotReceived;

    static State stateOf(detail::Updated<bool> const& supplement) {
        if (supplement.lastUpdate == 0) return NotReceived;
        return supplement.value ? On : Off;
    }
};

/// What the type code of a position message says about its quality; all 0 for type codes outside 5 to 21.
/// Source: RTCA DO-260B, 2.2.3.2.3.1 and appendix N.
PositionQualityV0 positionQualityV0(unsigned char typeCode);
PositionQuality positionQualityV1(unsigned char typeCode, NICSupplements const& supplements);
PositionQuality positionQualityV2(unsigned char typeCode, NICSupplements const& supplements);

} // namespace quorvel::modes
