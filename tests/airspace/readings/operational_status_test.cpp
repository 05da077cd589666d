// SPDX-License-Identifier: MIT
#include "airspace/readings/payload.h"

#include <airspace/extended_squitter.h>

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

using namespace quorvel::airspace;
using test::Payload;

namespace {

constexpr unsigned kAirborne = 0;
constexpr unsigned kSurface = 1;

Payload statusOf(unsigned subtype, unsigned version) {
    return Payload::ofType(31).with(6, 8, subtype).with(41, 43, version);
}

OperationalStatus read(Payload const& me) { return std::get<OperationalStatus>(readSquitterContent(me.bytes())); }

struct Flag {
    std::string_view name;
    std::optional<bool> OperationalStatus::*value;
};
struct Number {
    std::string_view name;
    std::optional<std::uint8_t> OperationalStatus::*value;
};

using Status = OperationalStatus;

std::vector<Flag> const kFlags{
    {"TCAS", &Status::isTcasOperational},
    {"CDTI", &Status::hasTrafficDisplay},
    {"1090ES in", &Status::receivesExtendedSquitter},
    {"UAT in", &Status::receivesUat},
    {"ARV", &Status::reportsAirVelocity},
    {"TS", &Status::reportsTargetState},
    {"POA", &Status::isPositionOffsetApplied},
    {"B2 low", &Status::isLowPower},
    {"NIC C", &Status::nicSupplementC},
    {"RA active", &Status::isAdvisoryActive},
    {"IDENT", &Status::isIdentActive},
    {"ATC", &Status::receivesAtcServices},
    {"single antenna", &Status::hasSingleAntenna},
    {"NIC A", &Status::nicSupplementA},
    {"NIC baro", &Status::isNicBaroChecked},
    {"track is heading", &Status::isTrackHeading},
    {"HRD", &Status::isMagneticNorth},
    {"SIL supplement", &Status::silSupplement},
};

std::vector<Number> const kNumbers{
    {"TC", &Status::targetChange},
    {"NACv", &Status::nacV},
    {"length and width", &Status::lengthWidth},
    {"SDA", &Status::sda},
    {"antenna offset", &Status::antennaOffset},
    {"NACp", &Status::nacP},
    {"BAQ", &Status::barometricQuality},
    {"GVA", &Status::gva},
    {"SIL", &Status::sil},
};

// Where a layout has a field.
struct FieldBits {
    std::string_view name;
    unsigned first, last;
};

FieldBits const* placeOf(std::vector<FieldBits> const& layout, std::string_view name) {
    for (auto const& place : layout) {
        if (place.name == name) return &place;
    }
    return nullptr;
}

// Each field of the layout reads its own bits and no others; each field that it does not name is none.
void expectLayout(unsigned subtype, unsigned version, std::vector<FieldBits> const& layout) {
    auto const empty = statusOf(subtype, version);
    auto const isTurned = [version](std::string_view name) { return version == 1 && name == "TCAS"; };
    for (auto const& flag : kFlags) {
        auto const* const place = placeOf(layout, flag.name);
        if (place == nullptr) {
            EXPECT_EQ(read(empty).*flag.value, std::nullopt) << flag.name;
            continue;
        }
        EXPECT_EQ(read(empty).*flag.value, isTurned(flag.name)) << flag.name;
        EXPECT_EQ(read(empty.with(place->first)).*flag.value, !isTurned(flag.name)) << flag.name;
    }
    for (auto const& number : kNumbers) {
        auto const* const place = placeOf(layout, number.name);
        if (place == nullptr) {
            EXPECT_EQ(read(empty).*number.value, std::nullopt) << number.name;
            continue;
        }
        for (unsigned value = 0; value < 1U << (place->last - place->first + 1); ++value)
            EXPECT_EQ(read(empty.with(place->first, place->last, value)).*number.value, value) << number.name;
    }
}

std::size_t valuesOf(OperationalStatus const& status) {
    std::size_t values = 0;
    for (auto const& flag : kFlags) values += (status.*flag.value).has_value() ? 1U : 0U;
    for (auto const& number : kNumbers) values += (status.*number.value).has_value() ? 1U : 0U;
    return values;
}

} // namespace

// RTCA DO-260B, 2.2.3.2.7.2
TEST(OperationalStatus, OfVersion2InTheAirHasItsLayout) {
    std::vector<FieldBits> const layout{{"TCAS", 11, 11}, {"1090ES in", 12, 12}, {"ARV", 15, 15}, {"TS", 16, 16},
        {"TC", 17, 18}, {"UAT in", 19, 19}, {"RA active", 27, 27}, {"IDENT", 28, 28}, {"single antenna", 30, 30},
        {"SDA", 31, 32}, {"NIC A", 44, 44}, {"NACp", 45, 48}, {"GVA", 49, 50}, {"SIL", 51, 52}, {"NIC baro", 53, 53},
        {"HRD", 54, 54}, {"SIL supplement", 55, 55}};
    expectLayout(kAirborne, 2, layout);
    expectLayout(kAirborne, 3, layout);
}

// RTCA DO-260B, 2.2.3.2.7.2
TEST(OperationalStatus, OfVersion2OnTheSurfaceHasItsLayout) {
    std::vector<FieldBits> const layout{{"1090ES in", 12, 12}, {"B2 low", 15, 15}, {"UAT in", 16, 16}, {"NACv", 17, 19},
        {"NIC C", 20, 20}, {"length and width", 21, 24}, {"RA active", 27, 27}, {"IDENT", 28, 28},
        {"single antenna", 30, 30}, {"SDA", 31, 32}, {"antenna offset", 33, 40}, {"NIC A", 44, 44}, {"NACp", 45, 48},
        {"SIL", 51, 52}, {"track is heading", 53, 53}, {"HRD", 54, 54}, {"SIL supplement", 55, 55}};
    expectLayout(kSurface, 2, layout);
    expectLayout(kSurface, 3, layout);
}

