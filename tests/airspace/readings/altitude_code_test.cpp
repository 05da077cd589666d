// SPDX-License-Identifier: MIT
#include <airspace/altitude_code.h>

#include <gtest/gtest.h>

#include <map>

using namespace quorvel::airspace;

namespace {

constexpr std::uint32_t kFieldSize = 1U << 13;

// The 13-bit code of a multiple of 100 ft, made the way a transponder makes it: by counting up from the lowest altitude
// and turning one bit at each step. ICAO Annex 10 Vol. IV, appendix to chapter 3.
std::map<std::uint32_t, int> modeCAltitudes() {
    // digits C1 C2 C4 within 500 ft, up and down by turns
    constexpr std::uint32_t kC1 = 0x1000, kC2 = 0x0400, kC4 = 0x0100;
    constexpr std::uint32_t kHundreds[] = {kC4, kC4 | kC2, kC2, kC2 | kC1, kC1};
    // what turns at each step of 500 ft: the ruler sequence, from the fastest digit
    constexpr std::uint32_t kRuler[] = {0x0002 /*B4*/, 0x0008 /*B2*/, 0x0020 /*B1*/, 0x0080 /*A4*/, 0x0200 /*A2*/,
        0x0800 /*A1*/, 0x0001 /*D4*/, 0x0004 /*D2*/};
    std::map<std::uint32_t, int> altitudes;
    std::uint32_t slow = 0;
    for (int step = 0; step < 256; ++step) {
        if (step > 0) {
            unsigned turned = 0;
            while ((step >> turned & 1) == 0) ++turned;
            slow ^= kRuler[turned];
        }
        for (int i = 0; i < 5; ++i) {
            auto const altitude = 500 * step + 100 * i - 1200;
            if (altitude >= -1000) altitudes[slow | kHundreds[step % 2 == 0 ? i : 4 - i]] = altitude;
        }
    }
    return altitudes;
}

std::uint32_t withoutMetricBit(std::uint32_t code) { return (code >> 1 & 0xFC0) | (code & 0x3F); }

} // namespace

TEST(AltitudeCode, OfZeroIsNotKnown) {
    EXPECT_EQ(readAltitudeCode(0).coding, AltitudeCoding::None);
    EXPECT_EQ(readAltitudeCode(0).altitudeFt, std::nullopt);
    EXPECT_EQ(readSquitterAltitudeCode(0).coding, AltitudeCoding::None);
}

TEST(AltitudeCode, WithTheQBitCountsStepsOf25Feet) {
    for (std::uint32_t n = 0; n < 2048; ++n) {
        auto const code = (n & 0x7E0) << 2 | (n & 0x10) << 1 | 0x10 | (n & 0xF);
        auto const altitude = readAltitudeCode(code);
        ASSERT_EQ(altitude.coding, AltitudeCoding::Steps25Ft) << n;
        ASSERT_EQ(altitude.altitudeFt, 25 * static_cast<int>(n) - 1000) << n;
    }
}

TEST(AltitudeCode, WithoutTheQBitIsThatOfModeC) {
    auto const altitudes = modeCAltitudes();
    ASSERT_EQ(altitudes.size(), 1278U);
    std::size_t valid = 0;
    for (std::uint32_t code = 1; code < kFieldSize; ++code) {
        if ((code & 0x50) != 0) continue;
        auto const altitude = readAltitudeCode(code);
        if (auto const known = altitudes.find(code); known != altitudes.end()) {
            ++valid;
            ASSERT_EQ(altitude.coding, AltitudeCoding::Steps100Ft) << code;
            ASSERT_EQ(altitude.altitudeFt, known->second) << code;
        } else {
            ASSERT_EQ(altitude.coding, AltitudeCoding::Invalid) << code;
            ASSERT_EQ(altitude.altitudeFt, std::nullopt) << code;
        }
    }
    EXPECT_EQ(valid, altitudes.size());
}

TEST(AltitudeCode, OfModeCHasTheBoundsAndTheKnownPointsOfTheTable) {
    EXPECT_EQ(readAltitudeCode(0x0400).altitudeFt, -1000);        // C2
    EXPECT_EQ(readAltitudeCode(0x040A).altitudeFt, 0);            // C2 B2 B4
    EXPECT_EQ(readAltitudeCode(0x0100).altitudeFt, std::nullopt); // -1,200 ft is below the table
    EXPECT_EQ(readAltitudeCode(0x0104).altitudeFt, 126700);       // C4 D2
}

TEST(AltitudeCode, WithTheMetricBitHasNoValue) {
    for (std::uint32_t code = 0; code < kFieldSize; ++code) {
        if ((code & 0x40) == 0) continue;
        ASSERT_EQ(readAltitudeCode(code).coding, AltitudeCoding::Metric) << code;
        ASSERT_EQ(readAltitudeCode(code).altitudeFt, std::nullopt) << code;
    }
}

TEST(AltitudeCode, OfSquittersIsTheSameWithoutTheMetricBit) {
    for (std::uint32_t code = 0; code < kFieldSize; ++code) {
        if ((code & 0x40) != 0) continue;
        auto const altitude = readSquitterAltitudeCode(withoutMetricBit(code));
        ASSERT_EQ(altitude.coding, readAltitudeCode(code).coding) << code;
        ASSERT_EQ(altitude.altitudeFt, readAltitudeCode(code).altitudeFt) << code;
    }
}
