// SPDX-License-Identifier: MIT
#include "inspect/standard_reading.h"

#include "inspect/field_names.h"
#include "support/captured_log.h"
#include "support/frames.h"
#include <airspace/register_fields.h>

#include <gmock/gmock.h>

#include <ostream>
#include <random>

namespace quorvel::inspect {

namespace {

using namespace modes::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string const kEvenPosition = fromHex("8D40621D58C382D690C8AC2863A7");
std::string const kOddPosition = fromHex("8D40621D58C386435CC412692AD6");

StandardReading readingOf(std::string const& frame, std::optional<unsigned> version = {}) {
    CapturedLog const log;
    return StandardReader(version, std::nullopt).read(frame);
}

// The value of a name as the standards have it, and the library's where it is another one.
struct Both {
    std::optional<Value> standard;
    std::optional<Value> library;
    bool operator==(Both const&) const = default;
};

// So that a failure shows them.
void PrintTo(Both const& both, std::ostream* out) {
    for (auto const& one : {both.standard, both.library}) *out << (one ? testing::PrintToString(*one) : "none") << " ";
}

std::optional<Value> valueIn(NamedValues const& values, std::string_view name) {
    auto const* const value = values.find(name);
    return value ? std::optional(*value) : std::nullopt;
}

Both bothOf(StandardReading const& reading, std::string_view name) {
    return {valueIn(reading.values, name), valueIn(reading.libraryValues, name)};
}

} // namespace

TEST(StandardReadings, HaveTheLibrarysValueWhereItDiffers) {
    EXPECT_EQ(bothOf(readingOf(kEvenPosition), "altitude"), (Both{38000, 38050}));
    auto const velocity = readingOf(fromHex("8D485020994409940838175B284F"));
    EXPECT_EQ(bothOf(velocity, "vertical_rate"), (Both{-832, -64}));
    EXPECT_EQ(bothOf(velocity, "vr_source"), (Both{std::string("GNSS"), std::string("BARO")}));
    EXPECT_EQ(velocity.libraryValues.find("groundspeed"), nullptr);
    EXPECT_EQ(velocity.libraryValues.find("track"), nullptr);
    EXPECT_EQ(velocity.libraryValues.find("nac_v"), nullptr);
}

TEST(StandardReadings, HaveNoValueOfTheLibraryWhereBothAgree) {
    EXPECT_TRUE(readingOf(squitter(0x4840D6, identification("KLM1023"))).libraryValues.empty());
    EXPECT_TRUE(readingOf(squitter(0x4840D6, operationalStatus(2, true))).libraryValues.empty());
    EXPECT_TRUE(readingOf(shortFrame(4, altitudeCode(18800), 0x4840D6)).libraryValues.empty());
    EXPECT_TRUE(readingOf(shortFrame(5, identityCode(07700), 0x4840D6)).libraryValues.empty());
}

TEST(StandardReadings, HaveTheLibrarysValueWhereTheStandardsHaveNone) {
    EXPECT_EQ(bothOf(readingOf(shortFrame(4, 0, 0x4840D6)), "altitude"), (Both{std::nullopt, -1000}));
}

TEST(StandardReadings, ReadGillhamCodes) {
    constexpr unsigned kC2 = 1U << 10;
    EXPECT_EQ(bothOf(readingOf(shortFrame(4, kC2, 0x4840D6)), "altitude"), (Both{-1000, 24600}));
}

TEST(StandardReadings, OfAnAirspeedSayThatTheLibraryDoesNotReadIt) {
    auto const reading = readingOf(fromHex("8DA05F219B06B6AF189400CBC33F"));
    EXPECT_EQ(bothOf(reading, "airspeed").standard, Value(375));
    EXPECT_TRUE(reading.isUnreadByLibrary);
    EXPECT_FALSE(readingOf(kEvenPosition).isUnreadByLibrary);
}

TEST(StandardReadings, NameWhatASquitterIs) {
    EXPECT_EQ(readingOf(kEvenPosition).messageName, "airborne position");
    EXPECT_EQ(readingOf(longFrame(18, 3U << 24 | 0x4840D6, payload(0), 0)).messageName, "coarse position");
    EXPECT_EQ(readingOf(shortFrame(4, 0, 0)).messageName, "");
}

TEST(StandardReadings, AreForTheVersionThatWasAskedFor) {
    auto const targetState = squitter(0x4840D6, payload(29, 2));
    EXPECT_EQ(readingOf(targetState).version, std::nullopt);
    EXPECT_TRUE(readingOf(targetState).values.find("sil"));
    EXPECT_EQ(readingOf(targetState, 0).version, 0);
    EXPECT_FALSE(readingOf(targetState, 0).values.find("sil"));
    EXPECT_EQ(readingOf(shortFrame(4, 0, 0), 0).version, std::nullopt);
}

TEST(StandardReadings, AreForTheVersionThatTheAircraftHasAnnounced) {
    CapturedLog const log;
    StandardReader reader(std::nullopt, std::nullopt);
    EXPECT_EQ(reader.read(squitter(0x40621D, identification("KLM1023"))).version, std::nullopt);
    reader.read(squitter(0x40621D, operationalStatus(1)));
    EXPECT_EQ(reader.read(kEvenPosition).version, 1);
    EXPECT_EQ(reader.read(squitter(0x4840D6, identification("KLM1023"))).version, std::nullopt);
}

TEST(StandardReadings, HaveTheMostLikelyRegisterAndItsValues) {
    auto const sure = readingOf(fromHex("A0001838CA380031440000F24177"));
    ASSERT_TRUE(sure.registerChoice);
    EXPECT_EQ(sure.registerChoice->best, airspace::Register::SelectedIntention);
    EXPECT_FALSE(sure.registerChoice->isUnsure);
    EXPECT_EQ(valueIn(sure.values, "selected_altitude_mcp"), Value(38000));
    EXPECT_EQ(valueIn(sure.values, "bds"), Value(std::string("4,0")));

    auto const nothing = readingOf(longFrame(20, altitudeCode(18800), std::string(7, '\xFF'), 0x4840D6));
    ASSERT_TRUE(nothing.registerChoice);
    EXPECT_EQ(nothing.registerChoice->best, std::nullopt);
    EXPECT_EQ(valueIn(nothing.values, "altitude"), Value(18800));
    EXPECT_FALSE(nothing.values.find("bds_candidates"));
    EXPECT_FALSE(readingOf(kEvenPosition).registerChoice);
}

TEST(StandardReadings, MakeAPositionOfAPair) {
    StandardReader reader(std::nullopt, std::nullopt);
    EXPECT_FALSE(reader.read(kEvenPosition).position);
    auto const position = reader.read(kOddPosition).position;
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->latitude, 52.26578, 1e-5);
    EXPECT_NEAR(position->longitude, 3.93891, 1e-5);
    EXPECT_FALSE(reader.read(squitter(0x40621D, identification("KLM1023"))).position);
}

