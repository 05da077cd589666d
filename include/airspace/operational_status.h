// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// Type code 31, register 6,5: operational status, subtype 0 airborne, 1 on the surface. What is told depends on the
/// version; version 0 has no more than its two fields of 16 bits, and so do those above 3, which are reserved.
/// Source: RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.7.2 (DO-260: 2.2.3.2.7.3); ICAO Doc 9871, table C-2-101.
struct OperationalStatus {
    std::uint8_t version = 0;          ///< ME 41 to 43
    bool isReadAsVersion2 = false;     ///< version 3, whose layout is taken to be that of 2
    std::uint16_t capabilityClass = 0; ///< ME 9 to 24, as they stand
    std::uint16_t operationalMode = 0; ///< ME 25 to 40, as they stand

    std::optional<bool> isTcasOperational;        ///< ME 11, subtype 0; version 1 tells the opposite, which is turned
    std::optional<bool> hasTrafficDisplay;        ///< ME 12, version 1
    std::optional<bool> receivesExtendedSquitter; ///< ME 12, version 2
    std::optional<bool> receivesUat;              ///< ME 19 of subtype 0, ME 16 of subtype 1; version 2
    std::optional<bool> reportsAirVelocity;       ///< ME 15, subtype 0 (ARV)
    std::optional<bool> reportsTargetState;       ///< ME 16, subtype 0 (TS)
    std::optional<std::uint8_t> targetChange;     ///< ME 17 and 18, subtype 0 (TC): reports of trajectory changes
    std::optional<bool> isPositionOffsetApplied;  ///< ME 11, subtype 1 of version 1
    std::optional<bool> isLowPower;               ///< ME 15, subtype 1 (B2 low): below 70 W
    std::optional<std::uint8_t> nacV;             ///< ME 17 to 19, subtype 1 of version 2
    std::optional<bool> nicSupplementC;           ///< ME 20, subtype 1 of version 2
    std::optional<std::uint8_t> lengthWidth;      ///< ME 21 to 24, subtype 1: see `sizeOf`

    std::optional<bool> isAdvisoryActive;      ///< ME 27: a resolution advisory of collision avoidance
    std::optional<bool> isIdentActive;         ///< ME 28
    std::optional<bool> receivesAtcServices;   ///< ME 29, version 1
    std::optional<bool> hasSingleAntenna;      ///< ME 30, version 2
    std::optional<std::uint8_t> sda;           ///< ME 31 and 32, version 2: system design assurance
    std::optional<std::uint8_t> antennaOffset; ///< ME 33 to 40, subtype 1 of version 2: see `antennaOffsetOf`

    std::optional<bool> nicSupplementA;            ///< ME 44
    std::optional<std::uint8_t> nacP;              ///< ME 45 to 48
    std::optional<std::uint8_t> barometricQuality; ///< ME 49 and 50, subtype 0 of version 1 (BAQ)
    std::optional<std::uint8_t> gva;      ///< ME 49 and 50, subtype 0 of version 2: geometric vertical accuracy
    std::optional<std::uint8_t> sil;      ///< ME 51 and 52
    std::optional<bool> isNicBaroChecked; ///< ME 53, subtype 0: the barometric altitude is cross-checked
    std::optional<bool> isTrackHeading;   ///< ME 53, subtype 1: surface positions tell the heading
    std::optional<bool> isMagneticNorth;  ///< ME 54: headings are magnetic; else true
    std::optional<bool> silSupplement;    ///< ME 55, version 2
};

/// Length and width of an aircraft, each at most, in m.
struct AircraftSize {
    double lengthMetres = 0.0; ///< m
    double widthMetres = 0.0;  ///< m
};

/// The size that a length and width code stands for; that of code 15 is exceeded by still larger aircraft. None of code
/// 0 from version 2 on, where it is no information, and of codes above 15.
/// Source: RTCA DO-260A and DO-260B, 2.2.3.2.7.2.11.
TREVALLO_AIRSPACE_EXPORT std::optional<AircraftSize> sizeOf(std::uint8_t lengthWidth, std::uint8_t version = 2);

/// Where the antenna of the position stands. Source: RTCA DO-260B, 2.2.3.2.7.2.4.7.
struct AntennaOffset {
    std::optional<int> rightMetres; ///< of the roll axis, -6 to 6, to the left negative; none if unknown
    std::optional<int> aftMetres;   ///< of the nose, 2 to 60; none if unknown or corrected
    bool isCorrected = false;       ///< the position is not that of the antenna, but corrected for the offset
};

/// What an antenna offset code stands for.
TREVALLO_AIRSPACE_EXPORT AntennaOffset antennaOffsetOf(std::uint8_t code);

} // namespace quorvel::airspace
