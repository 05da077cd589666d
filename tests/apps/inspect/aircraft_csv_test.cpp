// SPDX-License-Identifier: MIT
#include "inspect/aircraft_csv.h"

#include <modes/adsb_aircraftdb.h>

#include "support/captured_log.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace quorvel::inspect {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using Remedy = files::Finding::Remedy;

std::string const kHeader = "icao_addr,mops_version,airline\n";

// What a file with one row is worth, and what is said of it.
struct RowCase {
    std::string row;
    files::AircraftByAddress aircraft;
    std::vector<std::string> findings;
};

std::vector<std::string> textsOf(files::ParsedAircraft const& file, std::size_t line) {
    std::vector<std::string> texts;
    for (auto const& finding : file.findings) {
        EXPECT_EQ(finding.line, line);
        texts.push_back((finding.remedy == Remedy::Dropped ? "dropped: " : "changed: ") + finding.text);
    }
    return texts;
}

void expectRow(RowCase const& expected) {
    SCOPED_TRACE(expected.row);
    auto const file = files::parseAircraft(kHeader + expected.row + "\n");
    EXPECT_EQ(file.aircraft, expected.aircraft);
    EXPECT_EQ(textsOf(file, 2), expected.findings);
}

std::string onlyFinding(std::string const& content) {
    auto const file = files::parseAircraft(content);
    EXPECT_EQ(file.findings.size(), 1U) << content;
    return file.findings.empty() ? "" : file.findings[0].text;
}

} // namespace

TEST(AircraftCsv, ReadsWhatTheLibraryWrites) {
    auto const file = files::parseAircraft(kHeader + "3C6444,0,\n4840D6,2,KLM\n");
    EXPECT_THAT(file.aircraft,
        ElementsAre(Pair(0x3C6444, files::KnownAircraft{0, ""}), Pair(0x4840D6, files::KnownAircraft{2, "KLM"})));
    EXPECT_THAT(file.findings, IsEmpty());
}

