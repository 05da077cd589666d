// SPDX-License-Identifier: MIT
#include "outputs/report_pages.h"

#include "files/host_error.h"

#include "pictures.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace quorvel;
using namespace quorvel::outputs::test;
using modes::test::TemporaryFolder;

namespace {

class Pages : public testing::Test {
protected:
    std::string page(std::string const& name) const { return content(_folder.path("pages/" + name)); }
    bool isThere(std::string const& name) const { return std::filesystem::exists(_folder.path("pages/" + name)); }

    TemporaryFolder _folder;
    outputs::ReportPages _pages{_folder.path("pages")};
};

bool contains(std::string const& text, std::string const& part) { return text.find(part) != std::string::npos; }

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
    aircraft.callsign.value = "<b>&\"";
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
    EXPECT_TRUE(contains(outputs::indexPage(picture, {}), "As of 12:34:56.789Z of an unknown day."));
    picture.now = 0;
    EXPECT_TRUE(contains(outputs::indexPage(picture, {}), "Nothing was heard yet."));
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
    b.callsign.value = "OLD";
    _pages.picture(pictureOf({a, b}));
    EXPECT_TRUE(contains(page("4840D6.html"), "KLM1023"));
    EXPECT_TRUE(contains(page("index.html"), "Aircraft (2)"));
}

TEST_F(Pages, HaveThePageOfTheLibraryToTheByte) {
    auto aircraft = knownAircraft();
    aircraft.callsign.value = "KLM1023"; // without blanks, which the program takes away
    _pages.picture(pictureOf({aircraft}));
    auto const whole = reportOf(aircraft)->toHtml("");
    auto const begin = whole.find("    <h1>");
    EXPECT_TRUE(contains(page("4840D6.html"), whole.substr(begin, whole.find("  </body>") - begin)));
}

TEST_F(Pages, LeadBackToTheIndex) {
    _pages.picture(pictureOf({knownAircraft()}));
    EXPECT_TRUE(contains(page("4840D6.html"), "<a href=\"index.html\">All aircraft</a>"));
}

TEST_F(Pages, ReloadTheIndexUntilTheEnd) {
    _pages.picture(pictureOf({knownAircraft()}));
    EXPECT_TRUE(contains(page("index.html"), "<meta http-equiv=\"refresh\" content=\"5\">"));
    EXPECT_FALSE(contains(page("4840D6.html"), "refresh")) << "an aircraft that goes takes its page along";
    _pages.finish(pictureOf({knownAircraft()}));
    EXPECT_FALSE(contains(page("index.html"), "refresh"));
}

TEST_F(Pages, FitAPhone) {
    _pages.picture(pictureOf({knownAircraft()}));
    for (auto const* name : {"index.html", "4840D6.html"}) {
        EXPECT_TRUE(contains(page(name), "<meta name=\"viewport\" content=\"width=device-width")) << name;
        EXPECT_TRUE(contains(page(name), "<meta charset=\"utf-8\">")) << name;
    }
    EXPECT_TRUE(contains(page("index.html"), "th:nth-child(1), td:nth-child(1)")) << "track numbers go";
    EXPECT_FALSE(contains(page("index.html"), "td:nth-child(2)")) << "addresses stay";
}

TEST_F(Pages, SayTheirUnitsAndWhoseLabelsTheirsAre) {
    _pages.picture(pictureOf({knownAircraft()}));
    EXPECT_TRUE(contains(page("index.html"), "The labels are those of the program trevallo."));
    EXPECT_TRUE(contains(page("index.html"), "times are UTC"));
    EXPECT_TRUE(
        contains(page("4840D6.html"), "The labels are those of the library trevallo, exactly as it writes them."));
    for (auto const* unit : {"feet", "knots", "feet per minute", "degrees", "UTC", "0 to 255"})
        EXPECT_TRUE(contains(page("4840D6.html"), unit)) << unit;
}

TEST_F(Pages, SaySoWhenTheyCannotBeWritten) {
    EXPECT_THROW(outputs::ReportPages(_folder.write("file", "") + "/pages"), files::HostError);
    std::filesystem::create_directories(_folder.path("pages/index.html/in the way"));
    EXPECT_THROW(_pages.picture(pictureOf({})), files::HostError);
}
