// SPDX-License-Identifier: MIT
#include "outputs/details.h"

#include "pictures.h"

#include <gtest/gtest.h>

#include <regex>

using namespace quorvel;
using namespace quorvel::outputs::test;

namespace {

std::vector<std::string> lines(outputs::Aircraft const& aircraft, int columns = 80) {
    std::vector<std::string> texts;
    for (auto const& line : outputs::details(aircraft, columns)) {
        std::string text;
        for (auto const& span : line) text += span.text;
        texts.push_back(text);
    }
    return texts;
}

std::string row(outputs::Aircraft const& aircraft, std::string const& label, int columns = 80) {
    for (auto const& line : lines(aircraft, columns)) {
        if (line.rfind(label, 0) == 0) return line;
    }
    return "no such row";
}

// The words in the cells of the page, times left out.
std::vector<std::string> pageValues(modes::ADSBTargetReport const& report) {
    auto const page = report.toHtml("");
    std::regex const cell("<td>([^<]+)</td>\\s*");
    std::vector<std::string> values;
    for (std::sregex_iterator each(page.begin(), page.end(), cell), end; each != end; ++each) {
        values.push_back((*each)[1]);
    }
    return values;
}

} // namespace

TEST(Details, ShowValueAgeAndTimesOfEachItem) {
    EXPECT_EQ(row(knownAircraft(), "Callsign"),
        "Callsign              KLM1023                 2.5 s  12:34:54.289  12:33:54.289");
    EXPECT_EQ(row(knownAircraft(), "Squawk"), "Squawk                4032                    2.5 s  12:34:54.289");
    EXPECT_EQ(row(knownAircraft(), "Position ").substr(0, 49), "Position              521500N0035615W         2.5");
}

TEST(Details, ShowEveryValueThatThePageShows) {
    auto aircraft = knownAircraft();
    std::string all;
    for (auto const& line : lines(aircraft)) all += line + "\n";
    for (auto const* value : {"7", "4840D6", "KLM1023", "4032", "3", "52.250000", "-3.937500", "521500N0035615W",
             "38000", "-640", "128", "8", "9"}) {
        auto const onPage = pageValues(*reportOf(aircraft));
        auto const isValue = [&](std::string const& cell) { return cell == value || cell == std::string(value) + " "; };
        EXPECT_TRUE(std::any_of(onPage.begin(), onPage.end(), isValue)) << value;
        EXPECT_NE(all.find("  " + std::string(value)), std::string::npos) << value;
    }
}

TEST(Details, LeaveOutWhatWasNeverReported) {
    EXPECT_EQ(row(knownAircraft(), "Mach"), "no such row");
    auto aircraft = knownAircraft();
    aircraft.mach = {0.784, airspace::Source::CommB, kNow, 0};
    EXPECT_EQ(row(aircraft, "Mach").substr(0, 27), "Mach                  0.784");
}

TEST(Details, ShowEveryItemByTheStandards) {
    auto aircraft = knownAircraft();
    airspace::visitItems(aircraft, [](airspace::ItemText const&, auto& item) {
        if (!item.value) item.value.emplace();
        item.updated = kNow;
    });
    airspace::visitItems(aircraft, [&](airspace::ItemText const& text, auto const&) {
        EXPECT_NE(row(aircraft, std::string(text.label) + " "), "no such row") << text.name;
    });
    airspace::ResolutionAdvisory advisory;
    advisory.sameSense = {true, true, false, false, false, true};
    aircraft.advisory.value = advisory;
    aircraft.emergency.value = airspace::EmergencyState::MinimumFuel;
    aircraft.selectedModes.value = airspace::SelectedModes{true, false, {}, {}, true, {}};
    EXPECT_NE(row(aircraft, "Resolution advisory").find("descend, corrective"), std::string::npos);
    EXPECT_NE(row(aircraft, "Emergency").find("minfuel"), std::string::npos);
    EXPECT_NE(row(aircraft, "Selected modes").find("autopilot lnav"), std::string::npos);
}

TEST(Details, ShowWhatIsNotValidAsADash) {
    auto aircraft = heardAircraft(1, kNow);
    aircraft.callsign.updated = kNow;
    EXPECT_EQ(row(aircraft, "Callsign").substr(0, 23), "Callsign              -");
    EXPECT_EQ(row(aircraft, "Address").substr(0, 28), "Address               000001");
    EXPECT_EQ(row(aircraft, "MOPS version"), "MOPS version          0 (DO-260), assumed");
}

TEST(Details, ShowTheDateOfTimesOfAnotherDay) {
    auto aircraft = knownAircraft();
    aircraft.callsign.changed = kNow - 86'400'000;
    EXPECT_EQ(row(aircraft, "Callsign").substr(67), "2024-04-30");
}

TEST(Details, ShowDatesEverywhereWhereThereIsRoom) {
    EXPECT_EQ(row(knownAircraft(), "Callsign", 120).substr(53), "2024-05-01T12:34:54.289Z  2024-05-01T12:33:54.289Z");
}

TEST(Details, AreNoWiderThanTheScreen) {
    auto aircraft = knownAircraft();
    aircraft.source = std::string(300, 'x');
    for (int const columns : {0, 1, 40, 80, 107, 200}) {
        for (auto const& line : lines(aircraft, columns)) EXPECT_LE(line.size(), static_cast<std::size_t>(columns));
    }
}

TEST(Details, DimWhatIsOlderThanAMinute) {
    auto aircraft = knownAircraft();
    aircraft.altitudeBaro.updated = kNow - 60'001;
    auto const isDim = [&](std::string const& label) {
        auto const screen = outputs::details(aircraft, 80);
        return std::any_of(screen.begin(), screen.end(),
            [&](terminal::ScreenLine const& line) { return line[0].text.rfind(label, 0) == 0 && line[0].style.dim; });
    };
    EXPECT_TRUE(isDim("Altitude"));
    EXPECT_FALSE(isDim("Track "));
}
