// SPDX-License-Identifier: MIT
#include "simulate/squitter_payloads.h"

#include "simulate/cpr_encoder.h"
#include "simulate/signal_codes.h"

#include <cmath>

namespace quorvel::simulate {

namespace {

constexpr double kFastest = 1000.0;           // knots, in steps of 1 kt
constexpr double kSupersonicStep = 4.0;       // knots
constexpr double kHighestDifference = 3137.5; // feet, between GNSS height and altitude
constexpr unsigned kFirstGnssHeight = 20;     // type code

// The flag of ground stations' messages: the address is none of ICAO.
bool isNonIcao(Aircraft const& aircraft) {
    auto const kind = aircraft.profile().addressKind;
    return kind == AddressKind::NonIcao || kind == AddressKind::TrackFile;
}

// A bit that is the aircraft's own, or a ground station's flag.
bool ownOrFlag(Aircraft const& aircraft, Sender sender, bool own) {
    return sender == Sender::Aircraft ? own : isNonIcao(aircraft);
}

std::uint64_t airAltitude(Aircraft const& aircraft, FlightState const& state) {
    auto const& profile = aircraft.profile();
    bool const isGnss = profile.quality.typeCode >= kFirstGnssHeight;
    return squitterAltitudeCode(isGnss ? state.gnssHeight : state.altitude, profile.capabilities.hasHundredFootSteps);
}

std::uint64_t surfaceTrack(double degrees) { return static_cast<std::uint64_t>(std::lround(degrees * 128.0 / 360.0)); }

PayloadWriter surfacePosition(Aircraft const& aircraft, FlightState const& state, bool odd, Sender sender) {
    auto const& profile = aircraft.profile();
    auto const position = encodeSurface(state.place.latitude, state.place.longitude, odd);
    return PayloadWriter()
        .code(1, 5, profile.quality.typeCode)
        .code(6, 12, movementCode(state.groundSpeed, aircraft.version()))
        .flag(13, true)
        .code(14, 20, surfaceTrack(state.track))
        .flag(21, ownOrFlag(aircraft, sender, false))
        .flag(22, odd)
        .code(23, 39, position.latitude)
        .code(40, 56, position.longitude);
}

PayloadWriter airbornePosition(Aircraft const& aircraft, FlightState const& state, bool odd, Sender sender) {
    auto const& profile = aircraft.profile();
    bool const own = aircraft.version() < 2 ? profile.capabilities.hasSingleAntenna : profile.quality.supplementB;
    auto const position = encodeAirborne(state.place.latitude, state.place.longitude, odd);
    return PayloadWriter()
        .code(1, 5, profile.quality.typeCode)
        .code(6, 7, surveillanceStatus(aircraft, state))
        .flag(8, ownOrFlag(aircraft, sender, own))
        .code(9, 20, airAltitude(aircraft, state))
        .flag(22, odd)
        .code(23, 39, position.latitude)
        .code(40, 56, position.longitude);
}

PayloadWriter withoutPosition(Aircraft const& aircraft, FlightState const& state) {
    return PayloadWriter().code(6, 7, surveillanceStatus(aircraft, state)).code(9, 20, airAltitude(aircraft, state));
}

void writeOverGround(PayloadWriter& message, FlightState const& state) {
    double const step = state.groundSpeed > kFastest ? kSupersonicStep : 1.0;
    message.code(6, 8, state.groundSpeed > kFastest ? 2 : 1)
        .signedStepsFromOne(14, 24, state.groundSpeed * std::sin(state.track * kRadians), step)
        .signedStepsFromOne(25, 35, state.groundSpeed * std::cos(state.track * kRadians), step);
}

void writeThroughAir(PayloadWriter& message, Aircraft const& aircraft, FlightState const& state) {
    bool const isTrue = aircraft.profile().velocityReport == VelocityReport::TrueAirspeed;
    double const airspeed = isTrue ? state.trueAirspeed : state.indicatedAirspeed;
    bool const isMagnetic = aircraft.profile().capabilities.isMagneticNorth;
    double const heading = isMagnetic ? state.magneticHeading : state.trueHeading;
    message.code(6, 8, airspeed > kFastest ? 4 : 3)
        .flag(14, true)
        .code(15, 24, static_cast<std::uint64_t>(std::lround(heading * 1024.0 / 360.0)))
        .flag(25, isTrue)
        .stepsFromOne(26, 35, airspeed, airspeed > kFastest ? kSupersonicStep : 1.0);
}

void writeHeightDifference(PayloadWriter& message, FlightState const& state) {
    constexpr std::uint64_t kBeyondScale = 127;
    double const difference = state.gnssHeight - state.altitude;
    if (std::fabs(difference) > kHighestDifference) {
        message.flag(49, difference < 0).code(50, 56, kBeyondScale);
    } else {
        message.signedStepsFromOne(49, 56, difference, 25.0);
    }
}

// Heights of ground stations come with their difference, or with accuracies (RTCA DO-260B, 2.2.17.3.4).
PayloadWriter tisBVelocity(Aircraft const& aircraft, FlightState const& state) {
    auto const& profile = aircraft.profile();
    auto message = PayloadWriter().code(1, 5, 19).flag(9, isNonIcao(aircraft));
    message.code(10, 13, profile.accuracies.position);
    writeOverGround(message, state);
    bool const tellsDifference = profile.capabilities.tellsHeightDifference;
    message.flag(36, tellsDifference).signedStepsFromOne(37, 46, state.verticalRate, 64.0);
    if (tellsDifference) {
        writeHeightDifference(message, state);
    } else {
        message.code(48, 50, profile.accuracies.velocity).code(51, 52, profile.accuracies.sourceIntegrity);
    }
    return message;
}

PayloadWriter targetStateVersion1(Aircraft const& aircraft, FlightState const& state) {
    constexpr std::uint64_t kByControlPanel = 1;
    constexpr std::uint64_t kHolding = 3;
    constexpr std::uint64_t kAcquiring = 1;
    auto const& profile = aircraft.profile();
    PayloadWriter message;
    if (auto const& selection = profile.selection) {
        message.code(8, 9, selection->isFlightManagement ? 3 : kByControlPanel)
            .flag(10, state.pressureSetting != 1013.25)
            .code(12, 13, 1)
            .code(14, 15, state.verticalRate == 0.0 ? kHolding : kAcquiring)
            .code(16, 25, static_cast<std::uint64_t>(std::lround(selection->altitude / 100.0) + 10))
            .code(26, 27, kByControlPanel)
            .code(28, 36, static_cast<std::uint64_t>(std::lround(selection->heading)) % 360)
            .code(38, 39, std::fabs(state.roll) > 0.0 ? kAcquiring : kHolding);
    }
    return message.flag(52, !profile.capabilities.hasAcas)
        .flag(53, state.advisory == AdvisoryPhase::Active)
        .code(54, 56, profile.emergency);
}

PayloadWriter targetStateVersion2(Aircraft const& aircraft, FlightState const& state) {
    auto const& profile = aircraft.profile();
    auto message = PayloadWriter().code(6, 7, 1).flag(8, profile.accuracies.isIntegrityBySample);
    if (auto const& selection = profile.selection) {
        message.flag(9, selection->isFlightManagement)
            .stepsFromOne(10, 20, selection->altitude, 32.0)
            .stepsFromOne(21, 29, state.pressureSetting - 800.0, 0.8)
            .steps(30, 39, selection->heading, 180.0 / 256)
            .flag(47, true)
            .flag(48, selection->isAutopilot)
            .flag(49, selection->isVnav)
            .flag(50, selection->isAltitudeHold)
            .flag(52, selection->isApproach)
            .flag(54, selection->isLnav);
    }
    return message.flag(53, profile.capabilities.hasAcas);
}

void writeCapabilities(PayloadWriter& message, Aircraft const& aircraft) {
    auto const& profile = aircraft.profile();
    auto const& capabilities = profile.capabilities;
    bool const isVersion1 = aircraft.version() == 1;
    message.flag(12, capabilities.receivesSquitters);
    if (!profile.onGround) {
        message.flag(11, capabilities.hasAcas != isVersion1)
            .flag(15, capabilities.reportsAirVelocity)
            .flag(16, capabilities.reportsTargetState)
            .flag(19, !isVersion1 && capabilities.receivesUat);
        return;
    }
    message.flag(15, capabilities.isLowPower).code(21, 24, capabilities.lengthWidth);
    if (isVersion1) return;
    message.flag(16, capabilities.receivesUat)
        .code(17, 19, profile.accuracies.velocityOnSurface)
        .flag(20, profile.quality.supplementC)
        .code(33, 40, capabilities.antennaOffset);
}

void writeOperationalMode(PayloadWriter& message, Aircraft const& aircraft, FlightState const& state) {
    auto const& profile = aircraft.profile();
    message.flag(27, state.advisory == AdvisoryPhase::Active).flag(28, state.isIdent);
    if (aircraft.version() < 2) return;
    message.flag(30, profile.capabilities.hasSingleAntenna).code(31, 32, profile.accuracies.designAssurance);
}

void writeQuality(PayloadWriter& message, Aircraft const& aircraft) {
    auto const& profile = aircraft.profile();
    auto const& accuracies = profile.accuracies;
    message.flag(44, profile.quality.supplementA)
        .code(45, 48, accuracies.position)
        .code(49, 50, profile.onGround ? 0 : accuracies.vertical)
        .code(51, 52, accuracies.sourceIntegrity)
        .flag(53, profile.onGround ? profile.capabilities.isHeadingOnSurface : accuracies.isBarometerChecked)
        .flag(54, profile.capabilities.isMagneticNorth)
        .flag(55, accuracies.isIntegrityBySample);
}

// What is advised, in the bits from 9 on that all messages of it have in common.
void writeAdvice(PayloadWriter& payload, Aircraft const& aircraft, FlightState const& state) {
    if (state.advisory == AdvisoryPhase::None) return;
    auto const& advisory = *aircraft.profile().advisory;
    payload.code(9, 22, advisory.active)
        .code(23, 26, advisory.complement)
        .flag(27, state.advisory == AdvisoryPhase::Terminated)
        .flag(28, advisory.hasMultipleThreats);
}

void writeThreat(PayloadWriter& payload, Aircraft const& aircraft, FlightState const& state) {
    constexpr std::uint64_t kByAddress = 1;
    constexpr std::uint64_t kByPosition = 2;
    if (state.advisory == AdvisoryPhase::None) return;
    auto const& advisory = *aircraft.profile().advisory;
    if (advisory.threat != 0) {
        payload.code(29, 30, kByAddress).code(31, 54, advisory.threat);
    } else {
        payload.code(29, 30, kByPosition)
            .code(31, 43, altitudeCode(advisory.altitude, true))
            .stepsFromOne(44, 50, advisory.range, 0.1)
            .code(51, 56, static_cast<std::uint64_t>(advisory.bearing / 6.0) + 1);
    }
}

} // namespace

bool hasAlert(Aircraft const& aircraft) {
    auto const code = aircraft.squawk();
    return aircraft.profile().emergency != 0 && (code == 07500 || code == 07600 || code == 07700);
}

unsigned surveillanceStatus(Aircraft const& aircraft, FlightState const& state) {
    if (hasAlert(aircraft)) return 1;
    return state.isIdent ? 3 : 0;
}

PayloadWriter positionMessage(Aircraft const& aircraft, FlightState const& state, bool odd, Sender sender) {
    if (aircraft.profile().quality.typeCode == 0) return withoutPosition(aircraft, state);
    return (aircraft.onGround() ? surfacePosition : airbornePosition)(aircraft, state, odd, sender);
}

PayloadWriter velocityMessage(Aircraft const& aircraft, FlightState const& state, Sender sender) {
    if (sender == Sender::TisB) return tisBVelocity(aircraft, state);
    auto const& profile = aircraft.profile();
    auto const& capabilities = profile.capabilities;
    PayloadWriter message;
    message.code(1, 5, 19)
        .flag(9, ownOrFlag(aircraft, sender, false))
        .flag(10, capabilities.isIfrCapable)
        .code(11, 13, profile.accuracies.velocity);
    if (profile.velocityReport == VelocityReport::OverGround) {
        writeOverGround(message, state);
    } else {
        writeThroughAir(message, aircraft, state);
    }
    bool const isGnss = capabilities.isVerticalRateGnss;
    message.flag(36, !isGnss).signedStepsFromOne(37, 46, isGnss ? state.gnssVerticalRate : state.verticalRate, 64.0);
    if (capabilities.tellsHeightDifference) writeHeightDifference(message, state);
    return message;
}

PayloadWriter identificationMessage(Aircraft const& aircraft) {
    auto const& profile = aircraft.profile();
    return PayloadWriter()
        .code(1, 5, static_cast<std::uint64_t>(4 - (profile.categorySet - 'A')))
        .code(6, 8, profile.category)
        .code(9, 56, characterCodes(profile.callsign, 8));
}

PayloadWriter emergencyMessage(Aircraft const& aircraft, Sender sender) {
    return PayloadWriter()
        .code(1, 5, 28)
        .code(6, 8, 1)
        .code(9, 11, aircraft.profile().emergency)
        .code(12, 24, identityCode(aircraft.squawk()))
        .flag(56, ownOrFlag(aircraft, sender, false));
}

PayloadWriter advisoryMessage(Aircraft const& aircraft, FlightState const& state) {
    auto message = PayloadWriter().code(1, 5, 28).code(6, 8, 2);
    writeAdvice(message, aircraft, state);
    writeThreat(message, aircraft, state);
    return message;
}

PayloadWriter acasMessage(Aircraft const& aircraft, FlightState const& state) {
    auto message = PayloadWriter().code(1, 8, 0x30);
    writeAdvice(message, aircraft, state);
    return message;
}

PayloadWriter acasRegister(Aircraft const& aircraft, FlightState const& state) {
    auto message = acasMessage(aircraft, state);
    writeThreat(message, aircraft, state);
    return message;
}

PayloadWriter targetStateMessage(Aircraft const& aircraft, FlightState const& state, Sender sender) {
    auto const& accuracies = aircraft.profile().accuracies;
    auto message = (aircraft.version() == 1 ? targetStateVersion1 : targetStateVersion2)(aircraft, state);
    return message.code(1, 5, 29)
        .code(40, 43, accuracies.position)
        .flag(44, accuracies.isBarometerChecked)
        .code(45, 46, accuracies.sourceIntegrity)
        .flag(51, ownOrFlag(aircraft, sender, false));
}

// Version 0 tells its capabilities for each phase of flight, of which these aircraft have none.
PayloadWriter operationalStatusMessage(Aircraft const& aircraft, FlightState const& state, Sender sender) {
    auto message = PayloadWriter().code(1, 5, 31);
    if (aircraft.version() == 0) return message;
    message.code(6, 8, aircraft.onGround() ? 1 : 0).code(41, 43, aircraft.version());
    writeCapabilities(message, aircraft);
    writeOperationalMode(message, aircraft, state);
    writeQuality(message, aircraft);
    return message.flag(56, ownOrFlag(aircraft, sender, false));
}

PayloadWriter testMessage(Aircraft const& aircraft) {
    return PayloadWriter().code(1, 5, 23).code(6, 8, 7).code(9, 21, identityCode(aircraft.squawk()));
}

PayloadWriter coarsePositionMessage(Aircraft const& aircraft, FlightState const& state, bool odd) {
    auto const position = encodeCoarse(state.place.latitude, state.place.longitude, odd);
    return PayloadWriter()
        .flag(1, isNonIcao(aircraft))
        .code(2, 3, surveillanceStatus(aircraft, state))
        .code(8, 19, squitterAltitudeCode(state.altitude, aircraft.profile().capabilities.hasHundredFootSteps))
        .flag(20, true)
        .code(21, 25, static_cast<std::uint64_t>(std::lround(state.track * 32.0 / 360.0)))
        .stepsFromOne(26, 31, state.groundSpeed, 32.0)
        .flag(32, odd)
        .code(33, 44, position.latitude)
        .code(45, 56, position.longitude);
}

} // namespace quorvel::simulate
