// SPDX-License-Identifier: MIT
#include "simulate/transponder.h"

#include "simulate/bit_writer.h"
#include "simulate/checksum.h"
#include "simulate/register_payloads.h"
#include "simulate/signal_codes.h"
#include "simulate/squitter_payloads.h"

namespace quorvel::simulate {

namespace {

// With or without alert and ident (3.1.2.6.5.1).
std::uint64_t flightStatus(Aircraft const& aircraft, FlightState const& state) {
    std::uint64_t const onGround = aircraft.onGround() ? 1 : 0;
    if (hasAlert(aircraft)) return state.isIdent ? 4 : 2 + onGround;
    return state.isIdent ? 5 : onGround;
}

// An alert or ident hides whether it is on the ground (3.1.2.5.2.2.1).
std::uint64_t capability(Aircraft const& aircraft, FlightState const& state) {
    if (flightStatus(aircraft, state) > 1) return 7;
    return aircraft.onGround() ? 4 : 5;
}

std::uint64_t altitudeOf(Aircraft const& aircraft, FlightState const& state) {
    return altitudeCode(state.altitude, aircraft.profile().capabilities.hasHundredFootSteps);
}

std::string shortReply(unsigned format, std::uint64_t rest27Bits, std::uint32_t overlay) {
    return withParity(BitWriter().put(format, 5).put(rest27Bits, 27).bytes(), overlay);
}

std::string longReply(unsigned format, std::uint64_t rest27Bits, PayloadWriter const& message, std::uint32_t overlay) {
    return withParity(BitWriter().put(format, 5).put(rest27Bits, 27).bytes() + message.bytes(), overlay);
}

// Flight status, no downlink request, no utility message, and a code.
std::uint64_t surveillanceBits(Aircraft const& aircraft, FlightState const& state, std::uint64_t code) {
    return flightStatus(aircraft, state) << 24 | code;
}

// Vertical status, sensitivity level, reply information, altitude.
std::uint64_t airAirBits(Aircraft const& aircraft, FlightState const& state) {
    auto const& capabilities = aircraft.profile().capabilities;
    return std::uint64_t{aircraft.onGround()} << 26 | std::uint64_t{capabilities.sensitivity} << 21 |
           std::uint64_t{capabilities.replyInformation} << 15 | altitudeOf(aircraft, state);
}

std::string extendedSquitter(
    unsigned format, std::uint64_t field, Aircraft const& aircraft, PayloadWriter const& message) {
    BitWriter frame;
    frame.put(format, 5).put(field, 3).put(aircraft.address(), 24);
    return withParity(frame.bytes() + message.bytes(), 0);
}

// Control field of a ground station's squitters (3.1.2.8.7.2).
std::uint64_t controlField(Profile const& profile) {
    switch (profile.groundStation) {
    case GroundStation::CoarseTisB: return 3;
    case GroundStation::Rebroadcast: return 6;
    default: return profile.addressKind == AddressKind::TisB ? 5 : 2;
    }
}

} // namespace

std::string airAirReply(Aircraft const& aircraft, FlightState const& state) {
    return shortReply(0, airAirBits(aircraft, state), aircraft.address());
}

std::string longAirAirReply(Aircraft const& aircraft, FlightState const& state) {
    return longReply(16, airAirBits(aircraft, state), acasMessage(aircraft, state), aircraft.address());
}

std::string altitudeReply(Aircraft const& aircraft, FlightState const& state) {
    auto const bits = surveillanceBits(aircraft, state, altitudeOf(aircraft, state));
    return shortReply(4, bits, aircraft.address());
}

std::string identityReply(Aircraft const& aircraft, FlightState const& state) {
    auto const bits = surveillanceBits(aircraft, state, identityCode(aircraft.squawk()));
    return shortReply(5, bits, aircraft.address());
}

std::string commBAltitudeReply(Aircraft const& aircraft, FlightState const& state, unsigned registerNumber) {
    auto const bits = surveillanceBits(aircraft, state, altitudeOf(aircraft, state));
    return longReply(20, bits, registerPayload(registerNumber, aircraft, state), aircraft.address());
}

std::string commBIdentityReply(Aircraft const& aircraft, FlightState const& state, unsigned registerNumber) {
    auto const bits = surveillanceBits(aircraft, state, identityCode(aircraft.squawk()));
    return longReply(21, bits, registerPayload(registerNumber, aircraft, state), aircraft.address());
}

std::string allCallReply(Aircraft const& aircraft, FlightState const& state, std::uint32_t interrogator) {
    return shortReply(11, capability(aircraft, state) << 24 | aircraft.address(), interrogator);
}

std::string squitter(Aircraft const& aircraft, FlightState const& state, PayloadWriter const& message) {
    auto const& profile = aircraft.profile();
    if (profile.transmitter == Transmitter::Transponder) {
        return extendedSquitter(17, capability(aircraft, state), aircraft, message);
    }
    return extendedSquitter(18, profile.addressKind == AddressKind::Icao ? 0 : 1, aircraft, message);
}

std::string groundStationSquitter(Aircraft const& aircraft, PayloadWriter const& message) {
    return extendedSquitter(18, controlField(aircraft.profile()), aircraft, message);
}

} // namespace quorvel::simulate