// RTCA DO-260A, 2.2.3.2.7.2
TEST(OperationalStatus, OfVersion1InTheAirHasItsLayout) {
    expectLayout(kAirborne, 1,
        {{"TCAS", 11, 11}, {"CDTI", 12, 12}, {"ARV", 15, 15}, {"TS", 16, 16}, {"TC", 17, 18}, {"RA active", 27, 27},
            {"IDENT", 28, 28}, {"ATC", 29, 29}, {"NIC A", 44, 44}, {"NACp", 45, 48}, {"BAQ", 49, 50}, {"SIL", 51, 52},
            {"NIC baro", 53, 53}, {"HRD", 54, 54}});
}

// RTCA DO-260A, 2.2.3.2.7.2
TEST(OperationalStatus, OfVersion1OnTheSurfaceHasItsLayout) {
    expectLayout(kSurface, 1,
        {{"POA", 11, 11}, {"CDTI", 12, 12}, {"B2 low", 15, 15}, {"length and width", 21, 24}, {"RA active", 27, 27},
            {"IDENT", 28, 28}, {"ATC", 29, 29}, {"NIC A", 44, 44}, {"NACp", 45, 48}, {"SIL", 51, 52},
            {"track is heading", 53, 53}, {"HRD", 54, 54}});
}

TEST(OperationalStatus, OfVersion0AndReservedVersionsHasItsTwoFieldsAlone) {
    for (auto const version : {0U, 4U, 5U, 6U, 7U}) {
        auto const status =
            read(statusOf(kAirborne, version).with(9, 24, 0x1234).with(25, 40, 0x5678).with(44, 56, 0x1FFF));
        EXPECT_EQ(status.version, version);
        EXPECT_EQ(status.capabilityClass, 0x1234);
        EXPECT_EQ(status.operationalMode, 0x5678);
        EXPECT_EQ(valuesOf(status), 0U) << version;
    }
}

TEST(OperationalStatus, OfVersion3SaysThatItIsReadAsVersion2) {
    for (unsigned version = 0; version < 8; ++version)
        EXPECT_EQ(read(statusOf(kAirborne, version)).isReadAsVersion2, version == 3) << version;
}

// RTCA DO-260B, 2.2.3.2.7.2.3 and 2.2.3.2.7.2.4: other formats of the fields are reserved
TEST(OperationalStatus, OfAReservedFormatHasNothingOfThatField) {
    auto const capability = read(statusOf(kAirborne, 2).with(9, 10, 1));
    EXPECT_EQ(capability.isTcasOperational, std::nullopt);
    EXPECT_EQ(capability.receivesExtendedSquitter, std::nullopt);
    EXPECT_TRUE(capability.sda.has_value());
    auto const mode = read(statusOf(kSurface, 2).with(25, 26, 2));
    EXPECT_EQ(mode.isAdvisoryActive, std::nullopt);
    EXPECT_EQ(mode.sda, std::nullopt);
    EXPECT_TRUE(mode.nacV.has_value());
    EXPECT_TRUE(read(statusOf(kSurface, 2).with(9, 10, 3)).lengthWidth.has_value());
}

// RTCA DO-260A and DO-260B, 2.2.3.2.7.2.11
TEST(AircraftSize, OfEachCodeIsThatOfTheTable) {
    double const sizes[][2] = {{15, 23}, {25, 28.5}, {25, 34}, {35, 33}, {35, 38}, {45, 39.5}, {45, 45}, {55, 45},
        {55, 52}, {65, 59.5}, {65, 67}, {75, 72.5}, {75, 80}, {85, 80}, {85, 90}};
    for (std::uint8_t version = 1; version < 4; ++version) {
        for (std::uint8_t code = 1; code < 16; ++code) {
            EXPECT_EQ(sizeOf(code, version)->lengthMetres, sizes[code - 1][0]) << int{code};
            EXPECT_EQ(sizeOf(code, version)->widthMetres, sizes[code - 1][1]) << int{code};
        }
        EXPECT_FALSE(sizeOf(16, version).has_value());
    }
    EXPECT_EQ(sizeOf(0, 1)->widthMetres, 11.5);
    EXPECT_FALSE(sizeOf(0).has_value());
}

// RTCA DO-260B, 2.2.3.2.7.2.4.7
TEST(AntennaOffset, OfEachLateralCodeIsThatOfTheTable) {
    std::optional<int> const right[] = {std::nullopt, -2, -4, -6, 0, 2, 4, 6};
    for (unsigned code = 0; code < 8; ++code)
        EXPECT_EQ(antennaOffsetOf(static_cast<std::uint8_t>(code << 5)).rightMetres, right[code]) << code;
}

TEST(AntennaOffset, OfEachLongitudinalCodeIsThatOfTheTable) {
    EXPECT_EQ(antennaOffsetOf(0).aftMetres, std::nullopt);
    EXPECT_FALSE(antennaOffsetOf(0).isCorrected);
    EXPECT_EQ(antennaOffsetOf(1).aftMetres, std::nullopt);
    EXPECT_TRUE(antennaOffsetOf(1).isCorrected);
    for (std::uint8_t code = 2; code < 32; ++code) {
        EXPECT_EQ(antennaOffsetOf(code).aftMetres, 2 * (code - 1)) << int{code};
        EXPECT_FALSE(antennaOffsetOf(code).isCorrected) << int{code};
    }
}
