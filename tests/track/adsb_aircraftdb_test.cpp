// SPDX-License-Identifier: MIT
#include <modes/adsb_aircraftdb.h>

#include <modes/adsb_target.h>

#include "support/captured_log.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <ios>
#include <sstream>

using namespace quorvel::modes;
using quorvel::modes::test::content;
using test::CapturedLog;
using test::LogLine;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

LogLine warning(std::string const& text) { return {Log::Warning, "AircraftDB", text}; }

std::shared_ptr<ADSBTarget> confirmedTarget(unsigned address, MOPSVersion version, std::string const& callsign) {
    auto target = std::make_shared<ADSBTarget>(address);
    target->setMOPSVersion(version, 1);
    target->setMOPSVersionConfirmed(1);
    if (!callsign.empty()) target->setCallsign(callsign, 1);
    return target;
}

class AircraftDBTest : public testing::Test {
protected:
    TemporaryFolder folder;
    CapturedLog log;
    AircraftDB db;

    // Loads a file and returns the lines about its rows.
    std::vector<LogLine> load(std::string const& text) {
        EXPECT_TRUE(db.load(folder.write("db.csv", text)));
        auto lines = log.take();
        EXPECT_EQ(lines.at(0).text.rfind("Loading ", 0), 0U);
        lines.erase(lines.begin());
        return lines;
    }

    void learn(unsigned address, MOPSVersion version, std::string const& callsign) {
        db.updateAircraft(std::shared_ptr<ADSBTarget const>(confirmedTarget(address, version, callsign)));
    }

    std::string airline(unsigned address) const {
        auto const aircraft = db.findAircraft(address);
        return aircraft ? aircraft->airline() : "no aircraft";
    }
};

} // namespace

TEST(Aircraft, StartsWithAnAddressAlone) {
    Aircraft aircraft(0xABC);
    EXPECT_EQ(aircraft.icaoAddr(), 0xABCU);
    EXPECT_EQ(aircraft.icaoAddrString(), "000ABC");
    EXPECT_EQ(aircraft.mopsVersion(), MOPS_UNKNOWN);
    EXPECT_EQ(aircraft.airline(), "");
    aircraft.setMopsVersion(MOPS_V1);
    aircraft.setAirline("KLM");
    EXPECT_EQ(aircraft.mopsVersion(), MOPS_V1);
    EXPECT_EQ(aircraft.airline(), "KLM");
    EXPECT_EQ(Aircraft(0x1FFFFFF).icaoAddrString(), "1FFFFFF");
}