TEST(StandardReadings, MakeNoPositionOfFramesTooFarApart) {
    StandardReader reader(std::nullopt, std::nullopt);
    reader.read(kEvenPosition, 1000);
    EXPECT_FALSE(reader.read(kOddPosition, 20'000).position);
}

TEST(StandardReadings, MakeAPositionOnTheSurfaceNearTheLocation) {
    auto const even = fromHex("8C4841753AAB238733C8CD4020B1");
    auto const odd = fromHex("8C4841753A8A35323FAEBDAC702D");
    StandardReader nowhere(std::nullopt, std::nullopt);
    nowhere.read(even);
    EXPECT_FALSE(nowhere.read(odd).position);
    StandardReader reader(std::nullopt, airspace::Place{51.990, 4.375});
    reader.read(even);
    auto const position = reader.read(odd).position;
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->latitude, 52.32, 0.01);
    EXPECT_NEAR(position->longitude, 4.73, 0.01);
}

TEST(StandardReadings, SayWhatWasRepaired) {
    auto const intact = squitter(0x4840D6, identification("KLM1023"));
    auto const reading = readingOf(withBitsInverted(intact, {40, 80}));
    EXPECT_EQ(reading.bytes, intact);
    EXPECT_THAT(reading.repairedBits, ElementsAre(41, 81));
    EXPECT_EQ(valueIn(reading.values, "callsign"), Value(std::string("KLM1023")));
    EXPECT_EQ(reading.parity->remainder(), 0U);
}

TEST(StandardReadings, OfAFrameBeyondRepairAreAsReceived) {
    auto const reading = readingOf(withBitsInverted(squitter(0x4840D6, identification("KLM1023")), {40, 60, 80}));
    EXPECT_EQ(reading.problem, "it is damaged beyond repair: the fields are as received");
    EXPECT_EQ(reading.confidence, std::nullopt);
    EXPECT_EQ(reading.address, std::nullopt);
    EXPECT_EQ(valueIn(reading.values, "crc_ok"), Value(false));
    EXPECT_TRUE(reading.libraryValues.empty());
}

TEST(StandardReadings, SayWhyAFrameCannotBeRead) {
    EXPECT_EQ(readingOf(fromHex("8D4840D6202CC3")).problem, "a frame of this format has 112 bits, this one has 56");
    EXPECT_EQ(readingOf(shortFrame(1, 0, 0)).problem, "this format is reserved");
    EXPECT_EQ(readingOf(fromHex("7700")).problem, "Mode A/C replies are not decoded");
    EXPECT_EQ(readingOf(longFrame(24, 0, payload(0), 0)).problem, "");
}

TEST(StandardReadings, HaveATitleForEachValue) {
    CapturedLog const log;
    std::mt19937 random(1);
    StandardReader reader(std::nullopt, std::nullopt);
    auto const expectTitles = [](NamedValues const& values) {
        for (auto const& [name, value] : values) EXPECT_TRUE(titleOfValue(name)) << name;
    };
    auto const bits = [&random] { return static_cast<std::uint32_t>(random()); };
    for (unsigned i = 0; i < 64'000; ++i) {
        std::string me(7, '\0');
        for (auto& byte : me) byte = static_cast<char>(bits());
        me[0] = static_cast<char>(i); // every type code and subtype
        expectTitles(reader.read(squitter(0x4840D6, me)).values);
        if (i % 8 != 0) continue;
        for (unsigned const format : {0U, 4U, 5U, 11U, 16U, 18U, 20U, 24U}) {
            auto const head = bits() & 0x7FFFFFF;
            auto const frame = format < 16 ? shortFrame(format, head, 0) : longFrame(format, head, me, 0);
            expectTitles(reader.read(frame).values);
        }
        for (auto const number : airspace::kRegisters) {
            NamedValues values;
            airspace::visitFields(values, airspace::readRegister(me, number));
            expectTitles(values);
        }
    }
}

} // namespace quorvel::inspect
