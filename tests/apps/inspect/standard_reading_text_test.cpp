// SPDX-License-Identifier: MIT
#include "inspect/standard_reading_text.h"

#include "support/captured_log.h"
#include "support/frames.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace quorvel::inspect {

namespace {

using namespace modes::test;
using ::testing::HasSubstr;
using ::testing::Not;

StandardReading readingOf(std::string const& frame, std::optional<unsigned> version = {}) {
    CapturedLog const log;
    return StandardReader(version, std::nullopt).read(frame);
}

nlohmann::json jsonOf(std::string const& frame) { return nlohmann::json::parse(readingJson(readingOf(frame))); }

std::string const kVelocity = fromHex("8D485020994409940838175B284F");

} // namespace

TEST(StandardReadingText, ShowsValuesWithUnitsAndTheLibrarysWhereTheyDiffer) {
    EXPECT_EQ(readingText(readingOf(kVelocity)), "8D485020994409940838175B284F\n"
                                                 "  Format            DF17, extended squitter\n"
                                                 "  Confidence        high: its address is announced or known\n"
                                                 "  Parity            right\n"
                                                 "  Address           485020\n"
                                                 "  Message           airborne velocity, type code 19, register 0,9\n"
                                                 "\n"
                                                 "  Capability                    5, level 2 or above, airborne\n"
                                                 "  Subtype                       1\n"
                                                 "  Intent changes                no\n"
                                                 "  IFR capability                yes\n"
                                                 "  NACv                          0\n"
                                                 "  Velocity to the east          -8 knots\n"
                                                 "  Velocity to the north         -159 knots\n"
                                                 "  Ground speed                  159.201 knots\n"
                                                 "  Track                         182.88 degrees\n"
                                                 "  Vertical rate                 -832 feet per minute (library: -64)\n"
                                                 "  Vertical rate source          GNSS (library: BARO)\n"
                                                 "  GNSS minus pressure altitude  550 feet\n");
}

TEST(StandardReadingText, ShowsThatThereIsNoValueWhereTheLibraryHasOne) {
    EXPECT_THAT(
        readingText(readingOf(shortFrame(4, 0, 0x4840D6))), HasSubstr("  Altitude          none (library: -1000)\n"));
}

TEST(StandardReadingText, SaysWhichRegisterAndHowSure) {
    EXPECT_THAT(readingText(readingOf(fromHex("A0001838CA380031440000F24177"))),
        HasSubstr("  Register          4,0, selected vertical intention; score 1.00\n"));
    auto unsure = readingOf(fromHex("A0001838CA380031440000F24177"));
    unsure.registerChoice = airspace::RegisterChoice{airspace::Register::TrackAndTurn, 0.5, true};
    EXPECT_THAT(readingText(unsure), HasSubstr("  Register          5,0, track and turn; unsure, score 0.50\n"));
    unsure.registerChoice = airspace::RegisterChoice{};
    EXPECT_THAT(readingText(unsure), HasSubstr("  Register          none that is known\n"));
}

TEST(StandardReadingText, SaysForWhichVersionAPayloadIsRead) {
    EXPECT_THAT(readingText(readingOf(kVelocity, 1)), HasSubstr("  ADS-B version     1\n"));
    EXPECT_THAT(readingText(readingOf(kVelocity)), Not(HasSubstr("version")));
}

TEST(StandardReadingText, SaysWhatTheLibraryDoesNotRead) {
    EXPECT_THAT(readingText(readingOf(fromHex("8DA05F219B06B6AF189400CBC33F"))),
        HasSubstr("  Library           does not read this message\n"));
}

TEST(StandardReadingText, SaysThatNothingIsReadOfAMessageThatAVersionDoesNotHave) {
    auto const targetState = squitter(0x4840D6, payload(29, 2));
    EXPECT_THAT(readingText(readingOf(targetState, 0)),
        HasSubstr("  Contents          not read: reserved, not public, or not of this version\n"));
    EXPECT_THAT(readingText(readingOf(targetState, 2)), Not(HasSubstr("Contents")));
}

TEST(StandardReadingText, IndentsWhatGoesOnInTheNextLine) {
    EXPECT_THAT(readingText(readingOf(longFrame(18, 0x4840D6, identification("KLM1023"), 0))),
        HasSubstr("  Format            DF18, extended squitter of a device that is not a\n"
                  "                    transponder\n"));
}

TEST(StandardReadingText, FitsATerminalOf80Columns) {
    std::vector<std::string> frames{kVelocity, fromHex("7700"), fromHex("8D4840D6202CC3"),
        withBitsInverted(squitter(0x4840D6, identification("KLM1023")), {40, 80}),
        longFrame(18, 0x4840D6, identification("KLM1023"), 0), longFrame(18, 0x4840D6, identification("KLM1023"), 1),
        longFrame(20, flightStatus(4), fromHex("FFFFFFF0000000"), 0x4840D6)};
    for (unsigned first = 0; first < 256; ++first)
        frames.push_back(squitter(0x4840D6, std::string(1, static_cast<char>(first)) + fromHex("123456789ABC")));
    for (auto const& frame : frames) {
        std::istringstream text(readingText(readingOf(frame, 2)));
        for (std::string line; std::getline(text, line);) EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(StandardReadingJson, HasValuesByNameAndTheLibrarysWhereTheyDiffer) {
    auto const line = readingJson(readingOf(kVelocity));
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    auto const json = nlohmann::json::parse(line);
    EXPECT_EQ(json["formatVersion"], 2);
    EXPECT_EQ(json["frame"], "8D485020994409940838175B284F");
    EXPECT_EQ(json["format"], 17);
    EXPECT_EQ(json["message"], "airborne velocity");
    EXPECT_EQ(json["values"]["vertical_rate"], -832);
    EXPECT_EQ(json["values"]["crc_ok"], true);
    EXPECT_EQ(json["library"], nlohmann::json({{"vertical_rate", -64}, {"vr_source", "BARO"}}));
}

TEST(StandardReadingJson, HasTheRegisterOfACommBReply) {
    auto const json = jsonOf(fromHex("A0001838CA380031440000F24177"));
    EXPECT_EQ(json["register"]["number"], "4,0");
    EXPECT_EQ(json["register"]["sure"], true);
    EXPECT_GT(json["register"]["score"], 0.9);
    EXPECT_EQ(json["values"]["selected_altitude_mcp"], 38000);
}

TEST(StandardReadingJson, HasNullForWhatAFrameDoesNotHave) {
    auto const json = jsonOf(fromHex("7700"));
    for (auto const* key :
        {"format", "confidence", "parity", "address", "message", "version", "register", "position", "repairedFrame"})
        EXPECT_TRUE(json.contains(key) && json[key].is_null()) << key;
    EXPECT_EQ(json["values"], nlohmann::json::object());
}

TEST(StandardReadingJson, HasAPositionOfAPair) {
    StandardReader reader(std::nullopt, std::nullopt);
    reader.read(fromHex("8D40621D58C382D690C8AC2863A7"));
    auto const second = reader.read(fromHex("8D40621D58C386435CC412692AD6"));
    EXPECT_NEAR(nlohmann::json::parse(readingJson(second))["position"]["latitude"].get<double>(), 52.26578, 1e-5);
}

} // namespace quorvel::inspect
