// SPDX-License-Identifier: MIT
#include "host/host_error.h"
#include "host/target_pages.h"
#include "host/target_table.h"

#include "support/temporary_folder.h"

#include <modes/adsb_target.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace quorvel;
using modes::test::TemporaryFolder;

namespace {

std::string content(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

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
