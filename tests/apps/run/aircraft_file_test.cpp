// SPDX-License-Identifier: MIT
#include "run/aircraft_file.h"

#include "files/host_error.h"

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

using namespace quorvel;
using namespace quorvel::run;
namespace airspace = quorvel::airspace;
namespace modes = quorvel::modes;
using modes::test::CapturedLog;
using modes::test::content;
using modes::test::fromHex;
using modes::test::TemporaryFolder;

namespace {

auto const* const kIdentification = "8D4840D6202CC371C32CE0576098"; // KLM1023
auto const* const kPosition = "8D40621D58C382D690C8AC2863A7";

airspace::Frame heard(std::string const& hex) { return airspace::Frame::of(fromHex(hex), 1'000'000); }

// The version that a sky takes for that of an aircraft which it hears for the first time.
unsigned taught(airspace::CoreSky& sky) {
    sky.take(heard(kIdentification));
    return *sky.find(0x4840D6, 1'000'000)->mopsVersion.value;
}

} // namespace

TEST(AircraftFile, IsMadeWhenItIsNotThereYet) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.path("db.csv"));
    airspace::CoreSky sky;
    database.serve(sky);
    sky.dropAll();
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n");
    AircraftFile(folder.path("new/folder/db.csv")).save();
    EXPECT_EQ(content(folder.path("new/folder/db.csv")), "icao_addr,mops_version,airline\n");
}

TEST(AircraftFile, TeachesTheTracker) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.write("db.csv", "icao_addr,mops_version,airline\n4840D6,2,KLM\n"));
    airspace::CoreSky sky;
    database.serve(sky);
    EXPECT_EQ(taught(sky), modes::MOPS_V2);
    sky.dropAll();
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n4840D6,2,KLM\n");
}

TEST(AircraftFile, LearnsFromAllReceivers) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.path("db.csv"));
    airspace::CoreSky one;
    airspace::CoreSky other;
    database.serve(one);
    database.serve(other);
    for (int i = 0; i < 21; ++i) one.take(heard(kIdentification)); // so many confirm version 0
    for (int i = 0; i < 21; ++i) other.take(heard(kPosition));
    one.dropAll();
    other.dropAll();
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n40621D,0,\n4840D6,0,KLM\n");
}

TEST(AircraftFile, ReadsWhatTheLibraryDoesNotTake) {
    CapturedLog log;
    TemporaryFolder folder;
    for (std::string const text : {"icao_addr,mops_version,airline\r\n4840D6,2,KLM\r\n",
             "\xEF\xBB\xBFicao_addr,mops_version,airline\r\n4840D6,2,KLM\r\n",
             "icao_addr, mops_version, airline\n4840D6,2,KLM\n", "icao_addr,mops_version,airline\n4840D6,2\n"}) {
        SCOPED_TRACE(text);
        AircraftFile database(folder.write("db.csv", text));
        EXPECT_NO_THROW(database.requireSavable());
        airspace::CoreSky sky;
        database.serve(sky);
        EXPECT_EQ(taught(sky), modes::MOPS_V2);
        sky.dropAll();
        database.save();
        EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n4840D6,2,KLM\n");
    }
}

TEST(AircraftFile, KeepsAirlinesThatAreNone) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.write("db.csv", "icao_addr,mops_version,airline\n4840D6,2,easy\n40621D,1,A1\n"));
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n40621D,1,A1\n4840D6,2,easy\n");
}

