// SPDX-License-Identifier: MIT
// ME payloads through the decoder for every version, and directly through every message class: each value
// lies in its documented range, each text is made, fields are sorted and say what the payload's bits say.
//
// Input: the payload.
#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_decoder.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target_status_message.h>
#include <modes/adsb_test_message.h>

#include "harness/require.h"
#include "harness/target.h"

#include <algorithm>
#include <map>
#include <typeinfo>

namespace quorvel::fuzz {

namespace {

using namespace modes;

constexpr std::size_t kPayloadBytes = 7;
constexpr unsigned kLastVersion = MOPS_UNKNOWN + 1; // versions beyond the unknown one are as unknown
constexpr unsigned kLargestCoordinate = (1U << 17) - 1;

std::uint64_t bitsOf(std::string const& payload, unsigned position, unsigned width) {
    std::uint64_t all = 0;
    for (char const byte : payload) all = all << 8 | static_cast<unsigned char>(byte);
    return all >> (8 * kPayloadBytes - position - width) & ((1ULL << width) - 1);
}

// Values by class. A valid message has every value within these bounds.

void checkValues(ADSBIdentityMessage const& message) {
    static std::string const letters = "?ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789";
    requireWithin<unsigned>(message.emitterCategory(), 0, 7, "emitter category");
    require(message.callsign().size() == 8, "a callsign has 8 characters");
    require(message.callsign().find_first_not_of(letters) == std::string::npos,
        "a callsign has letters, digits, blanks and question marks");
}

template <class Position> void checkCoordinates(Position const& message) {
    requireWithin<unsigned>(message.cprFormat(), 0, 1, "CPR format");
    requireWithin<unsigned>(message.cprLatitude(), 0, kLargestCoordinate, "CPR latitude");
    requireWithin<unsigned>(message.cprLongitude(), 0, kLargestCoordinate, "CPR longitude");
}

void checkValues(ADSBSurfacePositionMessage const& message) {
    requireWithin<unsigned>(message.movementCode(), 0, 127, "movement code");
    require(message.movement() == (message.movementCode() >= 1 && message.movementCode() <= 124),
        "codes 1 to 124 are movement");
    requireWithin(message.groundSpeed(), 0.0, 175.0, "ground speed on the surface");
    requireWithin(message.heading(), 0.0, 127 * 2.8125, "ground track");
    require(message.headingValid() || message.heading() == 0.0, "no ground track is 0");
    checkCoordinates(message);
}

void checkValues(ADSBAirbornePositionMessage const& message) {
    requireWithin<unsigned>(message.altitudeSource(), 0, 1, "altitude source");
    auto const step = static_cast<int>(message.altResolution());
    require(step == 25 || step == 100, "altitudes have steps of 25 or 100 ft");
    requireWithin(message.altitude(), -1000, 2047 * step - 1000, "altitude");
    require((message.altitude() + 1000) % step == 0, "altitudes are whole steps");
    checkCoordinates(message);
}

void checkValues(ADSBAirborneVelocityMessage const& message) {
    requireWithin<unsigned>(message.velocityType(), 1, 2, "velocity type");
    bool const isSupersonic = message.velocityType() == ADSBAirborneVelocityMessage::GROUND_SPEED_SUPER_SONIC;
    requireWithin(message.groundSpeed(), 0.0, (isSupersonic ? 4 : 1) * 1446.0,
        "ground speed"); // 1022 * sqrt 2
    require(message.heading() >= 0.0 && message.heading() < 360.0, "a heading is below 360 degrees");
    requireWithin<unsigned>(message.verticalRateSource(), 0, 1, "vertical rate source");
    requireWithin(message.verticalRate(), -510 * 64, 510 * 64, "vertical rate");
    require(message.verticalRate() % 64 == 0, "vertical rates are whole steps");
    if (auto const* v0 = dynamic_cast<ADSBAirborneVelocityMessageV0 const*>(&message)) {
        requireWithin<unsigned>(v0->nucr(), 0, 3, "NUCr");
    }
}

void checkValues(ADSBAircraftStatusMessage const& message) {
    requireWithin<unsigned>(static_cast<unsigned>(message.subtype()), 0, 2, "subtype");
    requireWithin<unsigned>(static_cast<unsigned>(message.emergencyState()), 0, 7, "emergency state");
    if (auto const* v2 = dynamic_cast<ADSBAircraftStatusMessageV2 const*>(&message)) {
        requireWithin<unsigned>(v2->modeACode(), 0, 07777, "Mode A code");
        require(v2->modeAOctString().size() == 4, "a Mode A code has four digits");
    }
}

void checkValues(ADSBTargetStatusMessage const& message) {
    requireWithin<unsigned>(message.subtype(), 0, 1, "subtype");
    requireWithin<unsigned>(message.nacp(), 0, 15, "NACp");
    requireWithin<unsigned>(message.nicBaro(), 0, 1, "NICbaro");
    requireWithin<unsigned>(message.sil(), 0, 3, "SIL");
}

void checkValues(ADSBAircraftOperationalStatusMessage const& message) {
    requireWithin<unsigned>(message.versionNumber(), 1, 7, "version number");
    requireWithin<unsigned>(message.version(), MOPS_V1, MOPS_UNKNOWN, "version");
}

void checkValues(ADSBTestMessage const& message) {
    requireWithin<unsigned>(message.subtype(), 0, 7, "subtype");
    require(message.testData() == message.data().substr(1), "test data are all bytes but the first");
}

// Fields whose text is the number that their bits make, with how many these are; the others have names, units
// or a rule of their own.
std::map<ADSBMessageField::Designator, unsigned> const kNumberBits{
    {ADSBMessageField::TYPECODE, 5},
    {ADSBMessageField::EMTCAT, 3},
    {ADSBMessageField::MOVCODE, 7},
    {ADSBMessageField::HDGSTATE, 1},
    {ADSBMessageField::SAF, 1},
    {ADSBMessageField::NICB, 1},
    {ADSBMessageField::TMAP, 1},
    {ADSBMessageField::CPRLAT, 17},
    {ADSBMessageField::CPRLON, 17},
    {ADSBMessageField::VELEW, 10},
    {ADSBMessageField::VELNS, 10},
    {ADSBMessageField::TSTTYPE, 3},
    {ADSBMessageField::TGSTYPE, 2},
    {ADSBMessageField::NACP, 4},
    {ADSBMessageField::NICBARO, 1},
    {ADSBMessageField::SIL, 2},
    {ADSBMessageField::SILSUPP, 1},
    {ADSBMessageField::VERNUM, 3},
    {ADSBMessageField::NICA, 1},
};

void checkNumber(ADSBMessageField const& field, std::string const& payload) {
    auto const known = kNumberBits.find(field.designator());
    if (known == kNumberBits.end()) return;
    require(field.bits() == known->second, "a field has its width");
    auto const number = bitsOf(payload, field.pos(), field.bits());
    require(field.description() == std::to_string(number), "a field says what its bits say");
}

void checkFields(ADSBMessage const& message) {
    auto const fields = message.fields();
    require(std::is_sorted(fields.begin(), fields.end()), "fields are sorted by position");
    for (auto const& field : fields) {
        require(field.valid() && field.bits() > 0, "a listed field is valid");
        require(field.pos() + field.bits() <= 8 * static_cast<int>(kPayloadBytes), "a field lies in the payload");
        require(!field.name().empty() && field.name() != "--", "a field has a name");
        require(!field.fullName().empty() && !field.description().empty(), "a field has texts");
        checkNumber(field, message.data());
    }
}

template <class Message> void checkDecoded(Message const& message, std::string const& payload) {
    require(message.data() == payload.substr(0, kPayloadBytes), "a message holds its payload");
    require(message.dataHexString().size() == 2 * kPayloadBytes, "two digits for each byte");
    require(message.typeCode() == bitsOf(message.data(), 0, 5), "the type code is the first five bits");
    require(ADSBMessage::typeByCode(message.typeCode()) == message.type(), "a message is of its type");
    require(message.description().rfind("TC=", 0) == 0, "a message is described");
    checkFields(message);
}

// What the decoder has made of the payload.
using Decoded = std::vector<std::shared_ptr<ADSBMessage>>;

// Whether it is a message of exactly this class.
template <class Message> bool isOfClass(std::shared_ptr<ADSBMessage> const& message) {
    auto const* pointer = message.get();
    return pointer && typeid(*pointer) == typeid(Message);
}

// Decodes directly. Messages of the same class that the decoder made say the same.
template <class Message> void checkClass(std::string const& payload, Decoded const& decoded) {
    Message message;
    bool const valid = message.decode(payload);
    require(valid == message.valid(), "decoding says whether the message is valid");
    if (payload.size() < kPayloadBytes) {
        require(!valid && message.data().empty(), "a short payload changes nothing");
        return;
    }
    if (ADSBMessage::typeByCode(message.typeCode()) != message.type()) {
        require(!valid && message.fields().empty(), "another type's payload is not decoded");
        return;
    }
    checkDecoded(message, payload);
    if (valid) checkValues(message);
    for (auto const& other : decoded) {
        if (!isOfClass<Message>(other)) continue;
        require(
            valid && other->description() == message.description() && other->fields().size() == message.fields().size(),
            "the decoder's message is the same");
    }
}

template <class... Message> void checkClasses(std::string const& payload, Decoded const& decoded) {
    (checkClass<Message>(payload, decoded), ...);
}

Decoded decodeForAllVersions(std::string const& payload) {
    static ADSBDecoder const decoder;
    Decoded decoded;
    for (unsigned version = 0; version <= kLastVersion; ++version) {
        auto message = decoder.decode(static_cast<MOPSVersion>(version), payload);
        if (message) {
            require(message->valid(), "the decoder hands out valid messages only");
            checkDecoded(*message, payload);
        }
        decoded.push_back(std::move(message));
    }
    return decoded;
}

} // namespace

void runTarget(Input input) {
    auto const payload = input.rest();
    auto const decoded = decodeForAllVersions(payload);
    checkClasses<ADSBIdentityMessage, ADSBSurfacePositionMessage, ADSBAirbornePositionMessage,
        ADSBAirbornePositionMessageV0, ADSBAirbornePositionMessageV1, ADSBAirbornePositionMessageV2,
        ADSBAirborneVelocityMessage, ADSBAirborneVelocityMessageV0, ADSBAirborneVelocityMessageV1,
        ADSBAirborneVelocityMessageV2, ADSBAircraftStatusMessage, ADSBAircraftStatusMessageV0,
        ADSBAircraftStatusMessageV2, ADSBTargetStatusMessage, ADSBTargetStatusMessageV1, ADSBTargetStatusMessageV2,
        ADSBAircraftOperationalStatusMessage, ADSBTestMessage>(payload, decoded);
}

} // namespace quorvel::fuzz
