// SPDX-License-Identifier: MIT
#include <airspace/altitude_code.h>

#include "airspace/readings/read_into.h"

#include <array>

namespace quorvel::airspace {

namespace {

constexpr std::uint32_t kMetricBit = 0x40;  // of 13 bits
constexpr std::uint32_t kQBit = 0x10;       // of 12 bits
constexpr std::int16_t kNoSuchCode = -1000; // hundreds of feet

constexpr unsigned fromGray(unsigned gray) {
    unsigned value = 0;
    for (; gray != 0; gray >>= 1) value ^= gray;
    return value;
}

// Hundreds of feet of the bits C1 A1 C2 A2 C4 A4 B1 B2 D2 B4 D4. Two Gray codes: D2 D4 A1 A2 A4 B1 B2 B4 counts steps
// of 500 ft, C1 C2 C4 those of 100 ft in them, forwards and backwards by turns, of which 7 stands for 5.
constexpr std::int16_t hundredsOf(unsigned code) {
    auto const bit = [code](unsigned position) { return code >> (10 - position) & 1U; };
    enum : unsigned { C1, A1, C2, A2, C4, A4, B1, B2, D2, B4, D4 };
    unsigned gray = 0;
    for (auto const position : {D2, D4, A1, A2, A4, B1, B2, B4}) gray = gray << 1 | bit(position);
    auto const fiveHundreds = static_cast<int>(fromGray(gray));
    auto hundreds = static_cast<int>(fromGray(bit(C1) << 2 | bit(C2) << 1 | bit(C4)));
    if (hundreds == 0 || hundreds == 5 || hundreds == 6) return kNoSuchCode;
    if (hundreds == 7) hundreds = 5;
    if (fiveHundreds % 2 != 0) hundreds = 6 - hundreds;
    auto const altitude = 5 * fiveHundreds + hundreds - 13;
    return altitude < -10 ? kNoSuchCode : static_cast<std::int16_t>(altitude);
}

constexpr auto kHundreds = [] {
    std::array<std::int16_t, 2048> hundreds{};
    for (unsigned code = 0; code != hundreds.size(); ++code) hundreds[code] = hundredsOf(code);
    return hundreds;
}();

} // namespace

void readSquitterInto(AltitudeCode& altitude, std::uint32_t code) {
    code &= 0xFFF;
    if (code == 0) return;
    auto const withoutQ = (code >> 5) << 4 | (code & 0xF);
    if ((code & kQBit) != 0) {
        altitude.coding = AltitudeCoding::Steps25Ft;
        altitude.altitudeFt.emplace(static_cast<std::int32_t>(25 * withoutQ) - 1000);
    } else if (auto const hundreds = kHundreds[withoutQ]; hundreds != kNoSuchCode) {
        altitude.coding = AltitudeCoding::Steps100Ft;
        altitude.altitudeFt.emplace(100 * hundreds);
    } else {
        altitude.coding = AltitudeCoding::Invalid;
    }
}

void readInto(AltitudeCode& altitude, std::uint32_t code) {
    if ((code & kMetricBit) != 0) {
        altitude.coding = AltitudeCoding::Metric;
    } else {
        readSquitterInto(altitude, (code >> 1 & 0xFC0) | (code & 0x3F));
    }
}

AltitudeCode readSquitterAltitudeCode(std::uint32_t code) {
    AltitudeCode altitude;
    readSquitterInto(altitude, code);
    return altitude;
}

AltitudeCode readAltitudeCode(std::uint32_t code) {
    AltitudeCode altitude;
    readInto(altitude, code);
    return altitude;
}

} // namespace quorvel::airspace