TEST(AircraftCsv, SaysWhatIsWrongInARowAndMakesTheBestOfIt) {
    files::KnownAircraft const klm{2, "KLM"};
    expectRow({"4840d6,2,KLM", {{0x4840D6, klm}}, {"changed: \"4840d6\" is written 4840D6"}});
    expectRow({" 4840D6,2,KLM", {{0x4840D6, klm}}, {"changed: \" 4840D6\" is written 4840D6"}});
    expectRow({"1,2,KLM", {{1, klm}}, {"changed: \"1\" is written 000001"}});
    expectRow({"4840D6,02,KLM", {{0x4840D6, klm}}, {"changed: \"02\" is written 2"}});
    expectRow({"4840D6,2,klm", {{0x4840D6, klm}}, {"changed: \"klm\" is written \"KLM\""}});
    expectRow({"4840D6,2, ", {{0x4840D6, {2, ""}}}, {"changed: \" \" is written \"\""}});
    expectRow({"4840D6,2,K1M", {{0x4840D6, {2, ""}}},
        {"changed: \"K1M\" is not an airline designator (three letters), left empty"}});
    expectRow({"4840D6,2", {{0x4840D6, {2, ""}}}, {"changed: the row has 2 cells, the header has 3"}});
    expectRow({"4840D6,2,KLM,", {{0x4840D6, klm}}, {"changed: the row has 4 cells, the header has 3"}});

    expectRow({"XYZ,2,KLM", {}, {"dropped: \"XYZ\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({"000000,2,KLM", {}, {"dropped: \"000000\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({"1000000,2,KLM", {}, {"dropped: \"1000000\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({"-1,2,KLM", {}, {"dropped: \"-1\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({"4840D6Q,2,KLM", {}, {"dropped: \"4840D6Q\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({",2,KLM", {}, {"dropped: \"\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({"99999999999999999999,2,KLM", {},
        {"dropped: \"99999999999999999999\" is not an aircraft address (000001 to FFFFFF)"}});
    expectRow({"4840D6,3,KLM", {}, {"dropped: \"3\" is not a version (0, 1 or 2)"}});
    expectRow({"4840D6,,KLM", {}, {"dropped: \"\" is not a version (0, 1 or 2)"}});
    expectRow({"4840D6", {}, {"dropped: \"\" is not a version (0, 1 or 2)"}});
    expectRow({"", {}, {"dropped: the line is empty"}});
    expectRow({"4840D6,2,\"KLM", {}, {"dropped: a quote is not closed: \"4840D6,2,\"KLM\""}});
}

TEST(AircraftCsv, TakesCellsOutOfTheirQuotes) {
    expectRow({"\"4840D6\",\"2\",\"KLM\"", {{0x4840D6, {2, "KLM"}}}, {}});
    expectRow({"4840D6,2,\"A,\"\"B\"", {{0x4840D6, {2, ""}}},
        {"changed: \"A,\"B\" is not an airline designator (three letters), left empty"}});
}

TEST(AircraftCsv, OpensAQuotedCellAtItsBeginningOnly) {
    expectRow({"4840D6,2,K\"LM", {{0x4840D6, {2, ""}}},
        {"changed: \"K\"LM\" is not an airline designator (three letters), left empty"}});
    expectRow({"4840D6,2,K\"L,M", {{0x4840D6, {2, ""}}},
        {"changed: the row has 4 cells, the header has 3",
            "changed: \"K\"L\" is not an airline designator (three letters), left empty"}});
}

TEST(AircraftCsv, TakesTheLastRowOfAnAddress) {
    auto const file = files::parseAircraft(kHeader + "4840D6,1,ABC\n3C6444,0,\n4840D6,2,KLM\n");
    EXPECT_EQ(file.aircraft.at(0x4840D6), (files::KnownAircraft{2, "KLM"}));
    ASSERT_EQ(file.findings.size(), 1U);
    EXPECT_EQ(file.findings[0].line, 4U);
    EXPECT_EQ(file.findings[0].text, "4840D6 was on line 2 already, this row wins");
}

TEST(AircraftCsv, FindsColumnsByTheirNames) {
    auto const file = files::parseAircraft("airline,icao_addr,mops_version\nKLM,4840D6,2\n");
    EXPECT_THAT(file.aircraft, ElementsAre(Pair(0x4840D6, files::KnownAircraft{2, "KLM"})));
    EXPECT_THAT(file.findings, IsEmpty());
}

TEST(AircraftCsv, SaysWhichColumnsItDoesNotKeep) {
    auto const file = files::parseAircraft("airline,note,icao_addr,mops_version\nKLM,x,4840D6,2\n");
    EXPECT_THAT(file.aircraft, ElementsAre(Pair(0x4840D6, files::KnownAircraft{2, "KLM"})));
    ASSERT_EQ(file.findings.size(), 1U);
    EXPECT_EQ(file.findings[0].text, "the column \"note\" is not kept");
    EXPECT_TRUE(file.findings[0].isLoss);
}

TEST(AircraftCsv, TakesAFirstRowWithoutHeaderForARow) {
    auto const file = files::parseAircraft("4840D6,2,KLM\n");
    EXPECT_THAT(file.aircraft, ElementsAre(Pair(0x4840D6, files::KnownAircraft{2, "KLM"})));
    ASSERT_EQ(file.findings.size(), 1U);
    EXPECT_EQ(file.findings[0].line, 1U);
    EXPECT_EQ(file.findings[0].text, "the header is missing");
}

TEST(AircraftCsv, SaysWhatIsWrongWithTheFileAsAWhole) {
    EXPECT_EQ(onlyFinding(""), "the file is empty, even the header is missing");
    EXPECT_EQ(onlyFinding("icao_addr,mops_version,operator\n"), "the header does not name all columns");
    EXPECT_EQ(onlyFinding("icao_addr,mops_version, airline\n"), "\" airline\" is written airline");
    EXPECT_EQ(onlyFinding(kHeader + "4840D6,2,KLM"), "the line does not end: the file may have been cut short");
    EXPECT_EQ(onlyFinding("\xEF\xBB\xBF" + kHeader), "the file starts with a byte order mark");
    EXPECT_EQ(onlyFinding("icao_addr,mops_version,airline\r\n4840D6,2,KLM\r\n"), "lines end with carriage returns");
}

TEST(AircraftCsv, QuotesNeitherControlCharactersNorEndlessText) {
    auto const text = onlyFinding(kHeader + "\x1B[31m" + std::string(5000, 'x') + ",2,KLM\n");
    EXPECT_THAT(text, HasSubstr("\"?[31mxxx"));
    EXPECT_LT(text.size(), 120U);
}

TEST(AircraftCsv, IsWrittenSoThatTheLibraryReadsAllOfIt) {
    auto const aircraft = files::parseAircraft("1,2,klm\n\"4840D6\",0,\n\nFFFFFF,1,\"A\"\n").aircraft;
    ASSERT_EQ(aircraft.size(), 3U);
    EXPECT_EQ(files::aircraftCsv(aircraft), kHeader + "000001,2,KLM\n4840D6,0,\nFFFFFF,1,\n");

    modes::test::TemporaryFolder const folder;
    modes::test::CapturedLog log(modes::Log::Warning);
    modes::AircraftDB database;
    database.load(folder.write("written.csv", files::aircraftCsv(aircraft)));
    for (auto const& [address, known] : aircraft) {
        auto const found = database.findAircraft(address);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->mopsVersion(), known.version);
        EXPECT_EQ(found->airline(), known.airline);
    }
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(files::parseAircraft(files::aircraftCsv(aircraft)).findings, IsEmpty());
}

