// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/altitude_code.h>
#include <airspace/callsign.h>
#include <airspace/compact_position.h>
#include <airspace/emitter_category.h>
#include <airspace/operational_status.h>
#include <airspace/resolution_advisory.h>
#include <airspace/squawk.h>
#include <airspace/target_state.h>
#include <airspace/velocity.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

/// @file
/// The contents of extended squitters: the 56-bit field ME of formats 17 and 18. Bits are counted from 1, as in the
/// standards. Most need no more than themselves; what the version of the transmitter decides is said at the field.

namespace quorvel::airspace {

/// Who made a message. It decides what some bits of it mean.
enum class SquitterOrigin : std::uint8_t {
    Aircraft,    ///< itself (ADS-B): format 17, and 18 with control field 0 or 1
    TisB,        ///< a ground station, from its own picture: control fields 2 and 5
    Rebroadcast, ///< a ground station repeats it (ADS-R): control field 6
};

/// What is asked of a reading beyond the bytes.
struct Reading {
    /// The version of the aircraft's transmitter, from its operational status. With it, messages that the version does
    /// not have are `UnreadSquitter`, and speeds on the ground have its bounds; without it, each message is read in the
    /// only way, or the most common one, that there is. 3 and above are read as 2.
    std::optional<std::uint8_t> version;
};

/// Surveillance status. Source: RTCA DO-260B, 2.2.3.2.3.2.
enum class SurveillanceStatus : std::uint8_t {
    NoCondition,    ///< nothing
    PermanentAlert, ///< an emergency code
    TemporaryAlert, ///< the Mode A code changed
    Ident,          ///< special position identification
};

/// What a height is measured from.
enum class AltitudeType : std::uint8_t {
    Barometric, ///< the pressure level of 1013.25 hPa
    Gnss,       ///< the ellipsoid of WGS 84
};

/// Type code 0: no position. Source: RTCA DO-260B, 2.2.3.2.3.1.3.
struct NoPosition {
    SurveillanceStatus surveillanceStatus = SurveillanceStatus::NoCondition; ///< ME 6 and 7
    AltitudeCode altitude;                                                   ///< ME 9 to 20, barometric
};

/// Type codes 9 to 18 and 20 to 22, register 0,5: airborne position. Source: RTCA DO-260B, 2.2.3.2.3.
struct AirbornePosition {
    SurveillanceStatus surveillanceStatus = SurveillanceStatus::NoCondition; ///< ME 6 and 7

    /// ME 8: of an aircraft itself NIC supplement B in version 2, a single antenna in versions 0 and 1; of a ground
    /// station, that the address is none of ICAO.
    bool nicSupplementB = false;

    AltitudeType altitudeType = AltitudeType::Barometric; ///< by type code: Gnss from 20 on
    AltitudeCode altitude;                                ///< ME 9 to 20
    bool isTimeSynchronized = false;                      ///< ME 21: position of a whole fifth of a second of UTC
    CompactPosition position;                             ///< ME 22 to 56

    /// Whether it has one antenna only, which versions 0 and 1 say here and version 2 in its operational status.
    std::optional<bool> hasSingleAntenna(std::uint8_t version) const {
        if (version >= 2) return std::nullopt;
        return nicSupplementB;
    }
};

/// The range that a code of the speed on the ground stands for.
struct SpeedRange {
    double lowerKt = 0.0;          ///< kt
    std::optional<double> upperKt; ///< kt; none of the highest code
};

/// The range of movement codes 1 to 124; none of the others: no information, or reserved. Versions 0 and 1 count the
/// lower bound in and the upper one out, version 2 the other way, with other steps below 1 kt.
/// Source: RTCA DO-260 and DO-260B, 2.2.3.2.4.2.
TREVALLO_AIRSPACE_EXPORT std::optional<SpeedRange> speedOfMovement(std::uint8_t movement, std::uint8_t version = 0);

/// Type codes 5 to 8, register 0,6: surface position. Source: RTCA DO-260B, 2.2.3.2.4.
struct SurfacePosition {
    std::uint8_t movement = 0;          ///< ME 6 to 12, as it stands
    std::optional<SpeedRange> speed;    ///< of the movement; without a version, as version 0
    std::optional<double> trackDegrees; ///< ME 14 to 20, if ME 13 is 1: 0 up to 360, steps of 360/128; may be a heading

    /// ME 21: position of a whole fifth of a second of UTC; of a ground station, that the address is none of ICAO.
    bool isTimeSynchronized = false;

