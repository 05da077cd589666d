// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/address.h>
#include <airspace/airspace_export.h>
#include <airspace/altitude_code.h>
#include <airspace/extended_squitter.h>
#include <airspace/frame.h>
#include <airspace/resolution_advisory.h>
#include <airspace/squawk.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

/// @file
/// What a Mode S frame says by the standards: ICAO Annex 10 Vol. IV, Doc 9871, RTCA DO-181 and DO-260, DO-260A,
/// DO-260B. Each frame is read by itself, as it stands: damage is shown by the parity remainder and changes nothing
/// else.

namespace quorvel::modes {
class ModeSMessage;
}

namespace quorvel::airspace {

/// What all messages have.
struct MessageHeader {
    std::uint8_t format = 0;                     ///< downlink format, 0 to 24
    AddressKind addressKind = AddressKind::None; ///< what the address is

    /// 24 bits; of formats 0, 4, 5, 16, 20, 21 and 24 the remainder, right if that frame is intact.
    std::uint32_t address = 0;

    /// Parity field XOR parity of the bits before it: 0, an address, or an interrogator's code (format 11) in an intact
    /// frame. Source: ICAO Annex 10 Vol. IV, 3.1.2.3.3.
    std::uint32_t remainder = 0;
};

/// Format 0: short air-air surveillance. Source: ICAO Annex 10 Vol. IV, 3.1.2.8.2.
struct ShortAirAirReply : MessageHeader {
    bool isOnGround = false;      ///< VS
    bool hasCrossLink = false;    ///< CC: answers with registers, in format 16
    std::uint8_t sensitivity = 0; ///< SL, 0 to 7: 0 no ACAS
    std::uint8_t reply = 0; ///< RI: 0 no ACAS, 2 to 4 its kind, 8 to 14 the maximum airspeed (see `airspeedOfReply`)
    AltitudeCode altitude;  ///< AC
};

/// Format 16: long air-air surveillance. Source: ICAO Annex 10 Vol. IV, 3.1.2.8.3 and 4.3.8.4.2.4.
struct LongAirAirReply : MessageHeader {
    bool isOnGround = false;          ///< VS
    std::uint8_t sensitivity = 0;     ///< SL, as of format 0
    std::uint8_t reply = 0;           ///< RI, as of format 0
    AltitudeCode altitude;            ///< AC
    std::array<std::uint8_t, 7> mv{}; ///< MV, as it stands

    /// Of an MV field that begins with 30 (hexadecimal). It has no place for a threat.
    std::optional<ResolutionAdvisory> advisory;
};

/// The highest true airspeed of an aircraft by its reply information 8 to 14.
/// Source: ICAO Annex 10 Vol. IV, 3.1.2.8.2.2.
struct MaximumAirspeed {
    std::optional<int> aboveKt;  ///< kt; none of code 9
    std::optional<int> atMostKt; ///< kt; none of code 14
};

/// The maximum airspeed of an RI code; none of codes that tell none: 0 to 8, and 15.
TREVALLO_AIRSPACE_EXPORT std::optional<MaximumAirspeed> airspeedOfReply(std::uint8_t reply);

/// Flight status. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.5.1.
struct FlightStatus {
    std::uint8_t code = 0; ///< 0 to 7; 6 and 7 are not assigned

    bool hasAlert() const { return code >= 2 && code <= 4; } ///< the Mode A code changed, or is an emergency's
    bool hasIdent() const { return code == 4 || code == 5; } ///< special position identification

    /// Whether it is on the ground; none of codes that leave it open.
    std::optional<bool> isOnGround() const { return code < 4 ? std::optional(code % 2 == 1) : std::nullopt; }
};

/// What formats 4, 5, 20 and 21 begin with. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.5.
struct SurveillanceHeader : MessageHeader {
    FlightStatus flightStatus;        ///< FS
    std::uint8_t downlinkRequest = 0; ///< DR, 0 to 31
    std::uint8_t utility = 0;         ///< UM: four bits of an interrogator's code, and two that say which reservation
};

/// Format 4: altitude. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.5.
struct AltitudeReply : SurveillanceHeader {
    AltitudeCode altitude; ///< AC
};

/// Format 5: Mode A code. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.7.
struct IdentityReply : SurveillanceHeader {
    Squawk squawk; ///< ID
};

/// Format 20: altitude, with a register. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.6.
struct CommBAltitudeReply : SurveillanceHeader {
    AltitudeCode altitude;            ///< AC
    std::array<std::uint8_t, 7> mb{}; ///< MB: a register, which is not named
};

/// Format 21: Mode A code, with a register. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.8.
struct CommBIdentityReply : SurveillanceHeader {
    Squawk squawk;                    ///< ID
    std::array<std::uint8_t, 7> mb{}; ///< MB: a register, which is not named
};

/// Capability of a transponder (CA). Source: ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.1.
struct Capability {
    std::uint8_t code = 0; ///< 0 to 7; 1 to 3 are reserved