TEST_F(AircraftDBTest, StartsEmptyAndSaysNothing) {
    EXPECT_FALSE(db.findAircraft(0));
    EXPECT_FALSE(db.save());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(AircraftDBTest, MakesAnAircraftOnce) {
    auto const aircraft = db.createAircraft(0x4840D6);
    EXPECT_EQ(aircraft->icaoAddr(), 0x4840D6U);
    EXPECT_EQ(db.createAircraft(0x4840D6), aircraft);
    EXPECT_EQ(db.findAircraft(0x4840D6), aircraft);
    EXPECT_FALSE(db.findAircraft(0x4840D7));
}

TEST_F(AircraftDBTest, TakesAnAircraftInPlaceOfTheOneItHad) {
    auto const old = db.createAircraft(0x4840D6);
    auto const fresh = std::make_shared<Aircraft>(0x4840D6);
    db.updateAircraft(fresh);
    EXPECT_EQ(db.findAircraft(0x4840D6), fresh);
    db.updateAircraft(std::shared_ptr<Aircraft>());
    EXPECT_EQ(db.findAircraft(0x4840D6), fresh);
}

TEST_F(AircraftDBTest, LearnsVersionAndAirlineFromAConfirmedTarget) {
    learn(0x4840D6, MOPS_V2, "KLM1234 ");
    EXPECT_EQ(db.findAircraft(0x4840D6)->mopsVersion(), MOPS_V2);
    EXPECT_EQ(airline(0x4840D6), "KLM");
}

TEST_F(AircraftDBTest, LearnsNothingFromOthers) {
    db.updateAircraft(std::shared_ptr<ADSBTarget const>());
    auto const assumed = std::make_shared<ADSBTarget>(0x4840D6);
    db.updateAircraft(std::shared_ptr<ADSBTarget const>(assumed));
    EXPECT_FALSE(db.findAircraft(0x4840D6));
    learn(0, MOPS_V2, "KLM1234");
    EXPECT_FALSE(db.findAircraft(0));
}

TEST_F(AircraftDBTest, KeepsTheAirlineUnlessTheCallsignBeginsWithOne) {
    learn(1, MOPS_V2, "KLM1");
    for (auto const* callsign : {"N123AB", "KL", "KLX", "", "kLM123", "KL 123", "K1M123", "?LM12345",
             "\xC4\xD6\xDC"
             "123"}) {
        learn(1, MOPS_V2, callsign);
        EXPECT_EQ(airline(1), "KLM") << callsign;
        learn(2, MOPS_V2, callsign);
        EXPECT_EQ(airline(2), "") << callsign;
    }
    learn(1, MOPS_V2, "AFR99   ");
    EXPECT_EQ(airline(1), "AFR");
    learn(1, MOPS_V2, "DLH     ");
    EXPECT_EQ(airline(1), "DLH") << "a blank after the letters is enough";
}

TEST_F(AircraftDBTest, ReadsAndWritesNothingWithoutAName) {
    EXPECT_FALSE(db.load(""));
    EXPECT_FALSE(db.save(""));
    EXPECT_FALSE(db.save());
    EXPECT_THAT(log.take(), IsEmpty());
    ASSERT_TRUE(db.load(folder.write("db.csv", "icao_addr,mops_version,airline\n")));
    EXPECT_FALSE(db.load(""));
    EXPECT_TRUE(db.save()) << "the name before is still known";
}

TEST_F(AircraftDBTest, LoadsRows) {
    auto const path = folder.write("db.csv", "icao_addr,mops_version,airline\n4840D6,2,KLM\n3C6586,1,\n");
    EXPECT_TRUE(db.load(path));
    EXPECT_THAT(log.take(), ElementsAre(LogLine{Log::Debug, "AircraftDB", "Loading 2 rows from file: " + path}));
    EXPECT_EQ(db.findAircraft(0x4840D6)->mopsVersion(), MOPS_V2);
    EXPECT_EQ(airline(0x4840D6), "KLM");
    EXPECT_EQ(db.findAircraft(0x3C6586)->mopsVersion(), MOPS_V1);
    EXPECT_EQ(airline(0x3C6586), "");
}

TEST_F(AircraftDBTest, LoadsAFileWithoutRows) {
    for (auto const* text : {"icao_addr,mops_version,airline\n", "icao_addr,mops_version,airline", "", "nonsense"}) {
        auto const path = folder.write("db.csv", text);
        EXPECT_TRUE(db.load(path)) << text;
        EXPECT_THAT(log.take(), ElementsAre(LogLine{Log::Debug, "AircraftDB", "Loading 0 rows from file: " + path}));
    }
}

TEST_F(AircraftDBTest, FindsColumnsByTheirNames) {
    EXPECT_THAT(load("remark,airline,icao_addr,mops_version\nx,KLM,4840D6,0\n"), IsEmpty());
    EXPECT_EQ(db.findAircraft(0x4840D6)->mopsVersion(), MOPS_V0);
    EXPECT_EQ(airline(0x4840D6), "KLM");
}

TEST_F(AircraftDBTest, AddsRowsToWhatItHas) {
    learn(1, MOPS_V0, "KLM1234");
    learn(2, MOPS_V0, "KLM1234");
    load("icao_addr,mops_version,airline\n000002,1,AFR\n000003,2,\n000003,0,DLH\n");
    EXPECT_EQ(airline(1), "KLM");
    EXPECT_EQ(airline(2), "AFR");
    EXPECT_EQ(db.findAircraft(2)->mopsVersion(), MOPS_V1);
    EXPECT_EQ(airline(3), "DLH") << "the later row wins";
    EXPECT_EQ(db.findAircraft(3)->mopsVersion(), MOPS_V0);
}

TEST_F(AircraftDBTest, SkipsBadRowsWithAWordAboutEach) {
    auto const lines = load("icao_addr,mops_version,airline\n"
                            "000000,2,KLM\n"  // 1
                            "4840D6,3,KLM\n"  // 2
                            "4840D6,7,KLM\n"  // 3
                            "4840D6,-1,KLM\n" // 4
                            "4840D6,x,KLM\n"  // 5
                            "xyz,2,KLM\n"     // 6
                            ",2,KLM\n"        // 7
                            "000001,2,AFR\n"  // 8
                            "4840D6,,KLM\n"   // 9
                            "0,9,KLM\n");     // 10: the address is judged first
    EXPECT_THAT(lines, ElementsAre(warning("Read invalid ICAO address at row 1, skip."),
                           warning("Read unsupported MOPS version at row 2, skip."),
                           warning("Read unsupported MOPS version at row 3, skip."),
                           warning("Read unsupported MOPS version at row 4, skip."), warning("Execpeption as row 5."),
                           warning("Execpeption as row 6."), warning("Execpeption as row 7."),
                           warning("Execpeption as row 9."), warning("Read invalid ICAO address at row 10, skip.")));
    EXPECT_FALSE(db.findAircraft(0x4840D6));
    EXPECT_FALSE(db.findAircraft(0));
    EXPECT_EQ(airline(1), "AFR");
}

TEST_F(AircraftDBTest, TakesEveryLineForARow) {
    EXPECT_THAT(load("icao_addr,mops_version,airline\n#00001,2,KLM\n\n000002,2,\"AFR\"\n# nothing\n"),
        ElementsAre(
            warning("Execpeption as row 1."), warning("Execpeption as row 2."), warning("Execpeption as row 4.")));
    EXPECT_EQ(airline(2), "AFR");
}

TEST_F(AircraftDBTest, TellsWhatIsOutOfRangeInARow) {
    for (auto const* row : {"4840D6", "4840D6,2", "123456789,2,KLM", "4840D6,99999999999,KLM", ""}) {
        auto const lines = load(std::string("icao_addr,mops_version,airline\n") + row + "\n1,2,KLM\n");
        ASSERT_EQ(lines.size(), 1U) << row;
        EXPECT_EQ(lines[0].level, Log::Warning);
        auto const hasText = lines[0].text.rfind("Execpeption as row 1: ", 0) == 0;
        EXPECT_EQ(hasText, *row != '\0') << lines[0].text << ": an empty cell is no number";
        EXPECT_FALSE(db.findAircraft(0)) << row;
    }
}

TEST_F(AircraftDBTest, FailsOnEveryRowWithoutAColumn) {
    EXPECT_THAT(load("icao_addr,mops_version\n4840D6,2\n4840D7,2\n"),
        ElementsAre(warning("Execpeption as row 1: column not found: airline."),
            warning("Execpeption as row 2: column not found: airline.")));
    EXPECT_THAT(load("4840D6,2,KLM\n4840D6,2,KLM\n"),
        ElementsAre(warning("Execpeption as row 1: column not found: icao_addr.")));
}

TEST_F(AircraftDBTest, ReadsAddressesAsTheStandardLibraryDoes) {
    EXPECT_THAT(load("icao_addr,mops_version,airline\n1FFFFFF,2,A\n0x4840D6,2,B\n abc,1,C\n4840D7 and "
                     "more,0,D\n-1,2,E\n"),
        IsEmpty());
    EXPECT_EQ(airline(0x1FFFFFF), "A");
    EXPECT_EQ(airline(0x4840D6), "B");
    EXPECT_EQ(airline(0xABC), "C");
    EXPECT_EQ(airline(0x4840D7), "D");
    EXPECT_EQ(airline(0xFFFFFFFF), "E");
}

TEST_F(AircraftDBTest, KeepsACarriageReturnInTheAirline) {
    EXPECT_THAT(load("icao_addr,mops_version,airline,\r\n4840D6,2,KLM,\r\n"), IsEmpty());
    EXPECT_EQ(airline(0x4840D6), "KLM");
    load("icao_addr,mops_version,airline\n4840D6,2,KLM\r\n");
    EXPECT_EQ(airline(0x4840D6), "KLM\r");
}

TEST_F(AircraftDBTest, SurvivesHostileFiles) {
    auto const header = std::string("icao_addr,mops_version,airline\n");
    for (auto const& text : {header + std::string("48\0D6,2,K\0M\n", 12), header + std::string(1'000'000, ','),
             header + "4840D6,2," + std::string(1'000'000, 'X') + "\n", header + "\"4840D6,2,KLM\n",
             std::string(1000, '\n'), std::string("\xEF\xBB\xBF"), header + std::string(256, '\xFF')}) {
        EXPECT_NO_THROW(db.load(folder.write("db.csv", text)));
    }
}

TEST_F(AircraftDBTest, SavesKnownAircraftInTheOrderOfTheirAddresses) {
    learn(0x4840D6, MOPS_V2, "KLM1234");
    learn(0x000ABC, MOPS_V0, "N123");
    learn(0x3C6586, MOPS_V1, "DLH4AB");
    auto const path = folder.path("db.csv");
    EXPECT_TRUE(db.save(path));
    EXPECT_EQ(content(path), "icao_addr,mops_version,airline\n000ABC,0,\n3C6586,1,DLH\n4840D6,2,KLM\n");
    EXPECT_THAT(log.take(), ElementsAre(LogLine{Log::Debug, "AircraftDB", "Saving to file: " + path},
                                LogLine{Log::Debug, "AircraftDB", "Saved 3 rows to file: " + path}));
}

TEST_F(AircraftDBTest, LeavesOutAircraftOfUnknownVersion) {
    db.createAircraft(1);
    learn(2, MOPS_V1, "");
    auto const path = folder.path("db.csv");
    EXPECT_TRUE(db.save(path));
    EXPECT_EQ(content(path), "icao_addr,mops_version,airline\n000002,1,\n");
    EXPECT_THAT(log.take(), ElementsAre(LogLine{Log::Debug, "AircraftDB", "Saving to file: " + path},
                                warning("Found unsupported MOPS version, skip."),
                                LogLine{Log::Debug, "AircraftDB", "Saved 1 rows to file: " + path}));
}

TEST_F(AircraftDBTest, ReadsBackWhatItSaved) {
    learn(0x4840D6, MOPS_V2, "KLM1234");
    learn(0x3C6586, MOPS_V0, "");
    db.createAircraft(0x111111);
    ASSERT_TRUE(db.save(folder.path("db.csv")));
    AircraftDB again;
    ASSERT_TRUE(again.load(folder.path("db.csv")));
    EXPECT_EQ(again.findAircraft(0x4840D6)->airline(), "KLM");
    EXPECT_EQ(again.findAircraft(0x4840D6)->mopsVersion(), MOPS_V2);
    EXPECT_EQ(again.findAircraft(0x3C6586)->mopsVersion(), MOPS_V0);
    EXPECT_FALSE(again.findAircraft(0x111111));
}

TEST_F(AircraftDBTest, SavesToTheLastFileItWasGiven) {
    ASSERT_TRUE(db.save(folder.path("first.csv")));
    ASSERT_TRUE(db.load(folder.write("second.csv", "icao_addr,mops_version,airline\n")));
    learn(1, MOPS_V2, "KLM1234");
    ASSERT_TRUE(db.save());
    EXPECT_EQ(content(folder.path("second.csv")), "icao_addr,mops_version,airline\n000001,2,KLM\n");
    EXPECT_EQ(content(folder.path("first.csv")), "icao_addr,mops_version,airline\n");
}

TEST_F(AircraftDBTest, LetsTheFailuresOfFilesPassAndRemembersTheName) {
    learn(1, MOPS_V2, "KLM1234");
    auto const missing = folder.path("later/db.csv");
    EXPECT_THROW(db.load(missing), std::ios_base::failure);
    EXPECT_THROW(db.save(), std::ios_base::failure);
    EXPECT_THROW(db.save("/dev/full"), std::ios_base::failure);
    EXPECT_EQ(airline(1), "KLM") << "the table keeps what it had";

    EXPECT_THROW(db.load(missing), std::ios_base::failure);
    std::filesystem::create_directories(folder.path("later"));
    EXPECT_TRUE(db.save());
    EXPECT_EQ(content(missing), "icao_addr,mops_version,airline\n000001,2,KLM\n");
}

TEST(AircraftDB, CopiesTheTableButNotTheAircraft) {
    AircraftDB database;
    auto const aircraft = database.createAircraft(0x4840D6);
    AircraftDB copy = database;
    EXPECT_EQ(copy.findAircraft(0x4840D6), aircraft);
    copy.createAircraft(0x3C6586);
    EXPECT_FALSE(database.findAircraft(0x3C6586));
    database = copy;
    EXPECT_TRUE(database.findAircraft(0x3C6586));
}

TEST(AircraftDB, HoldsAfterAMoveWhatItHeldBefore) {
    AircraftDB database;
    auto const aircraft = database.createAircraft(0x4840D6);
    AircraftDB moved = std::move(database);
    EXPECT_EQ(moved.findAircraft(0x4840D6), aircraft);
    database = std::move(moved);
    EXPECT_EQ(database.findAircraft(0x4840D6), aircraft);
}
