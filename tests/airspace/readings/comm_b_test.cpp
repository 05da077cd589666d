// SPDX-License-Identifier: MIT
#include "airspace/readings/named_values.h"
#include "airspace/readings/register_writer.h"

#include <airspace/register_fields.h>

#include <gtest/gtest.h>

#include <random>
#include <type_traits>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using Json = nlohmann::json;

namespace {

Json valuesOf(RegisterWriter const& writer, Register number) {
    NamedValues read;
    visitFields(read, readRegister(writer.bytes(), number));
    return read.values;
}

// A value behind its status bit: where it is, and what its lowest and highest code mean.
struct StatusField {
    Register number;
    std::string name;
    unsigned status;
    unsigned last;
    double step;
    bool isSigned;
    double offset = 0.0;
};

std::vector<StatusField> const kStatusFields{
    // ICAO Doc 9871, table A-2-64
    {Register::SelectedIntention, "selected_altitude_mcp", 1, 13, 16, false},
    {Register::SelectedIntention, "selected_altitude_fms", 14, 26, 16, false},
    {Register::SelectedIntention, "baro_pressure_setting", 27, 39, 0.1, false, 800},
    // table A-2-68
    {Register::RoutineMeteorology, "static_pressure", 35, 46, 1, false},
    {Register::RoutineMeteorology, "turbulence", 47, 49, 1, false},
    {Register::RoutineMeteorology, "humidity", 50, 56, 100.0 / 64, false},
    // table A-2-69
    {Register::HazardMeteorology, "turbulence", 1, 3, 1, false},
    {Register::HazardMeteorology, "wind_shear", 4, 6, 1, false},
    {Register::HazardMeteorology, "microburst", 7, 9, 1, false},
    {Register::HazardMeteorology, "icing", 10, 12, 1, false},
    {Register::HazardMeteorology, "wake_vortex", 13, 15, 1, false},
    {Register::HazardMeteorology, "static_air_temperature", 16, 26, 0.25, true},
    {Register::HazardMeteorology, "static_pressure", 27, 38, 1, false},
    {Register::HazardMeteorology, "radio_height", 39, 51, 16, false},
    // table A-2-80
    {Register::TrackAndTurn, "roll", 1, 11, 45.0 / 256, true},
    {Register::TrackAndTurn, "groundspeed", 24, 34, 2, false},
    {Register::TrackAndTurn, "track_rate", 35, 45, 8.0 / 256, true},
    {Register::TrackAndTurn, "true_airspeed", 46, 56, 2, false},
    // table A-2-83
    {Register::AirReferencedState, "indicated_airspeed", 13, 23, 1, false},
    {Register::AirReferencedState, "mach", 24, 33, 0.008, false},
    {Register::AirReferencedState, "true_airspeed", 34, 46, 0.5, false},
    {Register::AirReferencedState, "vertical_rate", 47, 56, 64, true},
    // table A-2-96
    {Register::HeadingAndSpeed, "indicated_airspeed", 13, 23, 1, false},
    {Register::HeadingAndSpeed, "mach", 24, 34, 2.048 / 512, false},
    {Register::HeadingAndSpeed, "baro_vertical_rate", 35, 45, 32, true},
    {Register::HeadingAndSpeed, "inertial_vertical_rate", 46, 56, 32, true},
};

struct DirectionField {
    Register number;
    std::string name;
    unsigned status;
    unsigned last;
};

std::vector<DirectionField> const kDirections{
    {Register::TrackAndTurn, "true_track", 12, 23},
    {Register::AirReferencedState, "magnetic_heading", 1, 12},
    {Register::HeadingAndSpeed, "magnetic_heading", 1, 12},
};

} // namespace

TEST(CommB, EveryValueBehindAStatusBitIsReadOverItsRange) {
    for (auto const& field : kStatusFields) {
        auto const width = field.last - field.status;
        long const low = field.isSigned ? -(1L << (width - 1)) : 0;
        long const high = (1L << (field.isSigned ? width - 1 : width)) - 1;
        for (auto const code : {low, low + 1, 0L, 1L, high / 2, high}) {
            RegisterWriter writer;
            writer.number(field.status, field.status, 1).number(field.status + 1, field.last, code);
            auto const values = valuesOf(writer, field.number);
            ASSERT_TRUE(values.contains(field.name)) << field.name;
            EXPECT_NEAR(values[field.name].get<double>(), field.offset + static_cast<double>(code) * field.step, 1e-9)
                << field.name << " " << code;
        }
    }
}

