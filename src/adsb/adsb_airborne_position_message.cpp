// SPDX-License-Identifier: MIT
#include <modes/adsb_airborne_position_message.h>

#include "adsb/payload_fields.h"
#include "adsb/position_fields.h"

namespace quorvel::modes {

namespace {

constexpr PayloadField kSource{ADSBMessageField::ALTSRC, kTypeCodePosition, kTypeCodeWidth}; // given by the type code
constexpr PayloadField kResolution{ADSBMessageField::ALTRES, 15, 1};                         // the Q bit
constexpr PayloadField kAltitude{ADSBMessageField::ALT, 8, 12};
constexpr PayloadField kSingleAntenna{ADSBMessageField::SAF, 7, 1};
constexpr PayloadField kNicSupplementB{ADSBMessageField::NICB, 7, 1};

constexpr std::uint8_t kFirstGnssTypeCode = 20;

NameTable const kSourceNames{{"BARO", "GNSS"}, "GNSS"};
NameTable const kResolutionNames{{"100FT", "25FT"}, "--"}; // by the Q bit

ADSBAirbornePositionMessage::AltitudeSource altitudeSourceOf(std::uint8_t typeCode) {
    return typeCode < kFirstGnssTypeCode ? ADSBAirbornePositionMessage::BARO : ADSBAirbornePositionMessage::GNSS;
}

unsigned int resolutionOf(Payload const& payload) { return payload.flag(kResolution) ? 25 : 100; }

// Deliberate and visible to hosts: the low four bits come from the last payload byte, where the standard puts
// the end of the longitude.
int altitudeOf(Payload const& payload) {
    constexpr PayloadField kHighBits{ADSBMessageField::ALT, 8, 7};
    constexpr PayloadField kLowBits{ADSBMessageField::ALT, 48, 4};
    auto const steps = payload.read(kHighBits) << 4 | payload.read(kLowBits);
    return static_cast<int>(steps * resolutionOf(payload)) - 1000;
}

std::string sourceText(ADSBMessage const& message, PayloadField const&) {
    return kSourceNames[altitudeSourceOf(message.typeCode())];
}

std::string altitudeText(ADSBMessage const& message, PayloadField const&) {
    return std::to_string(altitudeOf(Payload(message))) + "FT";
}

constexpr ListedField kAltitudeFields[] = {
    {kSource, sourceText},
    {kResolution, nameText<kResolutionNames>},
    {kAltitude, altitudeText},
};
constexpr ListedField kListedSingleAntenna{kSingleAntenna, numberText};
constexpr ListedField kListedNicSupplementB{kNicSupplementB, numberText};

} // namespace

ADSBAirbornePositionMessage::ADSBAirbornePositionMessage() : ADSBMessage(POS_AIR) {}

std::string ADSBAirbornePositionMessage::description() const {
    return "TC=POS_AIR, AT=" + kSourceNames[_altitudeSource] + ", ALT=" + std::to_string(_altitude) +
           positionText(_cprFormat, _cprLatitude, _cprLongitude);
}

bool ADSBAirbornePositionMessage::decodeImpl() {
    if (!hasPayload(*this) || typeByCode(typeCode()) != POS_AIR) return false;

    Payload const payload(*this);
    _altitudeSource = altitudeSourceOf(typeCode());
    _altResolution = resolutionOf(payload);
    _altitude = altitudeOf(payload);
    PayloadFields::list(*this, kAltitudeFields);

    auto const position = readPositionFields(payload);
    _timeApplicability = position.timeApplicability;
    _cprFormat = position.cprFormat;
    _cprLatitude = position.cprLatitude;
    _cprLongitude = position.cprLongitude;
    listPositionFields(*this);
    return true;
}

bool ADSBAirbornePositionMessageV0::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) return false;
    _singalAntena = Payload(*this).flag(kSingleAntenna);
    PayloadFields::list(*this, kListedSingleAntenna);
    return true;
}

bool ADSBAirbornePositionMessageV1::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) return false;
    _singalAntena = Payload(*this).flag(kSingleAntenna);
    PayloadFields::list(*this, kListedSingleAntenna);
    return true;
}

bool ADSBAirbornePositionMessageV2::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) return false;
    _nicSupplementB = Payload(*this).flag(kNicSupplementB);
    PayloadFields::list(*this, kListedNicSupplementB);
    return true;
}

} // namespace quorvel::modes
