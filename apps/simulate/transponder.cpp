// SPDX-License-Identifier: MIT
#include "simulate/transponder.h"

#include "simulate/bit_writer.h"
#include "simulate/checksum.h"
#include "simulate/cpr_encoder.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace quorvel::simulate {

namespace {

constexpr double kRadians = 3.14159265358979323846 / 180.0;

std::uint64_t rounded(double value) { return static_cast<std::uint64_t>(std::llround(value)); }

// Steps of 25 ft from -1000 ft, 11 bits.
std::uint64_t altitudeSteps(double feet) { return std::min<std::uint64_t>(rounded((feet + 1000.0) / 25.0), 0x7FF); }

// 13 bits: six of the altitude, M = 0, one, Q = 1, four.
std::uint64_t altitudeCode(double feet) {
    auto const steps = altitudeSteps(feet);
    return (steps >> 5 & 0x3F) << 7 | (steps >> 4 & 1) << 5 | 1U << 4 | (steps & 0xF);
}

// 12 bits, as squitters carry it: without the M bit.
std::uint64_t squitterAltitudeCode(double feet) {
    auto const code = altitudeCode(feet);
    return code >> 7 << 6 | (code & 0x3F);
}

// 13 bits: C1 A1 C2 A2 C4 A4 0 B1 D1 B2 D2 B4 D4.
std::uint64_t identityCode(std::uint32_t squawk) {
    auto const bit = [&](unsigned digit, unsigned value) -> std::uint64_t { // digits A to D are 0 to 3
        return (squawk >> 3 * (3 - digit) & value) != 0 ? 1 : 0;
    };
    BitWriter code;
    std::uint64_t bits = 0;
    for (unsigned value = 1; value <= 4; value *= 2) bits = bits << 2 | bit(2, value) << 1 | bit(0, value);
    bits <<= 1;
    for (unsigned value = 1; value <= 4; value *= 2) bits = bits << 2 | bit(1, value) << 1 | bit(3, value);
    return bits;
}

std::uint64_t flightStatus(Aircraft const& aircraft) { return aircraft.onGround() ? 1 : 0; }

std::uint64_t capability(Aircraft const& aircraft) { return aircraft.onGround() ? 4 : 5; }

// Eight characters of six bits.
std::uint64_t characters(std::string const& callsign) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        char const character = i < callsign.size() ? callsign[i] : ' ';
        bits = bits << 6 | (static_cast<unsigned char>(character) & 0x3F);
    }
    return bits;
}

// The Comm-B register "aircraft identification" (BDS 2,0).
std::uint64_t identificationRegister(Aircraft const& aircraft) {
    return std::uint64_t{0x20} << 48 | characters(aircraft.callsign());
}

std::string shortReply(unsigned format, std::uint64_t rest27Bits, std::uint32_t overlay) {
    return withParity(BitWriter().put(format, 5).put(rest27Bits, 27).bytes(), overlay);
}

std::string longReply(unsigned format, std::uint64_t rest27Bits, std::uint64_t message, std::uint32_t overlay) {
    return withParity(BitWriter().put(format, 5).put(rest27Bits, 27).put(message, 56).bytes(), overlay);
}

// Flight status, no downlink request, no utility message, and a code.
std::uint64_t surveillanceBits(Aircraft const& aircraft, std::uint64_t code) {
    return flightStatus(aircraft) << 24 | code;
}

// Vertical status, sensitivity level 6, reply information 3 (ACAS on board), altitude.
std::uint64_t airAirBits(Aircraft const& aircraft, FlightState const& state) {
    return flightStatus(aircraft) << 26 | std::uint64_t{6} << 21 | std::uint64_t{3} << 15 |
           altitudeCode(state.altitude);
}

std::string squitter(Aircraft const& aircraft, BitWriter const& message) {
    BitWriter frame;
    frame.put(17, 5).put(capability(aircraft), 3).put(aircraft.address(), 24);
    return withParity(frame.bytes() + message.bytes(), 0);
}

// Movement in steps (RTCA DO-260B, table 2-19).
std::uint64_t movementCode(double knots) {
    if (knots < 0.125) return 1;
    if (knots < 1.0) return 2 + static_cast<std::uint64_t>((knots - 0.125) / 0.146);
    if (knots < 2.0) return 9 + static_cast<std::uint64_t>((knots - 1.0) / 0.25);
    if (knots < 15.0) return 13 + static_cast<std::uint64_t>((knots - 2.0) / 0.5);
    return 39 + std::min<std::uint64_t>(static_cast<std::uint64_t>(knots - 15.0), 54);
}

std::string surfacePosition(Aircraft const& aircraft, FlightState const& state, bool odd) {
    auto const position = encodeSurface(state.place.latitude, state.place.longitude, odd);
    BitWriter message;
    message.put(7, 5).put(movementCode(state.groundSpeed), 7).put(1, 1);
    message.put(rounded(state.track * 128.0 / 360.0) % 128, 7).put(0, 1).put(odd ? 1 : 0, 1);
    return squitter(aircraft, message.put(position.latitude, 17).put(position.longitude, 17));
}

