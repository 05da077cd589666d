// SPDX-License-Identifier: MIT
#include "simulate/register_payloads.h"

#include "simulate/signal_codes.h"
#include "simulate/squitter_payloads.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace quorvel::simulate {

namespace {

constexpr double kAngleStep = 90.0 / 512;
constexpr double kRateStep = 32.0; // feet per minute

// An angle up to a half turn to either side.
double withinHalfTurn(double degrees) { return degrees >= 180.0 ? degrees - 360.0 : degrees; }

// The lowest of the codes for the half turn is the one that both sides share.
double angleToSend(double degrees) {
    double const angle = withinHalfTurn(degrees);
    return angle > 180.0 - kAngleStep / 2 ? -180.0 : angle;
}

PayloadWriter dataLinkCapability(Aircraft const& aircraft, FlightState const&) {
    constexpr std::uint64_t kSubnetworkVersion = 3; // without the overlay command
    constexpr std::uint64_t kDO185A = 0b10;         // MB 39 is the low bit
    auto const& profile = aircraft.profile();
    bool const hasAcas = profile.capabilities.hasAcas;
    return PayloadWriter()
        .code(1, 8, 0x10)
        .flag(16, hasAcas)
        .code(17, 23, kSubnetworkVersion)
        .flag(33, true)
        .flag(34, profile.transmitter == Transmitter::Transponder)
        .flag(35, true)
        .flag(36, true)
        .flag(37, hasAcas)
        .flag(38, hasAcas)
        .code(39, 40, hasAcas ? kDO185A : 0);
}

// Those with a bit of their own, from 1 on; 0 where it is reserved.
constexpr std::array<unsigned, 24> kReported{0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x20, 0x21, 0x40, 0x41, 0x42, 0x43,
    0x44, 0x45, 0x48, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x5F, 0x60};

PayloadWriter commonUsageCapability(Aircraft const& aircraft, FlightState const&) {
    constexpr std::array<unsigned, 4> kSquitters{0x05, 0x06, 0x08, 0x09};
    auto const& profile = aircraft.profile();
    bool const squitters = profile.transmitter == Transmitter::Transponder;
    auto const holds = [](auto const& registers, unsigned number) {
        return std::find(std::begin(registers), std::end(registers), number) != std::end(registers);
    };
    PayloadWriter payload;
    for (unsigned i = 0; i < kReported.size(); ++i) {
        bool const isServed = holds(profile.registers, kReported[i]) || (squitters && holds(kSquitters, kReported[i]));
        payload.flag(i + 1, isServed);
    }
    return payload;
}

PayloadWriter identification(Aircraft const& aircraft, FlightState const&) {
    return PayloadWriter().code(1, 8, 0x20).code(9, 56, characterCodes(aircraft.callsign(), 8));
}

PayloadWriter registration(Aircraft const& aircraft, FlightState const&) {
    return PayloadWriter().flag(1, true).code(2, 43, characterCodes(aircraft.profile().registration, 7));
}

PayloadWriter selectedIntention(Aircraft const& aircraft, FlightState const& state) {
    PayloadWriter payload;
    auto const& selection = aircraft.profile().selection;
    if (!selection) return payload;
    constexpr std::uint64_t kByControlPanel = 2;
    constexpr std::uint64_t kByFlightManagement = 3;
    payload.steps(1, 13, selection->altitude, 16.0).steps(27, 39, state.pressureSetting - 800.0, 0.1);
    if (selection->isFlightManagement) payload.steps(14, 26, selection->altitude, 16.0);
    if (!selection->isAutopilot) return payload;
    return payload.flag(48, true)
        .flag(49, selection->isVnav)
        .flag(50, selection->isAltitudeHold)
        .flag(51, selection->isApproach)
        .flag(54, true)
        .code(55, 56, selection->isFlightManagement ? kByFlightManagement : kByControlPanel);
}

PayloadWriter routineMeteorology(Aircraft const& aircraft, FlightState const& state) {
    constexpr std::uint64_t kBySatelliteNavigation = 2;
    auto const& weather = aircraft.profile().weather;
    return PayloadWriter()
        .code(1, 4, kBySatelliteNavigation)
        .flag(5, true)
        .code(6, 14, static_cast<std::uint64_t>(std::lround(state.windSpeed)))
        .code(15, 23, static_cast<std::uint64_t>(std::lround(state.windDirection * 256.0 / 180.0)))
        .code(24, 34, static_cast<std::uint64_t>(std::llround(state.temperature / 0.25)))
        .steps(35, 46, state.pressure, 1.0)
        .steps(47, 49, weather.turbulence, 1.0)
        .steps(50, 56, weather.humidity, 100.0 / 64);
}

PayloadWriter hazardMeteorology(Aircraft const& aircraft, FlightState const& state) {
    return PayloadWriter()
        .steps(1, 3, aircraft.profile().weather.turbulence, 1.0)
        .signedSteps(16, 26, state.temperature, 0.25)
        .steps(27, 38, state.pressure, 1.0);
}

PayloadWriter trackAndTurn(Aircraft const&, FlightState const& state) {
    return PayloadWriter()
        .signedSteps(1, 11, state.roll, 45.0 / 256)
        .signedSteps(12, 23, angleToSend(state.track), kAngleStep)
        .steps(24, 34, state.groundSpeed, 2.0)
        .signedSteps(35, 45, state.trackRate, 8.0 / 256)
        .steps(46, 56, state.trueAirspeed, 2.0);
}

PayloadWriter airReferencedState(Aircraft const&, FlightState const& state) {
    return PayloadWriter()
        .signedSteps(1, 12, angleToSend(state.magneticHeading), kAngleStep)
        .steps(13, 23, state.indicatedAirspeed, 1.0)
        .steps(24, 33, state.mach, 0.008)
        .steps(34, 46, state.trueAirspeed, 0.5)
        .signedSteps(47, 56, state.verticalRate, 64.0);
}

PayloadWriter headingAndSpeed(Aircraft const& aircraft, FlightState const& state) {
    bool const tellsInertial = aircraft.profile().capabilities.tellsInertialRate;
    return PayloadWriter()
        .signedSteps(1, 12, angleToSend(state.magneticHeading), kAngleStep)
        .steps(13, 23, state.indicatedAirspeed, 1.0)
        .steps(24, 34, state.mach, 2.048 / 512)
        .signedSteps(35, 45, state.verticalRate, kRateStep)
        .signedSteps(46, 56, tellsInertial ? std::optional(state.gnssVerticalRate) : std::nullopt, kRateStep);
}

struct Row {
    unsigned number;
    PayloadWriter (*payload)(Aircraft const&, FlightState const&);
};
constexpr Row kRegisters[] = {{0x10, dataLinkCapability}, {0x17, commonUsageCapability}, {0x20, identification},
    {0x21, registration}, {0x30, acasRegister}, {0x40, selectedIntention}, {0x44, routineMeteorology},
    {0x45, hazardMeteorology}, {0x50, trackAndTurn}, {0x53, airReferencedState}, {0x60, headingAndSpeed}};

} // namespace

PayloadWriter registerPayload(unsigned number, Aircraft const& aircraft, FlightState const& state) {
    auto const* const row = std::ranges::find(kRegisters, number, &Row::number);
    return row == std::end(kRegisters) ? PayloadWriter() : row->payload(aircraft, state);
}

} // namespace quorvel::simulate