    /// Whether it is on the ground: codes 4 and 5; none of codes that leave it open.
    std::optional<bool> isOnGround() const { return code == 4 || code == 5 ? std::optional(code == 4) : std::nullopt; }
};

/// Format 11: all-call reply. Source: ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.
struct AllCallReply : MessageHeader {
    Capability capability;          ///< CA
    bool isIntact = false;          ///< the remainder is an interrogator's code: below 80
    std::optional<std::uint8_t> ii; ///< interrogator identifier, 0 to 15 (code label 0); 0 of squitters
    std::optional<std::uint8_t> si; ///< surveillance identifier, 1 to 63 (code labels 1 to 4); 0 is not assigned
};

/// Formats 17 and 18: extended squitter. Source: ICAO Annex 10 Vol. IV, 3.1.2.8.6 and 3.1.2.8.7.
struct ExtendedSquitter : MessageHeader {
    std::optional<Capability> capability;             ///< CA, of format 17
    std::optional<std::uint8_t> controlField;         ///< CF, of format 18
    SquitterOrigin origin = SquitterOrigin::Aircraft; ///< by the control field
    std::optional<std::uint8_t> typeCode;             ///< none of control fields 3, 4 and 7
    std::optional<std::uint8_t> subtype;              ///< of type codes that have one
    SquitterContent content;                          ///< ME

    /// Whether it tells the kind of its address: what a ground station sends of some types has no ICAO/Mode A flag, and
    /// may be of an aircraft without ICAO address, whatever `addressKind` says. Source: RTCA DO-260B, 2.2.17.2 and 2.2.18.
    bool tellsAddressKind = true;

    bool isIntact() const { return remainder == 0; } ///< its parity is right
};

/// Format 19: military extended squitter. Source: ICAO Annex 10 Vol. IV, 3.1.2.8.8.
struct MilitarySquitter : MessageHeader {
    std::uint8_t application = 0; ///< AF: what follows is not public
};

/// Format 24: a segment of an extended length message. Source: ICAO Annex 10 Vol. IV, 3.1.2.7.3.
struct ExtendedLengthReply : MessageHeader {
    bool isAcknowledgement = false;    ///< KE: of an uplink message; else a segment of a downlink one
    std::uint8_t segment = 0;          ///< ND, 0 to 15
    std::array<std::uint8_t, 10> md{}; ///< MD, as it stands
};

/// A format that is not assigned.
struct OtherReply : MessageHeader {};

/// What a frame says; `std::monostate` of bytes that are no frame.
using Message =
    std::variant<std::monostate, ShortAirAirReply, AltitudeReply, IdentityReply, AllCallReply, LongAirAirReply,
        ExtendedSquitter, MilitarySquitter, CommBAltitudeReply, CommBIdentityReply, ExtendedLengthReply, OtherReply>;

/// Reads the bytes of a Mode S frame, first transmitted byte first: 7 of formats below 16, 14 of others, of which more
/// are not looked at. Fewer give `std::monostate`. Every content is read, intact or not.
TREVALLO_AIRSPACE_EXPORT Message read(std::string_view frame, Reading const& how = {});

/// The same of a frame; a Mode A/C reply gives `std::monostate`.
TREVALLO_AIRSPACE_EXPORT Message read(Frame const& frame, Reading const& how = {});

/// The same of the bytes of a core's message, which it need not have decoded.
TREVALLO_AIRSPACE_EXPORT Message read(modes::ModeSMessage const& message, Reading const& how = {});

/// What a message has in common with others; null of `std::monostate`. It lives as long as the message.
TREVALLO_AIRSPACE_EXPORT MessageHeader const* headerOf(Message const& message);

/// The seven bytes of MB of a Comm-B reply (formats 20 and 21), as a text that lives as long as the message; empty of
/// other messages.
inline std::string_view registerBytes(Message const& message) {
    auto const asText = [](std::array<std::uint8_t, 7> const& mb) {
        return std::string_view(reinterpret_cast<char const*>(mb.data()), mb.size());
    };
    if (auto const* const altitude = std::get_if<CommBAltitudeReply>(&message)) return asText(altitude->mb);
    if (auto const* const identity = std::get_if<CommBIdentityReply>(&message)) return asText(identity->mb);
    return {};
}

} // namespace quorvel::airspace