// Sign and magnitude of a velocity component, 11 bits; magnitudes count from 1.
std::uint64_t componentBits(double knots, double step) {
    auto const magnitude = std::min<std::uint64_t>(rounded(std::fabs(knots) / step) + 1, 1023);
    return (knots < 0 ? std::uint64_t{1} << 10 : 0) | magnitude;
}

// Source, sign and magnitude of the vertical rate in steps of 64 ft/min, 11 bits.
std::uint64_t verticalRateBits(double feetPerMinute) {
    auto const magnitude = std::min<std::uint64_t>(rounded(std::fabs(feetPerMinute) / 64.0) + 1, 511);
    return (feetPerMinute < 0 ? std::uint64_t{1} << 9 : 0) | magnitude;
}

std::uint64_t versionNumber(Aircraft const& aircraft) { return static_cast<std::uint64_t>(aircraft.equipment()); }

} // namespace

std::string airAirReply(Aircraft const& aircraft, FlightState const& state) {
    return shortReply(0, airAirBits(aircraft, state), aircraft.address());
}

std::string longAirAirReply(Aircraft const& aircraft, FlightState const& state) {
    return longReply(16, airAirBits(aircraft, state), std::uint64_t{0x30} << 48, aircraft.address());
}

std::string altitudeReply(Aircraft const& aircraft, FlightState const& state) {
    return shortReply(4, surveillanceBits(aircraft, altitudeCode(state.altitude)), aircraft.address());
}

std::string identityReply(Aircraft const& aircraft) {
    return shortReply(5, surveillanceBits(aircraft, identityCode(aircraft.squawk())), aircraft.address());
}

std::string commBAltitudeReply(Aircraft const& aircraft, FlightState const& state) {
    return longReply(20, surveillanceBits(aircraft, altitudeCode(state.altitude)), identificationRegister(aircraft),
        aircraft.address());
}

std::string commBIdentityReply(Aircraft const& aircraft) {
    return longReply(21, surveillanceBits(aircraft, identityCode(aircraft.squawk())), identificationRegister(aircraft),
        aircraft.address());
}

std::string allCallReply(Aircraft const& aircraft, std::uint32_t interrogator) {
    return shortReply(11, capability(aircraft) << 24 | aircraft.address(), interrogator);
}

std::string identificationSquitter(Aircraft const& aircraft) {
    return squitter(
        aircraft, BitWriter().put(4, 5).put(aircraft.category(), 3).put(characters(aircraft.callsign()), 48));
}

std::string positionSquitter(Aircraft const& aircraft, FlightState const& state, bool odd) {
    if (aircraft.onGround()) return surfacePosition(aircraft, state, odd);
    auto const position = encodeAirborne(state.place.latitude, state.place.longitude, odd);
    BitWriter message;
    message.put(11, 5).put(0, 3).put(squitterAltitudeCode(state.altitude), 12).put(0, 1).put(odd ? 1 : 0, 1);
    return squitter(aircraft, message.put(position.latitude, 17).put(position.longitude, 17));
}

std::string velocitySquitter(Aircraft const& aircraft, FlightState const& state) {
    double const east = state.groundSpeed * std::sin(state.track * kRadians);
    double const north = state.groundSpeed * std::cos(state.track * kRadians);
    bool const fast = state.groundSpeed > 1000.0;
    double const step = fast ? 4.0 : 1.0;
    BitWriter message;
    message.put(19, 5).put(fast ? 2 : 1, 3).put(0, 2).put(2, 3); // velocity accuracy better than 3 m/s
    message.put(componentBits(east, step), 11).put(componentBits(north, step), 11);
    message.put(0, 1).put(verticalRateBits(state.verticalRate), 10).put(0, 2).put(0, 8);
    return squitter(aircraft, message);
}

std::string aircraftStatusSquitter(Aircraft const& aircraft) {
    return squitter(
        aircraft, BitWriter().put(28, 5).put(1, 3).put(0, 3).put(identityCode(aircraft.squawk()), 13).put(0, 32));
}

// Accuracy within 0.1 NM, integrity cross-checked, source integrity level 2.
std::string targetStatusSquitter(Aircraft const& aircraft) {
    bool const version2 = aircraft.equipment() == Equipment::Version2;
    BitWriter message;
    message.put(29, 5).put(version2 ? 1 : 0, 2).put(0, 1).put(0, 31).put(8, 4).put(1, 1).put(2, 2).put(0, 10);
    return squitter(aircraft, message);
}

// Capability and mode without anything special, the version number, accuracy within 0.1 NM.
std::string operationalStatusSquitter(Aircraft const& aircraft) {
    BitWriter message;
    message.put(31, 5).put(aircraft.onGround() ? 1 : 0, 3).put(0, 32);
    message.put(versionNumber(aircraft), 3).put(0, 1).put(8, 4).put(0, 2).put(2, 2).put(1, 1).put(0, 3);
    return squitter(aircraft, message);
}

} // namespace quorvel::simulate
