// SPDX-License-Identifier: MIT
#include "simulate/signal_codes.h"

#include <algorithm>
#include <cmath>

namespace quorvel::simulate {

namespace {

constexpr double kHighestOfSteps = 50'175.0; // feet

// Steps of 25 ft from -1000 ft: six bits, M = 0, one, Q = 1, four.
std::uint64_t stepsCode(double feet) {
    auto const steps = static_cast<std::uint64_t>(std::max(std::round((feet + 1000.0) / 25.0), 0.0));
    return (steps >> 5 & 0x3F) << 7 | (steps >> 4 & 1) << 5 | 1U << 4 | (steps & 0xF);
}

unsigned hundredsFromLowest(double feet) { // from -1200 ft
    return static_cast<unsigned>(std::max(std::round(feet / 100.0) + 12.0, 2.0));
}

// C1 A1 C2 A2 C4 A4 M B1 Q B2 D2 B4 D4: the bits D2 D4 A1 A2 A4 B1 B2 B4 count 500 ft in a Gray code, C1 C2 C4 the
// hundreds of feet in them, upwards and downwards by turns.
std::uint64_t hundredsCode(double feet) {
    constexpr unsigned kHundreds[] = {1, 3, 2, 6, 4};
    constexpr unsigned kGrayPositions[] = {2, 0, 11, 9, 7, 5, 3, 1}; // of D2 D4 A1 A2 A4 B1 B2 B4, from the right
    constexpr unsigned kHundredPositions[] = {12, 10, 8};            // of C1 C2 C4
    auto const count = hundredsFromLowest(feet);
    auto const fiveHundreds = count / 5;
    auto const gray = fiveHundreds ^ fiveHundreds >> 1;
    auto const hundreds = kHundreds[fiveHundreds % 2 == 0 ? count % 5 : 4 - count % 5];
    std::uint64_t code = 0;
    for (unsigned i = 0; i < 8; ++i) code |= std::uint64_t{gray >> (7 - i) & 1} << kGrayPositions[i];
    for (unsigned i = 0; i < 3; ++i) code |= std::uint64_t{hundreds >> (2 - i) & 1} << kHundredPositions[i];
    return code;
}

bool isInHundreds(double feet, bool hundreds) { return hundreds || feet > kHighestOfSteps; }

// Codes of one step: they stand for `lower` and `step` more for each code.
struct Band {
    double lower; // knots
    unsigned first;
    double step;
};
constexpr Band kEarlyBand{0.0, 1, 0.125};
constexpr Band kLaterBands[] = {{0.0, 2, 0.125}, {0.125, 3, 0.875 / 6}};
constexpr Band kBands[] = {{1.0, 9, 0.25}, {2.0, 13, 0.5}, {15.0, 39, 1.0}, {70.0, 94, 2.0}, {100.0, 109, 5.0}};
constexpr std::uint64_t kStopped = 1;
constexpr std::uint64_t kFastest = 124;

// Versions 0 and 1 count the lower end of a step to it.
std::uint64_t earlyMovement(double knots) {
    Band band = kEarlyBand;
    for (auto const& next : kBands) band = knots >= next.lower ? next : band;
    return band.first + static_cast<std::uint64_t>((knots - band.lower) / band.step);
}

// Version 2 counts the upper one to it.
std::uint64_t laterMovement(double knots) {
    if (knots <= 0.0) return kStopped;
    Band band = kLaterBands[0];
    for (auto const& next : kLaterBands) band = knots > next.lower ? next : band;
    for (auto const& next : kBands) band = knots > next.lower ? next : band;
    return band.first + static_cast<std::uint64_t>(std::ceil((knots - band.lower) / band.step)) - 1;
}

} // namespace

std::uint64_t altitudeCode(double feet, bool hundreds) {
    return isInHundreds(feet, hundreds) ? hundredsCode(feet) : stepsCode(feet);
}

std::uint64_t squitterAltitudeCode(double feet, bool hundreds) {
    auto const code = altitudeCode(feet, hundreds);
    return code >> 7 << 6 | (code & 0x3F);
}

double codedAltitude(double feet, bool hundreds) {
    return isInHundreds(feet, hundreds) ? 100.0 * hundredsFromLowest(feet) - 1200.0 : 25.0 * std::round(feet / 25.0);
}

// C1 A1 C2 A2 C4 A4 0 B1 D1 B2 D2 B4 D4.
std::uint64_t identityCode(std::uint32_t squawk) {
    auto const bit = [&](unsigned digit, unsigned value) -> std::uint64_t { // digits A to D are 0 to 3
        return (squawk >> 3 * (3 - digit) & value) != 0 ? 1 : 0;
    };
    std::uint64_t bits = 0;
    for (unsigned value = 1; value <= 4; value *= 2) bits = bits << 2 | bit(2, value) << 1 | bit(0, value);
    bits <<= 1;
    for (unsigned value = 1; value <= 4; value *= 2) bits = bits << 2 | bit(1, value) << 1 | bit(3, value);
    return bits;
}

std::uint64_t characterCodes(std::string const& text, std::size_t count) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < count; ++i) {
        char const character = i < text.size() ? text[i] : ' ';
        bits = bits << 6 | (static_cast<unsigned char>(character) & 0x3F);
    }
    return bits;
}

std::uint64_t movementCode(double knots, unsigned version) {
    return std::min(version < 2 ? earlyMovement(knots) : laterMovement(knots), kFastest);
}

} // namespace quorvel::simulate
