// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/frame_summary.h"
#include "inspect/named_value.h"
#include <airspace/core_sky.h>
#include <airspace/place.h>
#include <modes/adsb_decoder.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvel::inspect {

using Versions = std::vector<modes::MOPSVersion>;

/// The one that was asked for, else all whose messages the library knows.
Versions versionsOf(std::optional<unsigned> version);

/// One field of a frame.
struct FieldView {
    std::string name;    ///< its designator: "AA"
    std::string title;   ///< "Address announced"
    unsigned firstBit;   ///< in the frame, counted from 1
    unsigned width;      ///< bits
    std::string raw;     ///< its bits as hexadecimal digits
    std::string text;    ///< its value as the library writes it
    std::string meaning; ///< what the value means, where the text does not say it
    Versions versions{}; ///< of a payload: the versions whose message has it

    bool operator==(FieldView const&) const = default;
};

/// What a payload says for those versions that read it the same way.
struct PayloadReading {
    Versions versions;
    std::string description; ///< the library's
    std::vector<FieldView> fields;
};

/// The ADS-B payload of an extended squitter.
struct PayloadView {
    unsigned typeCode;
    std::string typeName;                 ///< "POS_AIR"
    std::string typeTitle;                ///< "Airborne Position"
    std::vector<PayloadReading> readings; ///< for each of the versions asked for that can read it
    Versions unread;                      ///< the others
};

/// Everything that the library says about one frame.
struct Dissection : FrameSummary {
    std::string description; ///< the library's
    std::vector<FieldView> fields;
    std::optional<PayloadView> payload;
    std::optional<airspace::Place> position; ///< from this frame and one before it
    NamedValues values; ///< what the library reads, by the names of the standards' values; of the latest version
};

/// Takes frames apart. It remembers earlier frames, as a receiver's decoder does: they decide how far an address can be
/// trusted, and pairs of them make positions.
class Dissector {
public:
    /// Payloads are read as these versions mean them.
    explicit Dissector(Versions versions);

    /// `time` is when the frame was received, 0 when that is not known.
    Dissection dissect(std::string const& bytes, airspace::TimeMs time = 0);

private:
    PayloadView readPayload(std::string const& frame, std::uint8_t typeCode, NamedValues& values) const;
    std::optional<airspace::Place> positionOf(airspace::Reply const& reply) const;
    void dropSilent();

    Versions _versions;
    airspace::CoreSky _sky;
    modes::ADSBDecoder _payloadDecoder;
    airspace::TimeMs _now = 0;
    airspace::TimeMs _lastDrop = 0;
};

/// The fields ordered by position, with one named "-" for the bits from `firstBit` to `lastBit` between them
/// that no field covers.
std::vector<FieldView> withGaps(
    std::vector<FieldView> fields, std::string const& frame, unsigned firstBit, unsigned lastBit);

/// The fields of all readings of a payload, each once, with the versions that have it.
std::vector<FieldView> mergedFields(PayloadView const& payload);

/// The parity of a frame of a format with what is laid over it; none of one that is too short or too long.
std::optional<ParityView> parityOf(std::string const& bytes, unsigned format, airspace::Overlay overlay);

/// Why a frame cannot be believed, by the standards; empty when it can.
std::string problemOf(std::string const& bytes, airspace::Reply const& reply);

/// Whether the remainder of an all-call reply's parity is an interrogator's identifier.
bool isInterrogator(unsigned remainder);

/// The position of the payload in an extended squitter.
inline constexpr unsigned kPayloadFirstBit = 33;
inline constexpr unsigned kPayloadLastBit = 88;

/// "none", "low", "medium" or "high".
std::string nameOf(modes::ModeSMessage::Confidence confidence);

} // namespace quorvel::inspect