TEST(CommB, NoValueIsReadWithoutItsStatusBit) {
    for (auto const& field : kStatusFields) {
        RegisterWriter writer;
        writer.number(field.status + 1, field.last, -1);
        EXPECT_FALSE(valuesOf(writer, field.number).contains(field.name)) << field.name;
    }
    for (auto const& field : kDirections) {
        RegisterWriter writer;
        writer.number(field.status + 1, field.last, -1);
        EXPECT_FALSE(valuesOf(writer, field.number).contains(field.name)) << field.name;
    }
}

TEST(CommB, DirectionsGoOnceAround) {
    for (auto const& field : kDirections) {
        for (int code = 0; code < 2048; ++code) { // -180 degrees is 180
            RegisterWriter writer;
            writer.number(field.status, field.status, 1).number(field.status + 1, field.last, code);
            EXPECT_DOUBLE_EQ(valuesOf(writer, field.number)[field.name], code * 90.0 / 512);
        }
    }
}

TEST(CommB, ModesAndSourceOfTheTargetAltitudeAreRead) { // ICAO Doc 9871, table A-2-64
    auto const values = valuesOf(RegisterWriter().number(48, 51, 0b1100), Register::SelectedIntention);
    EXPECT_EQ(values, (Json{{"vnav_mode", true}, {"altitude_hold_mode", false}, {"approach_mode", false}}));
    std::vector<std::string> const sources{"unknown", "aircraft_altitude", "mcp_fcu", "fms"};
    for (std::size_t code = 0; code < sources.size(); ++code) {
        auto const writer = RegisterWriter().number(54, 56, 0b100 | static_cast<long>(code));
        EXPECT_EQ(valuesOf(writer, Register::SelectedIntention), (Json{{"target_altitude_source", sources[code]}}));
    }
}

TEST(CommB, EveryFlagOfTheDataLinkCapabilityIsRead) { // ICAO Doc 9871, table A-2-16
    std::vector<std::pair<unsigned, std::string>> const flags{{9, "config"}, {15, "overlay_command_capability"},
        {16, "acas_operational"}, {24, "transponder_level5"}, {25, "mode_s_specific_services"},
        {33, "aircraft_identification_capability"}, {34, "squitter_capability"}, {35, "surveillance_identifier_code"},
        {36, "common_usage_gicb_capability"}, {37, "acas_hybrid_surveillance"}, {38, "acas_resolution_advisory"}};
    for (auto const& [position, name] : flags) {
        auto const values = valuesOf(RegisterWriter().number(position, position, 1), Register::DataLinkCapability);
        for (auto const& [any, other] : flags) EXPECT_EQ(values[other], other == name) << name << " " << other;
    }
    auto const numbers =
        valuesOf(RegisterWriter().number(17, 23, 0x55).number(26, 28, 5).number(29, 32, 9).number(41, 56, 0xA5C3),
            Register::DataLinkCapability);
    EXPECT_EQ(numbers["mode_s_subnetwork_version"], 0x55);
    EXPECT_EQ(numbers["uplink_elm_throughput"], 5);
    EXPECT_EQ(numbers["downlink_elm_throughput"], 9);
    EXPECT_EQ(numbers["dte_status"], 0xA5C3);
}

TEST(CommB, TheVersionOfAcasHasItsHighBitBehindItsLow) { // ICAO Doc 9871, table A-2-16
    auto const version = [](unsigned position) {
        return valuesOf(
            RegisterWriter().number(position, position, 1), Register::DataLinkCapability)["acas_rtca_version"];
    };
    EXPECT_EQ(version(39), 1);
    EXPECT_EQ(version(40), 2);
}

TEST(CommB, EveryServedRegisterHasItsFlag) { // ICAO Doc 9871, table A-2-23
    std::vector<std::string> const served{"0,5", "0,6", "0,7", "0,8", "0,9", "0,A", "2,0", "2,1", "4,0", "4,1", "4,2",
        "4,3", "4,4", "4,5", "4,8", "5,0", "5,1", "5,2", "5,3", "5,4", "5,5", "5,6", "5,F", "6,0", "", "", "E,1", "E,2",
        "F,1"};
    for (unsigned i = 0; i < served.size(); ++i) {
        auto const values = valuesOf(RegisterWriter().number(i + 1, i + 1, 1), Register::CommonUsageCapability);
        auto const expected = served[i].empty() ? Json::array() : Json::array({served[i]});
        EXPECT_EQ(values["supported_bds"], expected) << i + 1;
    }
    auto const capability = std::get<CommonUsageCapability>(
        readRegister(RegisterWriter().number(9, 9, 1).bytes(), Register::CommonUsageCapability));
    EXPECT_TRUE(capability.serves(Register::SelectedIntention));
    EXPECT_FALSE(capability.serves(Register::TrackAndTurn));
    EXPECT_FALSE(capability.serves(0));
    EXPECT_FALSE((CommonUsageCapability{0x1FFFFFFF}.serves(0x70)));
}

