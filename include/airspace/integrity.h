// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <cstdint>
#include <optional>

/// @file
/// How far what an aircraft reports can be trusted: accuracy and integrity categories as numbers with units. What has
/// no bound, or is not known, is none. Bounds are "less than" for containment radii and accuracies.

namespace quorvel::airspace {

inline constexpr double kMetresPerNauticalMile = 1852.0; ///< by definition

/// The supplement bits that a navigation integrity category depends on, each where its message was heard:
/// A in the operational status, B in the airborne position, C in the operational status on the surface.
struct NicSupplements {
    bool a = false; ///< 6,5 ME 44; the only one in version 1
    bool b = false; ///< 0,5 ME 8, since version 2
    bool c = false; ///< 6,5 subtype 1 ME 20, since version 2
};

/// Navigation integrity: how far off a position can be without a warning.
struct NavigationIntegrity {
    std::optional<std::uint8_t> nic;      ///< navigation integrity category, 0 to 11; none in version 0
    std::optional<double> radiusMetres;   ///< containment radius Rc; none if unknown
    std::optional<double> verticalMetres; ///< vertical protection limit, versions 0 and 1 alone
};

/// The integrity of a position message by its type code, version and supplements. Type codes that are no position give
/// nothing, versions from 3 on are read as 2. A combination of supplements that no row names is read as the row
/// with the largest radius of that type code.
/// Source: RTCA DO-260, 2.2.3.2.3.1 (version 0); DO-260A and DO-260B, 2.2.3.2.3.1 and 2.2.3.2.7.2.6.
TREVALLO_AIRSPACE_EXPORT NavigationIntegrity navigationIntegrity(
    std::uint8_t typeCode, std::uint8_t version, NicSupplements const& supplements);

/// Navigation uncertainty category for position, 0 to 9, of a position message of version 0; none for type codes that
/// are no position. Source: RTCA DO-260, 2.2.3.2.3.1.
TREVALLO_AIRSPACE_EXPORT std::optional<std::uint8_t> navigationUncertainty(std::uint8_t typeCode);

/// 95 % bounds of an error.
struct Accuracy {
    std::optional<double> horizontal; ///< m, or m/s of a velocity; none if unknown or unbounded
    std::optional<double> vertical;   ///< the same; none where the standard gives none
};

/// Of a position by NUCp, in m. Source: RTCA DO-260, 2.2.3.2.3.1.
TREVALLO_AIRSPACE_EXPORT Accuracy accuracyOfNucP(std::uint8_t nucP);

/// Of a position by NACp, in m; version 1 bounds the height, too. Source: RTCA DO-260A and DO-260B, 2.2.3.2.7.2.7.
TREVALLO_AIRSPACE_EXPORT Accuracy accuracyOfNacP(std::uint8_t nacP, std::uint8_t version);

/// Of a velocity by NACv, or by NUCr of version 0, in m/s; versions 0 and 1 bound the vertical rate, too.
/// Source: RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.6.1.5.
TREVALLO_AIRSPACE_EXPORT Accuracy accuracyOfNacV(std::uint8_t nacV, std::uint8_t version);

/// Of a geometric height by GVA, in m. Source: RTCA DO-260B, 2.2.3.2.7.2.8.
TREVALLO_AIRSPACE_EXPORT std::optional<double> accuracyOfGva(std::uint8_t gva);

/// What a probability is counted by.
enum class SilBasis : std::uint8_t {
    Unknown, ///< version 1: hour or operation, which is not told
    Hour,    ///< of flight
    Sample,  ///< of the position
};

/// Source integrity level: how likely the position is outside its containment radius without a warning.
struct SourceIntegrity {
    std::optional<double> probability;  ///< at most; none for level 0: unknown or above 1e-3
    SilBasis basis = SilBasis::Unknown; ///< per what
};

/// The level 0 to 3 as a probability; `supplement` is bit 55 of the operational status or bit 8 of the target state of
/// version 2: 0 per hour, 1 per sample. None if not heard.
/// Source: RTCA DO-260A and DO-260B, 2.2.3.2.7.2.9; DO-260B, 2.2.3.2.7.2.14.
TREVALLO_AIRSPACE_EXPORT SourceIntegrity sourceIntegrity(
    std::uint8_t sil, std::uint8_t version, std::optional<bool> supplement = {});

/// System design assurance: the probability of an undetected fault per hour, at most, by SDA 1 to 3; none for 0:
/// unknown or above 1e-3. Source: RTCA DO-260B, 2.2.3.2.7.2.4.6.
TREVALLO_AIRSPACE_EXPORT std::optional<double> faultProbabilityOfSda(std::uint8_t sda);

} // namespace quorvel::airspace
