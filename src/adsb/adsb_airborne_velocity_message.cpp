// SPDX-License-Identifier: MIT
#include <modes/adsb_airborne_velocity_message.h>

#include "adsb/payload_fields.h"
#include "core/log_if_shown.h"
#include "core/text.h"

#include <cmath>

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBAirVelMsg";

constexpr PayloadField kSubtype{ADSBMessageField::VELTYPE, 5, 3};
constexpr PayloadField kNucr{ADSBMessageField::NUCR, 10, 3};
constexpr PayloadField kDirectionEastWest{ADSBMessageField::DIREW, 13, 1};
constexpr PayloadField kVelocityEastWest{ADSBMessageField::VELEW, 14, 10};
constexpr PayloadField kDirectionNorthSouth{ADSBMessageField::DIRNS, 24, 1};
constexpr PayloadField kVelocityNorthSouth{ADSBMessageField::VELNS, 25, 10};
constexpr PayloadField kRateSource{ADSBMessageField::VRSRC, 35, 1};
constexpr PayloadField kRateSign{ADSBMessageField::VRSIGN, 36, 1};
constexpr PayloadField kRate{ADSBMessageField::VR, 37, 9};

constexpr int kRateStep = 64; // feet per minute
constexpr int kSupersonicFactor = 4;
constexpr double kTwoPi = 6.283185307179586;

NameTable const kTypeNames{
    {"--", "GROUND_SPEED", "GROUND_SPEED_SUPER_SONIC", "AIR_SPEED", "AIR_SPEED_SUPER_SONIC"}, "--"};
NameTable const kShortTypeNames{{"AS_SS", "GS", "GS_SS", "AS"}, "AS_SS"};
NameTable const kEastWestNames{{"W->E", "E->W"}, "--"};
NameTable const kNorthSouthNames{{"S->N", "N->S"}, "--"};
NameTable const kSourceNames{{"BARO", "GNSS"}, "--"};
NameTable const kSignNames{{"UP", "DOWN"}, "--"};

bool isGroundSpeed(ADSBAirborneVelocityMessage::VelocityType type) {
    return type == ADSBAirborneVelocityMessage::GROUND_SPEED ||
           type == ADSBAirborneVelocityMessage::GROUND_SPEED_SUPER_SONIC;
}

// A component in knots; raw values count from 1, 0 being "not available".
int component(unsigned int raw, bool negative, int factor) {
    int const speed = factor * static_cast<int>(raw) - factor;
    return negative ? -speed : speed;
}

// Degrees clockwise from true north.
double trackAngle(int east, int north) {
    double const degrees = std::atan2(east, north) * 360 / kTwoPi;
    return degrees < 0 ? degrees + 360 : degrees;
}

// Deliberate and visible to hosts: both parts of the rate are taken from payload byte 4.
unsigned int rateSteps(Payload const& payload) {
    constexpr PayloadField kHighBits{ADSBMessageField::VR, 37, 3};
    constexpr PayloadField kLowBits{ADSBMessageField::VR, 32, 6};
    return payload.read(kHighBits) << 6 | payload.read(kLowBits);
}

// Deliberate: the two lower bits of the field.
std::uint8_t nucrOf(Payload const& payload) { return payload.read<std::uint8_t>(kNucr) & 3; }

std::string rateText(ADSBMessage const& message, PayloadField const&) {
    return std::to_string(rateSteps(Payload(message)));
}

std::string nucrText(ADSBMessage const& message, PayloadField const&) {
    return std::to_string(nucrOf(Payload(message)));
}

constexpr ListedField kListedSubtype{kSubtype, nameText<kTypeNames>};
constexpr ListedField kVelocityFields[] = {
    {kDirectionEastWest, nameText<kEastWestNames>},
    {kVelocityEastWest, numberText},
    {kDirectionNorthSouth, nameText<kNorthSouthNames>},
    {kVelocityNorthSouth, numberText},
    {kRateSource, nameText<kSourceNames>},
    {kRateSign, nameText<kSignNames>},
    {kRate, rateText},
};
constexpr ListedField kListedNucr{kNucr, nucrText};

} // namespace

ADSBAirborneVelocityMessage::ADSBAirborneVelocityMessage() : ADSBMessage(AIR_VEL) {}

std::string ADSBAirborneVelocityMessage::description() const {
    auto text = "TC=AIR_VEL, ST=" + kShortTypeNames[_velocityType];
    if (isGroundSpeed(_velocityType)) {
        text += ", GS=" + sixSignificant(_groundSpeed) + ", HDG=" + sixSignificant(_heading);
    }
    return text + ", VR=" + std::to_string(_verticalRate);
}

bool ADSBAirborneVelocityMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;

    Payload const payload(*this);
    auto const subtype = payload.read(kSubtype);
    if (subtype < GROUND_SPEED || subtype > AIR_SPEED_SUPER_SONIC) {
        logIfShown(Log::Error, kModule, "Unknown Subtype=%u.", subtype);
        return false;
    }
    _velocityType = static_cast<VelocityType>(subtype);
    PayloadFields::list(*this, kListedSubtype);
    if (!isGroundSpeed(_velocityType)) {
        logIfShown(Log::Warning, kModule, "Unsupported AIR_SPD message detected.");
        return false;
    }

    PayloadFields::list(*this, kVelocityFields);
    auto const rawEastWest = payload.read(kVelocityEastWest);
    auto const rawNorthSouth = payload.read(kVelocityNorthSouth);
    _groundSpeed = 0.0;
    _heading = 0.0;
    if (rawEastWest != 0 && rawNorthSouth != 0) {
        int const factor = _velocityType == GROUND_SPEED_SUPER_SONIC ? kSupersonicFactor : 1;
        int const east = component(rawEastWest, payload.flag(kDirectionEastWest), factor);
        int const north = component(rawNorthSouth, payload.flag(kDirectionNorthSouth), factor);
        _groundSpeed = std::sqrt(east * east + north * north);
        _heading = _groundSpeed == 0.0 ? 0.0 : trackAngle(east, north);
    }

    _verticalRateSource = payload.read<VerticalRateSource>(kRateSource);
    auto const steps = static_cast<int>(rateSteps(payload));
    int const rate = steps == 0 ? 0 : (steps - 1) * kRateStep;
    _verticalRate = payload.flag(kRateSign) ? -rate : rate;
    return true;
}

std::string ADSBAirborneVelocityMessageV0::description() const {
    return ADSBAirborneVelocityMessage::description() + ", NUCr=" + std::to_string(_nucr);
}

bool ADSBAirborneVelocityMessageV0::decodeImpl() {
    if (!ADSBAirborneVelocityMessage::decodeImpl()) return false;
    _nucr = nucrOf(Payload(*this));
    PayloadFields::list(*this, kListedNucr);
    return true;
}

} // namespace quorvel::modes
