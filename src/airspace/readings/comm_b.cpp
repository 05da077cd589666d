// SPDX-License-Identifier: MIT
#include <airspace/comm_b.h>

#include "airspace/readings/register_contents.h"
#include "airspace/readings/six_bit_text.h"

#include <algorithm>

namespace quorvel::airspace {

namespace {

constexpr double kAngleStep = 90.0 / 512; // of tracks and headings
constexpr double kRollStep = 45.0 / 256;
constexpr double kTrackRateStep = 8.0 / 256;
constexpr double kMachStep = 2.048 / 512;
constexpr double kTemperatureStep = 0.25;

template <class Value> std::optional<Value> scaled(std::optional<int> number, Value step) {
    if (!number) return std::nullopt;
    return static_cast<Value>(*number) * step;
}

// Directions come in two's complement of half a turn.
std::optional<double> direction(std::optional<int> number) {
    if (!number) return std::nullopt;
    return (*number < 0 ? *number + 2048 : *number) * kAngleStep;
}

template <class Code> std::optional<Code> codeIf(std::optional<int> number) {
    if (!number) return std::nullopt;
    return static_cast<Code>(*number);
}

} // namespace

DataLinkCapability readDataLinkCapability(RegisterBits const& mb) {
    DataLinkCapability capability;
    capability.hasContinuation = mb.flag(9);
    capability.hasOverlayCommand = mb.flag(15);
    capability.isAcasOperational = mb.flag(16);
    capability.subnetworkVersion = static_cast<std::uint8_t>(mb.number(17, 23));
    capability.isLevel5 = mb.flag(24);
    capability.hasSpecificServices = mb.flag(25);
    capability.uplinkThroughput = static_cast<std::uint8_t>(mb.number(26, 28));
    capability.downlinkThroughput = static_cast<std::uint8_t>(mb.number(29, 32));
    capability.hasIdentification = mb.flag(33);
    capability.hasSquitter = mb.flag(34);
    capability.hasSurveillanceIdentifier = mb.flag(35);
    capability.hasCommonUsageCapability = mb.flag(36);
    capability.hasHybridSurveillance = mb.flag(37);
    capability.hasResolutionAdvisories = mb.flag(38);
    capability.acasVersion = static_cast<std::uint8_t>(mb.number(40, 40) << 1 | mb.number(39, 39));
    capability.terminals = static_cast<std::uint16_t>(mb.number(41, 56));
    return capability;
}

CommonUsageCapability readCommonUsageCapability(RegisterBits const& mb) { return {mb.number(1, 29)}; }

AircraftIdentification readAircraftIdentification(RegisterBits const& mb) { return {sixBitText<8>(mb.value())}; }

AircraftRegistration readAircraftRegistration(RegisterBits const& mb) {
    AircraftRegistration registration;
    if (mb.flag(1)) registration.registration = sixBitText<7>(mb.value() >> 13);
    if (mb.flag(44)) registration.airline = sixBitText<2>(mb.value());
    return registration;
}

ActiveAdvisory readActiveAdvisory(RegisterBits const& mb) { return {readResolutionAdvisory(mb.bytes())}; }

SelectedIntention readSelectedIntention(RegisterBits const& mb) {
    SelectedIntention intention;
    intention.controlPanelAltitudeFt = scaled(mb.numberIf(1, 13), 16);
    intention.flightManagementAltitudeFt = scaled(mb.numberIf(14, 26), 16);
    if (auto const setting = mb.numberIf(27, 39)) intention.pressureSettingHpa = (8000 + *setting) / 10.0;
    if (mb.flag(48)) intention.modes = {mb.flag(49), mb.flag(50), mb.flag(51)};
    intention.targetAltitudeSource = codeIf<TargetAltitudeSource>(mb.numberIf(54, 56));
    return intention;
}

RoutineMeteorology readRoutineMeteorology(RegisterBits const& mb) {
    RoutineMeteorology weather;
    weather.figureOfMerit = static_cast<std::uint8_t>(mb.number(1, 4));
    if (mb.flag(5)) {
        weather.windSpeedKt = static_cast<int>(mb.number(6, 14));
        weather.windDirectionDegrees = mb.number(15, 23) * 180.0 / 256;
    }
    if (weather.figureOfMerit != 0) weather.staticAirTemperatureCelsius = mb.signedNumber(24, 34) * kTemperatureStep;
    weather.staticPressureHpa = mb.numberIf(35, 46);
    weather.turbulence = codeIf<Hazard>(mb.numberIf(47, 49));
    weather.humidityPercent = scaled(mb.numberIf(50, 56), 100.0 / 64);
    return weather;
}

HazardMeteorology readHazardMeteorology(RegisterBits const& mb) {
    HazardMeteorology weather;
    weather.turbulence = codeIf<Hazard>(mb.numberIf(1, 3));
    weather.windShear = codeIf<Hazard>(mb.numberIf(4, 6));
    weather.microburst = codeIf<Hazard>(mb.numberIf(7, 9));
    weather.icing = codeIf<Hazard>(mb.numberIf(10, 12));
    weather.wakeVortex = codeIf<Hazard>(mb.numberIf(13, 15));
    weather.staticAirTemperatureCelsius = scaled(mb.signedNumberIf(16, 26), kTemperatureStep);
    weather.staticPressureHpa = mb.numberIf(27, 38);
    weather.radioHeightFt = scaled(mb.numberIf(39, 51), 16);
    return weather;
}

TrackAndTurn readTrackAndTurn(RegisterBits const& mb) {
    TrackAndTurn state;
    state.rollDegrees = scaled(mb.signedNumberIf(1, 11), kRollStep);
    state.trueTrackDegrees = direction(mb.signedNumberIf(12, 23));
    state.groundSpeedKt = scaled(mb.numberIf(24, 34), 2);
    state.trackRateDegreesPerSecond = scaled(mb.signedNumberIf(35, 45), kTrackRateStep);
    state.trueAirspeedKt = scaled(mb.numberIf(46, 56), 2);
    return state;
}

AirReferencedState readAirReferencedState(RegisterBits const& mb) {
    AirReferencedState state;
    state.magneticHeadingDegrees = direction(mb.signedNumberIf(1, 12));
    state.indicatedAirspeedKt = mb.numberIf(13, 23);
    state.mach = scaled(mb.numberIf(24, 33), 2 * kMachStep);
    state.trueAirspeedKt = scaled(mb.numberIf(34, 46), 0.5);
    state.verticalRateFtMin = scaled(mb.signedNumberIf(47, 56), 64);
    return state;
}

HeadingAndSpeed readHeadingAndSpeed(RegisterBits const& mb) {
    HeadingAndSpeed state;
    state.magneticHeadingDegrees = direction(mb.signedNumberIf(1, 12));
    state.indicatedAirspeedKt = mb.numberIf(13, 23);
    state.mach = scaled(mb.numberIf(24, 34), kMachStep);
    state.barometricVerticalRateFtMin = scaled(mb.signedNumberIf(35, 45), 32);
    state.inertialVerticalRateFtMin = scaled(mb.signedNumberIf(46, 56), 32);
    return state;
}

namespace {

// What the flags of register 1,7 stand for, from MB 1 on; 0 where they are reserved.
constexpr int kFlags = 29;
constexpr std::array<std::uint8_t, kFlags> kServed{0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x20, 0x21, 0x40, 0x41, 0x42,
    0x43, 0x44, 0x45, 0x48, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x5F, 0x60, 0, 0, 0xE1, 0xE2, 0xF1};

} // namespace

bool CommonUsageCapability::serves(std::uint8_t number) const {
    auto const place = std::find(kServed.begin(), kServed.end(), number) - kServed.begin();
    return number != 0 && place < kFlags && (flags >> (kFlags - 1 - place) & 1) != 0;
}

RegisterNumbers CommonUsageCapability::served() const {
    RegisterNumbers served;
    for (int place = 0; place < kFlags; ++place) {
        auto const number = kServed[static_cast<std::size_t>(place)];
        if (number != 0 && (flags >> (kFlags - 1 - place) & 1) != 0) served.append(number);
    }
    return served;
}

RegisterContent readRegister(std::string_view bytes, Register number) {
    if (bytes.size() != RegisterBits::kBytes) return {};
    RegisterBits const mb(bytes);
    switch (number) {
    case Register::DataLinkCapability: return readDataLinkCapability(mb);
    case Register::CommonUsageCapability: return readCommonUsageCapability(mb);
    case Register::AircraftIdentification: return readAircraftIdentification(mb);
    case Register::AircraftRegistration: return readAircraftRegistration(mb);
    case Register::ActiveAdvisory: return readActiveAdvisory(mb);
    case Register::SelectedIntention: return readSelectedIntention(mb);
    case Register::RoutineMeteorology: return readRoutineMeteorology(mb);
    case Register::HazardMeteorology: return readHazardMeteorology(mb);
    case Register::TrackAndTurn: return readTrackAndTurn(mb);
    case Register::AirReferencedState: return readAirReferencedState(mb);
    case Register::HeadingAndSpeed: return readHeadingAndSpeed(mb);
    }
    return {};
}

} // namespace quorvel::airspace