TEST(CommB, EveryCodeOfTheAlphabetIsRead) { // ICAO Annex 10 Vol. IV, table 3-8
    for (int code = 0; code < 64; ++code) {
        char expected = '#';
        if (code >= 1 && code <= 26) expected = static_cast<char>('A' + code - 1);
        if (code >= 48 && code <= 57) expected = static_cast<char>('0' + code - 48);
        auto const writer = RegisterWriter().number(9, 14, code).number(15, 56, 0x20820820820); // blanks
        auto const text = valuesOf(writer, Register::AircraftIdentification)["callsign"];
        EXPECT_EQ(text, code == 32 ? std::string() : std::string(1, expected)) << code;
    }
}

TEST(CommB, RegistrationAndAirlineAreReadByTheirStatusBits) { // ICAO Doc 9871, table A-2-33
    RegisterWriter writer;
    for (unsigned i = 0; i < 7; ++i) writer.number(2 + 6 * i, 7 + 6 * i, i + 1); // A to G
    writer.number(45, 50, 'Q' - '@').number(51, 56, 'R' - '@');
    EXPECT_EQ(valuesOf(writer, Register::AircraftRegistration), Json::object());
    EXPECT_EQ(valuesOf(writer.number(1, 1, 1), Register::AircraftRegistration), (Json{{"registration", "ABCDEFG"}}));
    EXPECT_EQ(valuesOf(writer.number(44, 44, 1), Register::AircraftRegistration),
        (Json{{"registration", "ABCDEFG"}, {"airline", "QR"}}));
}

TEST(CommB, WindIsReadByItsStatusBitAndTemperatureByTheFigureOfMerit) { // ICAO Doc 9871, table A-2-68
    RegisterWriter writer;
    writer.number(6, 14, 511).number(15, 23, 511).number(24, 34, -1);
    EXPECT_EQ(valuesOf(writer, Register::RoutineMeteorology), (Json{{"figure_of_merit", 0}}));
    auto const values = valuesOf(writer.number(1, 4, 2).number(5, 5, 1), Register::RoutineMeteorology);
    EXPECT_EQ(values["figure_of_merit"], 2);
    EXPECT_EQ(values["wind_speed"], 511);
    EXPECT_DOUBLE_EQ(values["wind_direction"], 511 * 180.0 / 256);
    EXPECT_DOUBLE_EQ(values["static_air_temperature"], -0.25);
}

TEST(CommB, BytesOfAnotherNumberAndUnknownRegistersGiveNothing) {
    for (auto const number : kRegisters) {
        for (std::size_t size = 0; size < 15; ++size) {
            auto const content = readRegister(std::string(size, '\xFF'), number);
            EXPECT_EQ(std::holds_alternative<std::monostate>(content), size != 7) << size;
        }
    }
    EXPECT_TRUE(std::holds_alternative<std::monostate>(readRegister(std::string(7, '\xFF'), Register{0x61})));
    EXPECT_TRUE(fittingRegisters(std::string(8, '\x20')).isEmpty());
}

TEST(CommB, ContentsAreCopiedAsBytes) { EXPECT_TRUE(std::is_trivially_copyable_v<RegisterContent>); }

TEST(FittingRegisters, NoneFitBytesOfZero) { EXPECT_TRUE(fittingRegisters(std::string(7, '\0')).isEmpty()); }

TEST(FittingRegisters, AValueWithoutItsStatusBitFitsNot) {
    for (auto const& field : kStatusFields) {
        for (auto position = field.status + 1; position <= field.last; ++position) {
            auto const bytes = RegisterWriter().number(position, position, 1).bytes();
            EXPECT_FALSE(fittingRegisters(bytes).contains(field.number)) << field.name << " " << position;
        }
    }
}