TEST(AircraftCsv, MergesSoThatLaterKnowledgeWins) {
    files::AircraftByAddress aircraft{{1, {0, "AAA"}}, {2, {1, "BBB"}}, {3, {2, ""}}, {4, {1, "DDD"}}};
    auto const conflicts =
        mergeAircraft(aircraft, {{1, {2, "AAA"}}, {2, {1, "ZZZ"}}, {3, {2, "CCC"}}, {4, {1, ""}}, {5, {0, "EEE"}}});
    EXPECT_THAT(conflicts, ElementsAre(1, 2));
    EXPECT_EQ(aircraft, (files::AircraftByAddress{
                            {1, {2, "AAA"}}, {2, {1, "ZZZ"}}, {3, {2, "CCC"}}, {4, {1, "DDD"}}, {5, {0, "EEE"}}}));
}

TEST(AircraftCsv, IsFilteredByHowAddressAndAirlineBegin) {
    files::AircraftByAddress const aircraft{{0x4840D6, {2, "KLM"}}, {0x48AA00, {1, "RYR"}}, {0x3C6444, {0, ""}}};
    EXPECT_EQ(filtered(aircraft, {}).size(), 3U);
    EXPECT_THAT(
        filtered(aircraft, {"48", ""}), ElementsAre(Pair(0x4840D6, ::testing::_), Pair(0x48AA00, ::testing::_)));
    EXPECT_THAT(filtered(aircraft, {"48", "RY"}), ElementsAre(Pair(0x48AA00, ::testing::_)));
    EXPECT_THAT(filtered(aircraft, {"", "DLH"}), IsEmpty());
}

TEST(AircraftCsv, IsShownAsATableAndAsLinesOfJson) {
    files::AircraftByAddress const aircraft{{0x4840D6, {2, "KLM"}}, {0x3C6444, {0, ""}}};
    EXPECT_EQ(aircraftTable(aircraft), "ICAO    Version  Airline\n"
                                       "3C6444  0        -\n"
                                       "4840D6  2        KLM\n"
                                       "\n"
                                       "2 aircraft\n");
    EXPECT_EQ(aircraftTable({}), "0 aircraft\n");
    EXPECT_EQ(aircraftJson(aircraft), "{\"icaoAddress\":\"3C6444\",\"mopsVersion\":0,\"airline\":null}\n"
                                      "{\"icaoAddress\":\"4840D6\",\"mopsVersion\":2,\"airline\":\"KLM\"}\n");
}

} // namespace quorvel::inspect
