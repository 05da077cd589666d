// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// What an airspeed is.
enum class AirspeedType : std::uint8_t { Indicated, True };

/// What a vertical rate is measured by.
enum class VerticalRateSource : std::uint8_t { Gnss, Barometric };

/// A horizontal velocity: over ground (subtypes 1 and 2), or through the air (3 and 4). Subtypes 2 and 4 are for
/// supersonic flight, with steps of 4 kt. The highest code means more than its value.
/// Source: RTCA DO-260B, 2.2.3.2.6.1 and 2.2.3.2.6.3.
struct HorizontalVelocity {
    std::optional<std::int32_t> eastKt;  ///< kt; to the west negative
    std::optional<std::int32_t> northKt; ///< kt; to the south negative

    /// 0 up to 360, steps of 360/1024; the operational status says from which north.
    std::optional<double> headingDegrees;

    std::optional<AirspeedType> airspeedType; ///< of subtypes 3 and 4
    std::optional<std::int32_t> airspeedKt;   ///< kt

    /// Over ground, kt; none if a component is missing.
    TREVALLO_AIRSPACE_EXPORT std::optional<double> groundSpeedKt() const;

    /// Over ground, degrees clockwise from true north, 0 up to 360; none if a component is missing, or both are 0.
    TREVALLO_AIRSPACE_EXPORT std::optional<double> trackDegrees() const;
};

/// Type code 19, register 0,9: airborne velocity. Subtypes 0 and 5 to 7 are reserved and have only what does not depend
/// on the subtype. Source: RTCA DO-260B, 2.2.3.2.6.
struct AirborneVelocity {
    /// ME 9: the aircraft is about to change its intent; in a rebroadcast, that the address is none of ICAO.
    bool isIntentChanging = false;

    bool isIfrCapable = false; ///< ME 10: capable of IFR, class A1 or above; versions 0 and 1 alone
    std::uint8_t nacV = 0;     ///< ME 11 to 13: NACv; in version 0 NUCr, which has the same horizontal bounds

    HorizontalVelocity horizontal;                     ///< ME 14 to 35
    std::optional<std::int32_t> verticalRateFtMin;     ///< ME 37 to 46: up positive, steps of 64
    VerticalRateSource verticalRateSource{};           ///< ME 36: has a meaning with a rate alone
    std::optional<std::int32_t> gnssMinusBarometricFt; ///< ME 49 to 56: steps of 25 ft

    /// ME 50 to 56 are 127: the heights differ by more than 3,137.5 ft, which is no value.
    bool isDifferenceBeyondScale = false;
};

/// Type code 19 of a ground station's own picture (TIS-B). Source: RTCA DO-260B, 2.2.17.3.4.
struct TisBVelocity {
    std::uint8_t nacP = 0;                         ///< ME 10 to 13
    HorizontalVelocity horizontal;                 ///< ME 14 to 35
    std::optional<std::int32_t> verticalRateFtMin; ///< ME 37 to 46: up positive, steps of 64
    bool nicSupplement = false;                    ///< ME 47

    std::optional<std::uint8_t> nacV; ///< ME 48 to 50, if ME 36 is 0
    std::optional<std::uint8_t> sil;  ///< ME 51 and 52, if ME 36 is 0

    std::optional<std::int32_t> gnssMinusBarometricFt; ///< ME 49 to 56, if ME 36 is 1: steps of 25 ft
};

} // namespace quorvel::airspace