    CompactPosition position; ///< ME 22 to 56
};

/// Type codes 1 to 4, register 0,8: identification. Source: RTCA DO-260B, 2.2.3.2.5.
struct Identification {
    EmitterCategory category; ///< ME 1 to 8
    Callsign callsign;        ///< ME 9 to 56
};

/// Emergencies. Source: RTCA DO-260B, 2.2.3.2.7.8.1.1.
enum class EmergencyState : std::uint8_t {
    None,                 ///< no emergency
    General,              ///< general emergency
    Medical,              ///< lifeguard, or medical
    MinimumFuel,          ///< minimum fuel
    NoCommunications,     ///< no communications
    UnlawfulInterference, ///< unlawful interference
    DownedAircraft,       ///< down; reserved in version 0
    Reserved,             ///< not assigned
};

/// Type code 28 subtype 1, register 6,1: emergency or priority. Source: RTCA DO-260B, 2.2.3.2.7.8.1.
struct EmergencyStatus {
    EmergencyState emergency = EmergencyState::None; ///< ME 9 to 11
    Squawk squawk;                                   ///< ME 12 to 24
};

/// Type code 28 subtype 2, since version 2: an advisory of collision avoidance. Source: RTCA DO-260B, 2.2.3.2.7.8.2.
struct AdvisoryBroadcast {
    ResolutionAdvisory advisory; ///< ME 9 to 56
};

/// Type code 23 subtype 7, version 1: the Mode A code. Source: RTCA DO-260A, 2.2.3.2.7.3.
struct TestMessage {
    Squawk squawk; ///< ME 9 to 21
};

/// Format 18 with control field 3: a ground station's coarse position. Source: RTCA DO-260B, 2.2.17.3.5.
struct CoarsePosition {
    SurveillanceStatus surveillanceStatus = SurveillanceStatus::NoCondition; ///< ME 2 and 3
    std::uint8_t serviceVolume = 0;                                          ///< ME 4 to 7
    AltitudeCode altitude;                                                   ///< ME 8 to 19, barometric
    std::optional<double> trackDegrees;    ///< ME 21 to 25, with ME 20: 0 up to 360, steps of 360/32
    std::optional<SpeedRange> groundSpeed; ///< ME 26 to 31: steps of 32 kt
    bool isOdd = false;                    ///< ME 32: format of the compact position
    std::uint16_t latitude = 0;            ///< ME 33 to 44: 12 bits of a compact position
    std::uint16_t longitude = 0;           ///< ME 45 to 56: 12 bits
};

/// Format 18 with control field 4: ground stations manage their services. Source: RTCA DO-260B, 2.2.17.2.3.2.
struct GroundStationManagement {
    std::array<std::uint8_t, 7> me{}; ///< as it stands
};

/// A message that is not read: of a type or subtype that is reserved, for tests, or without public contents.
struct UnreadSquitter {
    std::array<std::uint8_t, 7> me{}; ///< as it stands
};

/// What an extended squitter says.
using SquitterContent = std::variant<UnreadSquitter, NoPosition, AirbornePosition, SurfacePosition, Identification,
    AirborneVelocity, TisBVelocity, EmergencyStatus, AdvisoryBroadcast, TargetState, TargetStateVersion1,
    OperationalStatus, TestMessage, CoarsePosition, GroundStationManagement>;

/// Reads the seven bytes of ME that begin with a type code. Bytes of another number give an `UnreadSquitter`.
TREVALLO_AIRSPACE_EXPORT SquitterContent readSquitterContent(
    std::string_view me, SquitterOrigin origin = SquitterOrigin::Aircraft, Reading const& how = {});

/// Reads the seven bytes of ME of a coarse position, which has no type code.
TREVALLO_AIRSPACE_EXPORT CoarsePosition readCoarsePosition(std::string_view me);

/// The register that messages of a type code come from, as 0x05 for 0,5; none of type codes without one.
/// Source: ICAO Doc 9871, A.2.3.
TREVALLO_AIRSPACE_EXPORT std::optional<std::uint8_t> registerOfTypeCode(std::uint8_t typeCode);

/// The subtype of a message: ME 6 to 8 of type codes 19, 23, 28 and 31, ME 6 and 7 of 29, none of others. `me` has at
/// least one byte.
TREVALLO_AIRSPACE_EXPORT std::optional<std::uint8_t> subtypeOf(std::string_view me);

/// What a type code, 0 to 31, is called: "airborne velocity", "trajectory change". "reserved" for others.
/// Source: RTCA DO-260B, 2.2.3.2.
TREVALLO_AIRSPACE_EXPORT std::string_view nameOfTypeCode(std::uint8_t typeCode);

} // namespace quorvel::airspace
