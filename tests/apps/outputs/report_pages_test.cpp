// SPDX-License-Identifier: MIT
#include "outputs/report_pages.h"

#include "host/host_error.h"

#include "pictures.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace quorvel;
using namespace quorvel::host::test;
using modes::test::TemporaryFolder;

namespace {

class Pages : public testing::Test {
protected:
    std::string page(std::string const& name) const { return content(_folder.path("pages/" + name)); }
    bool isThere(std::string const& name) const {
        return std::filesystem::exists(_folder.path("pages/" + name));
    }

    TemporaryFolder _folder;
    host::ReportPages _pages{_folder.path("pages")};
};

bool contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST_F(Pages, AreWrittenOneForEachAircraftWithAnIndex) {
    _pages.picture(pictureOf({knownAircraft()}));
    auto const index = page("index.html");
    EXPECT_TRUE(contains(index, "<h1>Aircraft (1)</h1>"));
    EXPECT_TRUE(contains(index, "<a href=\"4840D6.html\">4840D6</a>"));
    EXPECT_TRUE(contains(index, "<td>KLM1023</td>"));
    EXPECT_TRUE(contains(index, "<th>Altitude (ft)</th>"));
    EXPECT_TRUE(contains(index, "<th>Pos. age (s)</th>"));
    EXPECT_TRUE(contains(index, "As of 2024-05-01T12:34:56.789Z."));
    EXPECT_TRUE(contains(page("4840D6.html"), "<td>KLM1023</td>"));
    EXPECT_TRUE(contains(page("4840D6.html"), ".general_table"));
}

TEST_F(Pages, EscapeWhatComesOverTheAir) {
    auto aircraft = knownAircraft();
    aircraft.report->setCallsign("<b>&\"");
    aircraft.source = "<i>";
    _pages.picture(pictureOf({aircraft}));
    for (auto const* name : {"index.html", "4840D6.html"}) {
        EXPECT_TRUE(contains(page(name), "&lt;b&gt;&amp;&quot;")) << name;
    }
    EXPECT_TRUE(contains(page("index.html"), "<td>&lt;i&gt;</td>"));
}

TEST_F(Pages, SayWhenTheDayIsNotKnown) {
    auto picture = pictureOf({});
    picture.sources[0].timeKnown = false;
    EXPECT_TRUE(
        contains(host::indexPage(picture), "As of 12:34:56.789Z of a day that the recording does not tell."));
    picture.now = 0;
    EXPECT_TRUE(contains(host::indexPage(picture), "Nothing was heard yet."));
}

TEST_F(Pages, AreWrittenAnewWhenSomethingWasHeard) {
    auto aircraft = knownAircraft();
    _pages.picture(pictureOf({aircraft}));
    std::filesystem::remove(_folder.path("pages/4840D6.html"));
    _pages.picture(pictureOf({aircraft}));
    EXPECT_FALSE(isThere("4840D6.html"));
    ++aircraft.messages;
    _pages.picture(pictureOf({aircraft}));
    EXPECT_TRUE(isThere("4840D6.html"));
}

TEST_F(Pages, GoWithTheirAircraftAndLeaveTheOthersAlone) {
    _folder.write("pages/ABCDEF.html", "of an earlier run");
    _folder.write("pages/notes.txt", "by hand");
    _pages.picture(pictureOf({knownAircraft(), heardAircraft(0xABC, kNow)}));
    EXPECT_TRUE(isThere("000ABC.html"));
    _pages.finish(pictureOf({knownAircraft()}));
    EXPECT_FALSE(isThere("000ABC.html"));
    EXPECT_TRUE(isThere("4840D6.html"));
    EXPECT_TRUE(isThere("ABCDEF.html"));
    EXPECT_TRUE(isThere("notes.txt"));
}

TEST_F(Pages, AreOneForAnAircraftThatSeveralSourcesHear) {
    auto a = knownAircraft(100), b = knownAircraft(5'000);
    a.source = "a", b.source = "b";
    b.report->setCallsign("OLD");
    _pages.picture(pictureOf({a, b}));
    EXPECT_TRUE(contains(page("4840D6.html"), "KLM1023"));
    EXPECT_TRUE(contains(page("index.html"), "Aircraft (2)"));
}

TEST_F(Pages, SaySoWhenTheyCannotBeWritten) {
    EXPECT_THROW(host::ReportPages(_folder.write("file", "") + "/pages"), host::HostError);
    std::filesystem::create_directories(_folder.path("pages/index.html/in the way"));
    EXPECT_THROW(_pages.picture(pictureOf({})), host::HostError);
}
