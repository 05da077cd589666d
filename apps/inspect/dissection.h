// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_decoder.h>
#include <modes/adsb_tracker.h>
#include <modes/modes_decoder.h>

#include "host/frame.h"

#include <optional>
#include <string>
#include <vector>

namespace quorvel::host {

using Versions = std::vector<modes::MOPSVersion>;

/// One field of a frame.
struct FieldView {
    std::string name;    ///< its designator: "AA"
    std::string title;   ///< "Address announced"
    unsigned firstBit;   ///< in the frame, counted from 1
    unsigned width;      ///< bits
    std::string raw;     ///< its bits as hexadecimal digits
    std::string text;    ///< its value as the library words it
    std::string meaning; ///< what the value says, where the text does not speak for itself
    Versions versions{}; ///< of a payload: the versions whose message has it

    bool operator==(FieldView const&) const = default;
};

/// What a payload says to transmitters' versions that mean the same by it.
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

struct ParityView {
    unsigned field;      ///< the last 24 bits as received
    unsigned calculated; ///< from the bits before
    unsigned remainder() const { return field ^ calculated; }
    std::string meaning;
};

struct PositionView {
    double latitude;
    double longitude;
};

/// Everything about one frame.
struct Dissection {
    std::string received;               ///< the bytes as received
    std::string bytes;                  ///< as they were decoded: repaired where that was possible
    std::vector<unsigned> repairedBits; ///< counted from 1
    std::optional<unsigned> format;     ///< the downlink format; none for a Mode A/C reply
    std::string formatName;
    std::string problem; ///< why the library does not decode it; empty when it does
    std::optional<modes::ModeSMessage::Confidence> confidence;
    std::string description; ///< the library's
    std::optional<ParityView> parity;
    std::optional<unsigned> address;
    std::vector<FieldView> fields;
    std::optional<PayloadView> payload;
    std::optional<PositionView> position; ///< made of this frame and one before it
};

/// Takes frames apart. It remembers those before, as a receiver's decoder does: they tell how far an address
/// can be trusted, and make positions of pairs.
class Dissector {
public:
    /// Payloads are read as these versions mean them.
    explicit Dissector(Versions versions);

    /// `time` is when the frame was received, 0 when that is not known.
    Dissection dissect(std::string const& bytes, TimeMs time = 0);

private:
    std::optional<PayloadView> readPayload(std::string const& frame) const;
    std::optional<PositionView> track(std::shared_ptr<modes::ModeSMessage> const& message);
    void dropSilentTargets();

    Versions _versions;
    modes::ModeSDecoder _decoder;
    modes::ADSBDecoder _payloadDecoder;
    modes::ADSBTracker _tracker;
    TimeMs _now = 0;
    TimeMs _lastDrop = 0;
};

/// The fields ordered by position, with one named "-" for the bits from `firstBit` to `lastBit` between them
/// that no field covers.
std::vector<FieldView> withGaps(std::vector<FieldView> fields, std::string const& frame, unsigned firstBit,
                                unsigned lastBit);

/// The fields of all readings of a payload, each once, with the versions that have it.
std::vector<FieldView> mergedFields(PayloadView const& payload);

/// What is laid over the parity of a frame, by its format. Military extended squitters keep that to
/// themselves.
enum class Overlay { Nothing, Interrogator, Address, Unknown };
Overlay overlayOf(std::string const& frame);

/// Whether the remainder of an all-call reply's parity is an interrogator's identifier.
bool isInterrogator(unsigned remainder);

/// Whether a frame carries an ADS-B message: only some uses of the extended squitter do.
bool hasADSBPayload(std::string const& frame);

/// Where the payload of an extended squitter stands.
inline constexpr unsigned kPayloadFirstBit = 33;
inline constexpr unsigned kPayloadLastBit = 88;

/// "none", "low", "medium" or "high".
std::string nameOf(modes::ModeSMessage::Confidence confidence);

} // namespace quorvel::host
