// SPDX-License-Identifier: MIT
#pragma once

#include "support/bytes.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel::modes::test {

// Mode S frames and ADS-B payloads from their parts. Written for the tests alone: nothing here comes from the
// library, so that each checks the other.

/// Remainder of the bytes, followed by 24 zero bits, divided by the parity polynomial, bit by bit.
inline std::uint32_t dividedParity(std::string_view bytes) {
    std::uint32_t remainder = 0;
    auto const shiftIn = [&remainder](bool bit) {
        remainder = remainder << 1 | (bit ? 1U : 0U);
        if (remainder & 0x1000000U) remainder ^= 0x1FFF409U;
    };
    for (char const byte : bytes) {
        for (int i = 7; i >= 0; --i) shiftIn((static_cast<unsigned char>(byte) >> i & 1) != 0);
    }
    for (int i = 0; i < 24; ++i) shiftIn(false);
    return remainder;
}

/// The bytes followed by their parity, overlaid with an address or an interrogator code.
inline std::string withParity(std::string bytes, std::uint32_t overlay = 0) {
    auto const parity = dividedParity(bytes) ^ overlay;
    for (unsigned const shift : {16U, 8U, 0U}) bytes += static_cast<char>(parity >> shift & 0xFF);
    return bytes;
}

/// A reply of 56 bits: its format, the 27 bits after it, and what overlays the parity.
inline std::string shortFrame(unsigned format, std::uint32_t bits27, std::uint32_t overlay) {
    return withParity(withBits(withBits(std::string(4, '\0'), 0, 5, format), 5, 27, bits27), overlay);
}

/// A reply of 112 bits: the same with a payload of 7 bytes.
inline std::string longFrame(unsigned format, std::uint32_t bits27, std::string const& payload, std::uint32_t overlay) {
    auto const head = withBits(withBits(std::string(4, '\0'), 0, 5, format), 5, 27, bits27);
    return withParity(head + payload, overlay);
}

/// Where vertical status, flight status and capability stand within the 27 bits.
inline std::uint32_t verticalStatus(unsigned status) { return status << 26; }
inline std::uint32_t flightStatus(unsigned status) { return status << 24; }
inline std::uint32_t capability(unsigned value) { return value << 24; }

/// Altitude code for feet in steps of 25: 11 bits around the M bit (0) and the Q bit (1).
inline std::uint32_t altitudeCode(int feet) {
    auto const steps = static_cast<std::uint32_t>((feet + 1000) / 25);
    return (steps >> 6 & 0x1F) << 8 | (steps >> 5 & 1) << 7 | (steps >> 4 & 1) << 5 | 1U << 4 | (steps & 0xF);
}

/// Identity code C1 A1 C2 A2 C4 A4 0 B1 D1 B2 D2 B4 D4 of a squawk, for example 07700.
inline std::uint32_t identityCode(unsigned squawk) {
    auto const digitBit = [squawk](
                              unsigned digit, unsigned value) { return (squawk >> 3 * digit & value) != 0 ? 1U : 0U; };
    constexpr unsigned A = 3, B = 2, C = 1, D = 0;
    std::uint32_t code = 0;
    for (auto const bit :
        {digitBit(C, 1), digitBit(A, 1), digitBit(C, 2), digitBit(A, 2), digitBit(C, 4), digitBit(A, 4), 0U,
            digitBit(B, 1), digitBit(D, 1), digitBit(B, 2), digitBit(D, 2), digitBit(B, 4), digitBit(D, 4)}) {
        code = code << 1 | bit;
    }
    return code;
}

/// An extended squitter of an aircraft.
inline std::string squitter(std::uint32_t address, std::string const& payload) {
    return longFrame(17, capability(5) | address, payload, 0);
}

/// An empty payload of a type code and the three bits after it.
inline std::string payload(unsigned typeCode, unsigned subtype = 0) {
    return withBits(withBits(std::string(7, '\0'), 0, 5, typeCode), 5, 3, subtype);
}

/// Identification: letters, digits and blanks, at most 8.
inline std::string identification(std::string callsign, unsigned category = 0, unsigned typeCode = 4) {
    auto bytes = payload(typeCode, category);
    callsign.resize(8, ' ');
    for (unsigned i = 0; i < 8; ++i) {
        auto const letter = static_cast<unsigned char>(callsign[i]);
        bytes = withBits(bytes, 8 + 6 * i, 6, letter >= 'A' ? letter - 'A' + 1U : letter);
    }
    return bytes;
}

/// Airborne position: the coordinates, whether the frame is odd, and the eight bits of the altitude code that
/// do not overlap with the longitude. The bit before them is the NIC supplement B of version 2.
struct PositionBits {
    unsigned latitude = 0;
    unsigned longitude = 0;
    bool odd = false;
    unsigned altitude = 0;
    bool supplementB = false;
    unsigned typeCode = 11;
};

inline std::string airbornePosition(PositionBits const& bits) {
    auto bytes = payload(bits.typeCode);
    bytes = withBits(bytes, 7, 1, bits.supplementB);
    bytes = withBits(bytes, 8, 8, bits.altitude);
    bytes = withBits(bytes, 21, 1, bits.odd);
    bytes = withBits(bytes, 22, 17, bits.latitude);
    return withBits(bytes, 39, 17, bits.longitude);
}

/// Airborne velocity: subtype, eastward and northward components as sent (value minus 1 knots), NUCr, and the
/// source of the vertical rate with the payload byte it comes from.
struct VelocityBits {
    unsigned subtype = 1;
    unsigned east = 1;
    unsigned north = 1;
    unsigned nucr = 0;
    bool gnssRate = false;
    unsigned rateHighBits = 0; // the three bits at 37
};

inline std::string airborneVelocity(VelocityBits const& bits) {
    auto bytes = payload(19, bits.subtype);
    bytes = withBits(bytes, 10, 3, bits.nucr);
    bytes = withBits(bytes, 14, 10, bits.east);
    bytes = withBits(bytes, 25, 10, bits.north);
    bytes = withBits(bytes, 35, 1, bits.gnssRate);
    return withBits(bytes, 37, 3, bits.rateHighBits);
}

/// Operational status: version number and NIC supplement A.
inline std::string operationalStatus(unsigned version, bool supplementA = false) {
    return withBits(withBits(payload(31), 40, 3, version), 43, 1, supplementA);
}

} // namespace quorvel::modes::test
