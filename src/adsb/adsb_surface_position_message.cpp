// SPDX-License-Identifier: MIT
#include <modes/adsb_surface_position_message.h>

#include "adsb/payload_fields.h"
#include "adsb/position_fields.h"
#include "core/log_if_shown.h"
#include "core/text.h"

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBGndPosMsg";

constexpr PayloadField kMovementCode{ADSBMessageField::MOVCODE, 5, 7};
constexpr PayloadField kGroundSpeed{ADSBMessageField::GNDSPD, 5, 7};
constexpr PayloadField kHeadingState{ADSBMessageField::HDGSTATE, 12, 1};
constexpr PayloadField kHeading{ADSBMessageField::HDG, 13, 7};

// The speed of the first code and the step between codes, in knots (RTCA DO-260B, table 2-19). The first step
// is the interface's own constant, not 7/48.
struct MovementBand {
    unsigned int firstCode;
    unsigned int lastCode;
    double speed;
    double step;
};
constexpr MovementBand kMovement[] = {
    {2, 2, 0.125, 0.0},
    {3, 8, 0.125, 0.14583332},
    {9, 12, 1.0, 0.25},
    {13, 38, 2.0, 0.5},
    {39, 93, 15.0, 1.0},
    {94, 108, 70.0, 2.0},
    {109, 123, 100.0, 5.0},
    {124, 124, 175.0, 0.0},
};
constexpr unsigned int kLastMovementCode = 124;

// Knots; 0 for no information (0), stopped (1) and the reserved codes.
double movementSpeed(unsigned int code) {
    for (auto const& band : kMovement) {
        if (band.firstCode <= code && code <= band.lastCode) return (code - band.firstCode) * band.step + band.speed;
    }
    return 0.0;
}

double headingOf(Payload const& payload) {
    return payload.flag(kHeadingState) ? payload.read(kHeading) * 360 * 0.0078125 : 0.0;
}

std::string groundSpeedText(ADSBMessage const& message, PayloadField const&) {
    return fixedSix(movementSpeed(Payload(message).read(kMovementCode)));
}

std::string headingText(ADSBMessage const& message, PayloadField const&) {
    return fixedSix(headingOf(Payload(message)));
}

constexpr ListedField kMotionFields[] = {
    {kMovementCode, numberText},
    {kGroundSpeed, groundSpeedText},
    {kHeadingState, numberText},
    {kHeading, headingText},
};

} // namespace

ADSBSurfacePositionMessage::ADSBSurfacePositionMessage() : ADSBMessage(POS_GND) {}

std::string ADSBSurfacePositionMessage::description() const {
    return "TC=POS_GND, SPD=" + sixSignificant(_groundSpeed) + ", HDG=" + sixSignificant(_heading) +
           positionText(_cprFormat, _cprLatitude, _cprLongitude);
}

bool ADSBSurfacePositionMessage::decodeImpl() {
    if (!hasPayload(*this)) return false;

    Payload const payload(*this);
    _movementCode = payload.read<std::uint8_t>(kMovementCode);
    _movement = 1 <= _movementCode && _movementCode <= kLastMovementCode;
    if (_movementCode > kLastMovementCode) {
        logIfShown(Log::Error, kModule, "Reserved Movement Code: %u.", _movementCode);
    }
    _groundSpeed = movementSpeed(_movementCode);
    _headingValid = payload.flag(kHeadingState);
    _heading = headingOf(payload);
    PayloadFields::list(*this, kMotionFields);

    auto const position = readPositionFields(payload);
    _timeApplicability = position.timeApplicability;
    _cprFormat = position.cprFormat;
    _cprLatitude = position.cprLatitude;
    _cprLongitude = position.cprLongitude;
    listPositionFields(*this);
    return true;
}

} // namespace quorvel::modes
