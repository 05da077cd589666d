// SPDX-License-Identifier: MIT
#include <modes/adsb_airborne_position_message.h>

#include "adsb/payload_fields.h"
#include "adsb/position_fields.h"

namespace quorvel::modes {

namespace {

constexpr PayloadField kSource{ADSBMessageField::ALTSRC, kTypeCodePosition,
                               kTypeCodeWidth};                      // told by the type code
constexpr PayloadField kResolution{ADSBMessageField::ALTRES, 15, 1}; // the Q bit
constexpr PayloadField kAltitude{ADSBMessageField::ALT, 8, 12};
constexpr PayloadField kSingleAntenna{ADSBMessageField::SAF, 7, 1};
constexpr PayloadField kNicSupplementB{ADSBMessageField::NICB, 7, 1};

constexpr std::uint8_t kFirstGnssTypeCode = 20;

NameTable const kSourceNames{{"BARO", "GNSS"}, "GNSS"};
NameTable const kResolutionNames{{"100FT", "25FT"}, "--"}; // by the Q bit

// Deliberate and visible to hosts: the low four bits come from the last payload byte, where the standard puts
// the end of the longitude.
unsigned int altitudeSteps(ADSBMessage const& message) {
    constexpr PayloadField kHighBits{ADSBMessageField::ALT, 8, 7};
    constexpr PayloadField kLowBits{ADSBMessageField::ALT, 48, 4};
    return peekField(message, kHighBits) << 4 | peekField(message, kLowBits);
}

} // namespace

ADSBAirbornePositionMessage::ADSBAirbornePositionMessage() : ADSBMessage(POS_AIR) {}

std::string ADSBAirbornePositionMessage::description() const {
    return "TC=POS_AIR, AT=" + kSourceNames[_altitudeSource] + ", ALT=" + std::to_string(_altitude) +
           positionText(_cprFormat, _cprLatitude, _cprLongitude);
}

bool ADSBAirbornePositionMessage::decodeImpl() {
    if (!hasPayload(*this) || typeByCode(typeCode()) != POS_AIR) return false;

    _altitudeSource = typeCode() < kFirstGnssTypeCode ? BARO : GNSS;
    listField(*this, kSource, kSourceNames[_altitudeSource]);
    _altResolution = readNamed(*this, kResolution, kResolutionNames) != 0 ? 25 : 100;
    _altitude = static_cast<int>(altitudeSteps(*this) * _altResolution) - 1000;
    listField(*this, kAltitude, std::to_string(_altitude) + "FT");

    auto const position = readPositionFields(*this);
    _timeApplicability = position.timeApplicability;
    _cprFormat = position.cprFormat;
    _cprLatitude = position.cprLatitude;
    _cprLongitude = position.cprLongitude;
    return true;
}

bool ADSBAirbornePositionMessageV0::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) return false;
    _singalAntena = readFlag(*this, kSingleAntenna);
    return true;
}

bool ADSBAirbornePositionMessageV1::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) return false;
    _singalAntena = readFlag(*this, kSingleAntenna);
    return true;
}

bool ADSBAirbornePositionMessageV2::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) return false;
    _nicSupplementB = readFlag(*this, kNicSupplementB);
    return true;
}

} // namespace quorvel::modes