TEST(AircraftFile, IsNeverSavedOverRowsThatCannotBeRead) {
    CapturedLog log;
    TemporaryFolder folder;
    std::string const header = "icao_addr,mops_version,airline\n";
    std::string const row = "4840D6,2,KLM\n";
    for (auto const& [text, fault] : std::map<std::string, std::string>{{row + row, ":1: the header is missing; "},
             {"icao_addr,mops_version,airline,notes\n4840D6,2,KLM,mine\n", ":1: the column \"notes\" is not kept; "},
             {header + "4840D6,2,KLM,mine\n", ":2: the row has 4 cells, the header has 3; "},
             {header + "# mine\n" + row, ":2: \"# mine\" is not an aircraft address (000001 to FFFFFF); "},
             {"hex,mops_version,airline\n" + row, ":1: the header does not name all columns; "},
             {header + "4840D6,9,KLM\n" + row, ":2: \"9\" is not a version (0, 1 or 2); "},
             {header + "x\n" + row + "y\nz\n",
                 ":2: \"x\" is not an aircraft address (000001 to FFFFFF), and 2 more faults; "},
             {std::string(1, '\0') + "\xFF\xD8picture", ":1: the header is missing, and 1 more fault; "}}) {
        SCOPED_TRACE(text);
        AircraftFile database(folder.write("db.csv", text));
        for (auto const& step : {std::function<void()>([&] { database.requireSavable(); }),
                 std::function<void()>([&] { database.save(); })}) {
            try {
                step();
                ADD_FAILURE() << "no word";
            } catch (files::HostError const& error) {
                EXPECT_NE(std::string(error.what()).find(folder.path("db.csv") + fault), std::string::npos)
                    << error.what();
            }
        }
        EXPECT_EQ(content(folder.path("db.csv")), text);
        EXPECT_FALSE(std::filesystem::exists(folder.path("db.csv.bak")));
    }
}

TEST(AircraftFile, IsSavedWhereEmptyLinesAreLost) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile database(folder.write("db.csv", "icao_addr,mops_version,airline\n\n4840D6,2,KLM\n\n"));
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), "icao_addr,mops_version,airline\n4840D6,2,KLM\n");
}

TEST(AircraftFile, KeepsWhatOthersHaveSavedMeanwhile) {
    CapturedLog log;
    TemporaryFolder folder;
    std::string const header = "icao_addr,mops_version,airline\n";
    AircraftFile database(folder.write("db.csv", header + "4840D6,2,KLM\n"));
    folder.write("db.csv", header + "3C6444,1,DLH\n");
    database.save();
    EXPECT_EQ(content(folder.path("db.csv")), header + "3C6444,1,DLH\n4840D6,2,KLM\n");
    folder.write("db.csv", "a picture");
    EXPECT_THROW(database.save(), files::HostError);
    EXPECT_EQ(content(folder.path("db.csv")), "a picture");
}

TEST(AircraftFile, KeepsTheLastOneWhenItShrinksByMoreThanHalf) {
    CapturedLog log;
    TemporaryFolder folder;
    std::string const header = "icao_addr,mops_version,airline\n";
    std::string const saved = header + "4840D6,2,KLM\n";
    auto const kept = folder.path("db.csv.bak");

    AircraftFile(folder.write("db.csv", header + "4840D6,0,KLM\n4840D6,1,KLM\n4840D6,2,KLM\n")).save();
    EXPECT_EQ(content(folder.path("db.csv")), saved);
    EXPECT_FALSE(std::filesystem::exists(kept)) << "a little less than half is lost";

    auto text = header;
    for (int row = 0; row < 5; ++row) text += "4840D6,2,KLM\n";
    AircraftFile(folder.write("db.csv", text)).save();
    EXPECT_EQ(content(folder.path("db.csv")), saved);
    EXPECT_EQ(content(kept), text);
    for (auto const& entry : std::filesystem::directory_iterator(folder.path("")))
        EXPECT_THAT(entry.path().filename(), testing::AnyOf("db.csv", "db.csv.bak"));
}

TEST(AircraftFile, SaysSoWhenItCannotBeReadOrWritten) {
    CapturedLog log;
    TemporaryFolder folder;
    AircraftFile unwritable(folder.write("file", "") + "/db.csv");
    EXPECT_THROW(unwritable.save(), files::HostError);
    EXPECT_THROW(AircraftFile(folder.path("")), files::HostError) << "a folder is no file";
}
