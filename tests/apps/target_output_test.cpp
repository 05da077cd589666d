// SPDX-License-Identifier: MIT
#include "host/host_error.h"
#include "host/target_pages.h"
#include "host/target_table.h"
#include "host/track_session.h"

#include "support/captured_log.h"
#include "support/temporary_folder.h"

#include <modes/adsb_target.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace quorvel;
using modes::ModeSEncapsulation;
using modes::test::CapturedLog;
using modes::test::TemporaryFolder;

namespace {

std::string content(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

ModeSEncapsulation::Records records(std::string lines) { return ModeSEncapsulation::extractAvr(lines); }

auto const kIdentification = "8D4840D6202CC371C32CE0576098"; // KLM1023

std::shared_ptr<modes::ADSBTarget> fullTarget() {
    auto target = std::make_shared<modes::ADSBTarget>(0x4840D6);
    target->setLastUpdate(100'000);
    target->setCallsign("KLM1023 ", 100'000);
    target->setSquawk(04032, 100'000);
    target->setAltitudeBaro(38000, 100'000);
    target->setGroundSpeed(451.25, 100'000);
    target->setHeading(92.5, 100'000);
    target->setPosition(52.25, -3.9375, 100'000);
    target->increaseStatistic(modes::DFMessage::DF17, 100'000);
    return target;
}

} // namespace

TEST(TargetTable, ShowsWhatIsValidInAlignedColumns) {
    auto const text =
        host::tableText(host::makeTable({fullTarget(), std::make_shared<modes::ADSBTarget>(0xABC)}, 102'500));
    EXPECT_EQ(text, "Track  ICAO    Callsign  Squawk  Altitude  Speed  Heading  Latitude  Longitude  Version "
                    " Messages    Age\n"
                    "                                       ft     kt      deg       deg        deg          "
                    "               s\n"
                    "    0  4840D6  KLM1023   4032       38000    451     92.5  52.25000   -3.93750      (0) "
                    "        1    2.5\n"
                    "    0  000ABC  -         -              -      -        -         -          -      (0) "
                    "        0  102.5\n");
}

TEST(TargetTable, GivesNoNegativeAges) {
    EXPECT_EQ(host::makeTable({fullTarget()}, 5).rows[0].back(), "0.0");
}

TEST(TargetTable, ShowsVersionsAsConfirmedOrAssumed) {
    auto const target = fullTarget();
    target->setMOPSVersion(modes::MOPS_V2, 1);
    EXPECT_EQ(host::makeTable({target}, 0).rows[0][9], "(2)");
    target->setMOPSVersionConfirmed(1);
    EXPECT_EQ(host::makeTable({target}, 0).rows[0][9], "2");
    target->setMOPSVersion(modes::MOPS_UNKNOWN, 1);
    EXPECT_EQ(host::makeTable({target}, 0).rows[0][9], "?");
}

TEST(TargetTable, ShowsNoControlCharactersFromTheAir) {
    EXPECT_EQ(host::shown("A\x1B[2J\n\x7F  "), "A?[2J??");
    EXPECT_EQ(host::shown("        "), "");
}

TEST(TargetPages, AreWrittenOneForEachTargetWithAnIndex) {
    TemporaryFolder folder;
    host::writePages(folder.path("a/b"), {fullTarget()}, 102'500);
    auto const index = content(folder.path("a/b/index.html"));
    EXPECT_NE(index.find("<a href=\"4840D6.html\">4840D6</a>"), std::string::npos);
    EXPECT_NE(index.find("<td>KLM1023</td>"), std::string::npos);
    EXPECT_NE(index.find("Altitude (ft)"), std::string::npos);
    auto const page = content(folder.path("a/b/4840D6.html"));
    EXPECT_NE(page.find("<td>KLM1023 </td>"), std::string::npos);
    EXPECT_NE(page.find(".general_table"), std::string::npos);
}

TEST(TargetPages, EscapeWhatComesOverTheAir) {
    TemporaryFolder folder;
    auto const target = fullTarget();
    target->setCallsign("<b>&\"", 100'000);
    host::writePages(folder.path(""), {target}, 0);
    for (auto const* name : {"index.html", "4840D6.html"}) {
        EXPECT_NE(content(folder.path(name)).find("&lt;b&gt;&amp;&quot;"), std::string::npos) << name;
    }
}

TEST(TargetPages, SaySoWhenTheyCannotBeWritten) {
    TemporaryFolder folder;
    auto const file = folder.write("file", "");
    EXPECT_THROW(host::writePages(file + "/pages", {}, 0), host::HostError);
    std::filesystem::create_directories(folder.path("pages/index.html"));
    EXPECT_THROW(host::writePages(folder.path("pages"), {}, 0), host::HostError);
}

TEST(StreamTime, IsTheLatestTimeSeen) {
    host::StreamTime time;
    EXPECT_TRUE(time.advance(1500));
    EXPECT_FALSE(time.advance(1999));
    EXPECT_FALSE(time.advance(1200)) << "late frames do not turn time back";
    EXPECT_EQ(time.now(), 1999U);
    EXPECT_TRUE(time.advance(2000));
}

TEST(StreamTime, GoesOnAfterMidnight) {
    host::StreamTime time;
    time.advance(86'399'000);
    EXPECT_TRUE(time.advance(500)) << "the receiver's day begins anew";
    EXPECT_EQ(time.now(), 500U);
    EXPECT_FALSE(time.advance(400));
}

TEST(TrackSession, CountsWhatItTakes) {
    CapturedLog log;
    host::TrackSession session({});
    session.take(records(std::string("*") + kIdentification +
                         ";\n*ABCD;\n*0000000000000000000000000000;\n*C8000000000000;\n"));
    EXPECT_EQ(session.frames(), 4U);
    EXPECT_EQ(session.modeACFrames(), 1U);
    EXPECT_EQ(session.messages(), 2U);
    EXPECT_EQ(session.tracked(), 1U);
    ASSERT_EQ(session.tracker().allTargets().size(), 1U);
    EXPECT_EQ(session.tracker().allTargets()[0]->callsign(), "KLM1023 ");
    EXPECT_GT(session.now(), 0U);
}

TEST(TrackSession, DropsTargetsThatHaveFallenSilent) {
    CapturedLog log;
    host::TrackOptions options;
    options.timeoutMilliseconds = 60'000;
    host::TrackSession session(options);
    auto const at = [](unsigned second, std::string const& frame) {
        char stamp[17] = "";
        std::snprintf(stamp, sizeof stamp, "%012llX", static_cast<unsigned long long>(second) << 30);
        return std::string("@") + stamp + frame + ";\n";
    };
    session.take(records(at(100, kIdentification)));
    session.take(records(at(159, "8D40621D58C382D690C8AC2863A7")));
    EXPECT_EQ(session.tracker().allTargets().size(), 2U);
    session.take(records(at(161, "8D40621D58C382D690C8AC2863A7")));
    ASSERT_EQ(session.tracker().allTargets().size(), 1U);
    EXPECT_EQ(session.tracker().allTargets()[0]->icaoAddr(), 0x40621DU);
}

TEST(TrackSession, DropsTargetsThatFellSilentBeforeMidnight) {
    CapturedLog log;
    host::TrackOptions options;
    options.timeoutMilliseconds = 60'000;
    host::TrackSession session(options);
    session.take(records("@545FC0000000" + std::string(kIdentification) + ";\n")); // 23:59:59
    session.take(records("@00000000000088"
                         "40621D58C382D690C8AC2863A7;\n@0000400000008D40621D58C382D690C8AC2863A7;\n"));
    ASSERT_EQ(session.tracker().allTargets().size(), 1U);
    EXPECT_EQ(session.tracker().allTargets()[0]->icaoAddr(), 0x40621DU);
}

TEST(TrackSession, TakesNoTimeFromMessagesThatItDoesNotBelieve) {
    CapturedLog log;
    host::TrackSession session({});
    session.take(records("@0000400000008D40621D58C382D690C8AC2863A7;\n"));
    auto const before = session.now();
    session.take(records("@FFFFC000000000000510F4F4B2;\n"));
    EXPECT_EQ(session.messages(), 2U);
    EXPECT_EQ(session.now(), before);
}

TEST(TrackSession, MakesADatabaseThatIsNotThereYet) {
    CapturedLog log;
    TemporaryFolder folder;
    host::TrackOptions options;
    options.database = folder.path("db.csv");
    host::TrackSession session(options);
    session.finish();
    EXPECT_EQ(content(options.database), "icao_addr,mops_version,airline\n");
}

TEST(TrackSession, KeepsTheDatabase) {
    CapturedLog log;
    TemporaryFolder folder;
    host::TrackOptions options;
    options.database = folder.write("db.csv", "icao_addr,mops_version,airline\n4840D6,2,KLM\n");
    options.altitudeCheck = true;
    host::TrackSession session(options);
    session.take(records(std::string("*") + kIdentification + ";\n"));
    EXPECT_EQ(session.tracker().allTargets().at(0)->mopsVersion(), modes::MOPS_V2);
    session.finish();
    EXPECT_EQ(content(options.database), "icao_addr,mops_version,airline\n4840D6,2,KLM\n");
}

TEST(TrackSession, TeachesTheDatabaseWhatItLearned) {
    CapturedLog log;
    TemporaryFolder folder;
    host::TrackOptions options;
    options.database = folder.path("db.csv");
    host::TrackSession session(options);
    auto const squitter = std::string("*") + kIdentification + ";\n";
    for (int i = 0; i < 21; ++i) session.take(records(squitter)); // so many confirm version 0
    session.finish();
    EXPECT_EQ(content(options.database), "icao_addr,mops_version,airline\n4840D6,0,KLM\n");
}

TEST(TrackSession, SaysSoWhenTheDatabaseCannotBeReadOrWritten) {
    CapturedLog log;
    TemporaryFolder folder;
    host::TrackOptions options;
    options.database = folder.path("missing/db.csv");
    host::TrackSession session(options);
    EXPECT_THROW(session.finish(), host::HostError);
    options.database = folder.path("");
    EXPECT_THROW(host::TrackSession{options}, host::HostError) << "a folder is no file";
}