TEST(FittingRegisters, ReservedBitsAreZero) {
    struct Reserved {
        Register number;
        RegisterWriter base;
        std::vector<unsigned> positions;
    };
    auto const positions = [](unsigned first, unsigned last) {
        std::vector<unsigned> all;
        for (auto position = first; position <= last; ++position) all.push_back(position);
        return all;
    };
    std::vector<Reserved> const registers{
        {Register::DataLinkCapability, RegisterWriter().number(1, 8, 0x10), positions(10, 14)},
        {Register::CommonUsageCapability, RegisterWriter().number(7, 7, 1), positions(30, 56)},
        {Register::CommonUsageCapability, RegisterWriter().number(7, 7, 1), positions(25, 26)},
        {Register::ActiveAdvisory, RegisterWriter().number(1, 8, 0x30), positions(16, 22)},
        {Register::SelectedIntention, RegisterWriter().value(27, 39, 213, 0.1), positions(40, 47)},
        {Register::SelectedIntention, RegisterWriter().value(27, 39, 213, 0.1), positions(52, 53)},
    };
    for (auto const& [number, base, reserved] : registers) {
        EXPECT_TRUE(fittingRegisters(base.bytes()).contains(number)) << nameOf(number).text();
        for (auto const position : reserved) {
            auto damaged = base;
            damaged.number(position, position, 1);
            EXPECT_FALSE(fittingRegisters(damaged.bytes()).contains(number)) << nameOf(number).text() << position;
        }
    }
}

TEST(FittingRegisters, WhatCannotFlyFitsNot) {
    auto const fits = [](RegisterWriter const& writer, Register number) {
        return fittingRegisters(writer.bytes()).contains(number);
    };
    auto const turn = [&](unsigned status, unsigned last, double value, double step) {
        return fits(RegisterWriter().value(status, last, value, step), Register::TrackAndTurn);
    };
    EXPECT_TRUE(turn(1, 11, -34.9, 45.0 / 256));
    EXPECT_FALSE(turn(1, 11, -35.2, 45.0 / 256));
    EXPECT_FALSE(turn(1, 11, 35.2, 45.0 / 256));
    EXPECT_TRUE(turn(24, 34, 600, 2));
    EXPECT_FALSE(turn(24, 34, 602, 2));
    EXPECT_FALSE(turn(46, 56, 602, 2));
    auto const speeds = [&](double ground, double air) {
        return fits(RegisterWriter().value(24, 34, ground, 2).value(46, 56, air, 2), Register::TrackAndTurn);
    };
    EXPECT_TRUE(speeds(500, 300));
    EXPECT_FALSE(speeds(502, 300));
    EXPECT_FALSE(speeds(298, 500));
    auto const air = [&](unsigned status, unsigned last, double value, double step) {
        return fits(RegisterWriter().value(status, last, value, step), Register::HeadingAndSpeed);
    };
    EXPECT_TRUE(air(13, 23, 500, 1));
    EXPECT_FALSE(air(13, 23, 501, 1));
    EXPECT_TRUE(air(24, 34, 1.0, 0.004));
    EXPECT_FALSE(air(24, 34, 1.004, 0.004));
    EXPECT_TRUE(air(35, 45, -5984, 32));
    EXPECT_FALSE(air(35, 45, -6016, 32));
    EXPECT_FALSE(air(46, 56, 6016, 32));
}

TEST(FittingRegisters, VersionAndOverlayCommandGoTogether) { // ICAO Doc 9871, table A-2-16
    auto const fits = [](long overlay, long version) {
        auto const writer = RegisterWriter().number(1, 8, 0x10).number(15, 15, overlay).number(17, 23, version);
        return fittingRegisters(writer.bytes()).contains(Register::DataLinkCapability);
    };
    EXPECT_TRUE(fits(0, 4));
    EXPECT_TRUE(fits(1, 5));
    EXPECT_FALSE(fits(0, 5));
    EXPECT_FALSE(fits(1, 4));
}

TEST(FittingRegisters, AreNamedInOrder) {
    RegisterSet set;
    EXPECT_FALSE(set.only());
    set.insert(Register::HeadingAndSpeed);
    EXPECT_EQ(set.only(), Register::HeadingAndSpeed);
    set.insert(Register::TrackAndTurn);
    EXPECT_FALSE(set.only());
    std::string names;
    for (auto const number : set.numbers()) names += std::string(nameOf(number).text()) + " ";
    EXPECT_EQ(names, "5,0 6,0 ");
    EXPECT_NE(set, RegisterSet());
}
