// SPDX-License-Identifier: MIT
#include "outputs/live_view.h"

#include "pictures.h"

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::outputs::test;
using outputs::Picture;
using outputs::ViewState;
using terminal::Colour;
using terminal::Key;
using terminal::Screen;
using terminal::Style;
using Kind = terminal::Key::Kind;
using Mode = outputs::ViewState::Mode;

namespace {

constexpr int kColumns = 80, kRows = 24;
constexpr int kFirstRow = 3;

std::string text(terminal::ScreenLine const& line) {
    std::string all;
    for (auto const& span : line) all += span.text;
    return all;
}

std::vector<std::string> texts(terminal::Screen const& screen) {
    std::vector<std::string> all;
    for (auto const& line : screen) all.push_back(text(line));
    return all;
}

// A view that is driven as by a user.
class View {
public:
    explicit View(Picture shown) : picture(std::move(shown)) {}

    View& press(Kind kind) {
        state = outputs::afterKey(state, {kind}, picture, rows);
        return *this;
    }
    View& type(std::string const& characters) {
        for (char const character : characters) {
            state = outputs::afterKey(state, {Kind::Character, character}, picture, rows);
        }
        return *this;
    }

    terminal::Screen screen() const { return outputs::draw(picture, state, columns, rows); }
    std::string line(int row) const { return text(screen().at(static_cast<std::size_t>(row))); }

    // addresses in the table
    std::vector<std::string> addresses() const {
        std::vector<std::string> all;
        for (int row = kFirstRow; row < rows - 2; ++row) {
            if (auto const words = line(row); !words.empty()) all.push_back(words.substr(0, 6));
        }
        return all;
    }

    // the address in the selected row
    std::string selected() const {
        for (auto const& each : screen()) {
            if (each.size() > 1 && each[0].style.reverse && each[1].style.reverse)
                return each[0].text.substr(0, each[0].text.find(' '));
        }
        return "none";
    }

    Picture picture;
    ViewState state;
    int columns = kColumns, rows = kRows;
};

outputs::Aircraft aircraftAt(unsigned address, int altitude) {
    auto aircraft = heardAircraft(address, kNow);
    aircraft.altitudeBaro.value = altitude;
    return aircraft;
}

Picture manyAircraft(unsigned count) {
    std::vector<outputs::Aircraft> all;
    for (unsigned i = 1; i <= count; ++i) all.push_back(heardAircraft(i, kNow));
    return pictureOf(all);
}

// The style of the span that holds a text, in the first aircraft's row.
Style styleOf(View const& view, std::string const& part) {
    auto const line = view.screen().at(kFirstRow + 1);
    for (auto const& span : line) {
        if (span.text.find(part) != std::string::npos) return span.style;
    }
    ADD_FAILURE() << "not shown: " << part;
    return {};
}

// A view of one aircraft in the row below the selected one.
View unselected(outputs::Aircraft aircraft) { return View(pictureOf({heardAircraft(1, kNow), std::move(aircraft)})); }

} // namespace

TEST(LiveView, ShowsTheAircraftInAScreenOf80By24) {
    View const view(pictureOf({heardAircraft(0xABC, kNow - 10'000), knownAircraft()}));
    auto const lines = texts(view.screen());
    ASSERT_EQ(lines.size(), 24U);
    EXPECT_EQ(lines[0], "2 aircraft, 1 with position  0 frames/s  0 repaired  0 dropped");
    EXPECT_EQ(lines[1], "2024-05-01T12:34:56Z  tcp://receiver:30005 connected");
    EXPECT_EQ(lines[2], "ICAO    Callsign Sqwk    Alt  Spd   Trk       Lat        Lon   Pos   Msgs   Age");
    EXPECT_EQ(lines[3], "000ABC                                                                  1  10.0");
    EXPECT_EQ(lines[4], "4840D6  KLM1023  4032  38000  451  92.5  52.25000   -3.93750   2.5    321   2.5");
    EXPECT_EQ(lines[5], "");
    EXPECT_EQ(lines[22], "Sort i:ICAO c:Callsign s:Sqwk a:Alt v:Spd h:Trk l:Lat o:Lon p:Pos m:Msgs g:Age");
    EXPECT_EQ(lines[23], "Up/Down j/k PgUp/PgDn select  Enter details  / filter  r reverse  ? help  q quit");
}

TEST(LiveView, LeavesOutColumnsByRankWhenItIsNarrow) {
    View view(pictureOf({knownAircraft()}));
    view.columns = 200;
    EXPECT_EQ(view.line(2), "   # ICAO    Callsign Sqwk    Alt   Rate  Spd   Trk       Lat        Lon   Pos Ver   Msgs"
                            "   Age");
    view.columns = 40;
    EXPECT_EQ(view.line(2), "ICAO    Callsign Sqwk    Alt  Spd   Age");
    view.columns = 10;
    EXPECT_EQ(view.line(2), "ICAO   ");
    view.picture.aircraft[0].source = "roof";
    view.columns = 200;
    EXPECT_EQ(view.line(2).substr(96), "Source          ");
}

TEST(LiveView, FitsIntoAnySize) {
    View view(manyAircraft(50));
    view.picture.sources[0].name = std::string(300, 'x');
    for (auto const mode : {Mode::Table, Mode::Filter, Mode::Detail, Mode::Help}) {
        view.state.mode = mode;
        for (int rows = 0; rows < 40; ++rows) {
            for (int const columns : {0, 1, 7, 20, 80, 300}) {
                auto const screen = outputs::draw(view.picture, view.state, columns, rows);
                EXPECT_EQ(screen.size(), static_cast<std::size_t>(std::max(rows, 1)));
                for (auto const& line : screen) {
                    EXPECT_LE(text(line).size(), static_cast<std::size_t>(std::max(columns, 1)));
                }
            }
        }
    }
}

TEST(LiveView, ShowsAnEmptySkyToo) {
    View view{Picture{}};
    EXPECT_EQ(view.line(0).substr(0, 10), "0 aircraft");
    EXPECT_EQ(view.line(1), "");
    view.press(Kind::Down).press(Kind::Enter).press(Kind::End);
    EXPECT_EQ(view.state.mode, Mode::Table);
}

TEST(LiveView, SortsByTheKeyOfAColumnAndReverses) {
    View view(pictureOf({aircraftAt(1, 3000), aircraftAt(2, 1000), heardAircraft(3, kNow), aircraftAt(4, 20000)}));
    using Addresses = std::vector<std::string>;
    EXPECT_EQ(view.addresses(), (Addresses{"000001", "000002", "000003", "000004"}));
    view.type("a");
    EXPECT_EQ(view.addresses(), (Addresses{"000002", "000001", "000004", "000003"}));
    view.type("r");
    EXPECT_EQ(view.addresses(), (Addresses{"000004", "000001", "000002", "000003"})) << "without altitude stays last";
    view.type("i");
    EXPECT_EQ(view.addresses().front(), "000004");
}

TEST(LiveView, MarksTheColumnThatItSortsBy) {
    View view(pictureOf({}));
    view.type("a");
    auto const headings = view.screen().at(2);
    for (auto const& span : headings) EXPECT_EQ(span.style.reverse, span.text == "   Alt") << span.text;
}

TEST(LiveView, FiltersByCallsignAddressSquawkAndSource) {
    auto a = knownAircraft(), b = heardAircraft(0xABC, kNow);
    b.source = "roof";
    View view(pictureOf({a, b}));
    auto const found = [&](std::string const& filter) {
        view.state = {};
        view.type("/" + filter);
        return view.addresses();
    };
    EXPECT_EQ(found("klm10"), std::vector<std::string>{"4840D6"});
    EXPECT_EQ(found("0ab"), std::vector<std::string>{"000ABC"});
    EXPECT_EQ(found("403"), std::vector<std::string>{"4840D6"});
    EXPECT_EQ(found("ROO"), std::vector<std::string>{"000ABC"});
    EXPECT_EQ(found("nothing").size(), 0U);
}

TEST(LiveView, KeepsTheFilterWithEnterAndDropsItWithEscape) {
    View view(pictureOf({knownAircraft(), heardAircraft(0xABC, kNow)}));
    view.type("/klq");
    EXPECT_EQ(view.line(22), "Filter: KLQ ");
    view.press(Kind::Backspace).type("m").press(Kind::Enter);
    EXPECT_EQ(view.line(22), "Filter: KLM");
    EXPECT_EQ(view.addresses().size(), 1U);
    view.press(Kind::Escape);
    EXPECT_EQ(view.addresses().size(), 2U);
    view.type("/x").press(Kind::Escape);
    EXPECT_EQ(view.addresses().size(), 2U);
    EXPECT_FALSE(view.state.wantsToQuit);
}

TEST(LiveView, MovesTheSelectionWithinTheTable) {
    View view(manyAircraft(100));
    EXPECT_EQ(view.selected(), "000001");
    view.press(Kind::Up);
    EXPECT_EQ(view.selected(), "000001");
    view.press(Kind::Down).type("j").type("k");
    EXPECT_EQ(view.selected(), "000002");
    view.press(Kind::PageDown);
    EXPECT_EQ(view.selected(), "000015") << "19 rows further";
    view.press(Kind::End);
    EXPECT_EQ(view.selected(), "000064");
    view.press(Kind::PageUp).press(Kind::Home);
    EXPECT_EQ(view.selected(), "000001");
}

TEST(LiveView, TellsWhichRowsAreShownWhereTheseAreNotAll) {
    View view(manyAircraft(45));
    EXPECT_EQ(view.line(1), "2024-05-01T12:34:56Z  rows 1-19 of 45  tcp://receiver:30005 connected");
    view.press(Kind::End);
    EXPECT_EQ(view.line(1), "2024-05-01T12:34:56Z  rows 39-45 of 45  tcp://receiver:30005 connected");
    view.press(Kind::PageUp);
    EXPECT_EQ(view.addresses().front(), "000014");
}

TEST(LiveView, KeepsTheAircraftSelectedWhereverItMoves) {
    View view(pictureOf({aircraftAt(1, 3000), aircraftAt(2, 1000)}));
    view.press(Kind::Down);
    view.type("a");
    EXPECT_EQ(view.selected(), "000002");
    EXPECT_EQ(view.addresses().front(), "000002");
}

TEST(LiveView, SelectsTheNextInPlaceOfAnAircraftThatIsGone) {
    View view(manyAircraft(5));
    view.press(Kind::Down).press(Kind::Down);
    view.picture.aircraft.erase(view.picture.aircraft.begin() + 2);
    EXPECT_EQ(view.selected(), "000004");
    view.picture = manyAircraft(1);
    EXPECT_EQ(view.selected(), "000001");
}

TEST(LiveView, ShowsEmergenciesAndAlertsInRed) {
    terminal::Style const red{.colour = terminal::Colour::Red, .bold = true};
    for (unsigned const squawk : {07500U, 07600U, 07700U}) {
        auto aircraft = knownAircraft();
        aircraft.squawk.value = airspace::Squawk{static_cast<std::uint16_t>(squawk)};
        EXPECT_EQ(styleOf(unselected(aircraft), "4840D6"), red);
    }
    auto alert = knownAircraft();
    alert.alertStatus.value = true;
    EXPECT_EQ(styleOf(unselected(alert), "4840D6"), red);
    EXPECT_EQ(styleOf(unselected(knownAircraft()), "4840D6"), terminal::Style{});
}

TEST(LiveView, ShowsAircraftOnTheGroundInBrown) {
    auto aircraft = knownAircraft();
    aircraft.groundStatus.value = true;
    EXPECT_EQ(
        styleOf(unselected(aircraft), "ground"), (terminal::Style{.colour = terminal::Colour::Yellow, .dim = true}));
}

TEST(LiveView, DimsPositionsThatFade) {
    EXPECT_FALSE(styleOf(unselected(knownAircraft(15'000)), "52.25000").dim);
    auto const fading = unselected(knownAircraft(15'001));
    EXPECT_TRUE(styleOf(fading, "52.25000").dim);
    EXPECT_TRUE(styleOf(fading, "-3.93750").dim);
    EXPECT_FALSE(styleOf(fading, "38000").dim);
}

TEST(LiveView, DropsAircraftByTheAgeOfTheirPosition) {
    auto answering = knownAircraft(60'001);
    answering.heard = kNow;
    EXPECT_EQ(View(pictureOf({answering})).addresses().size(), 0U) << "it still answers, but stands still";
    EXPECT_EQ(View(pictureOf({knownAircraft(60'000)})).addresses().size(), 1U);
    EXPECT_EQ(View(pictureOf({heardAircraft(1, kNow - 60'000)})).addresses().size(), 1U);
    EXPECT_EQ(View(pictureOf({heardAircraft(1, kNow - 60'001)})).addresses().size(), 0U);
}

TEST(LiveView, OpensTheDetailsOfTheSelectedAircraftAndScrollsThem) {
    View view(pictureOf({heardAircraft(1, kNow), knownAircraft()}));
    view.press(Kind::Down).press(Kind::Enter);
    EXPECT_EQ(view.line(0), "Aircraft 4840D6");
    EXPECT_EQ(view.line(1).substr(0, 14), "Identification");
    EXPECT_EQ(view.line(8).substr(0, 29), "Static                Value  ");
    EXPECT_EQ(view.line(23), "Up/Down PgUp/PgDn scroll  Esc or q back");
    view.press(Kind::Down);
    EXPECT_EQ(view.line(1).substr(0, 12), "Track number");
    view.press(Kind::End).press(Kind::Down);
    EXPECT_EQ(view.line(22).substr(0, 24), "SIL                   3");
    view.press(Kind::PageUp).press(Kind::PageUp).press(Kind::Up);
    EXPECT_EQ(view.line(1).substr(0, 14), "Identification");
    view.type("q");
    EXPECT_EQ(view.state.mode, Mode::Table);
    EXPECT_FALSE(view.state.wantsToQuit);
    view.press(Kind::Enter).press(Kind::Escape);
    EXPECT_EQ(view.state.mode, Mode::Table);
}

TEST(LiveView, SaysInTheDetailsThatAnAircraftIsGone) {
    View view(pictureOf({knownAircraft()}));
    view.press(Kind::Enter);
    view.picture.aircraft.clear();
    EXPECT_EQ(view.line(0), "Aircraft 4840D6");
    EXPECT_EQ(view.line(1), "It was dropped: it was not heard for too long.");
}

TEST(LiveView, NamesTheSourceInTheDetails) {
    auto aircraft = knownAircraft();
    aircraft.source = "roof\x1B";
    View view(pictureOf({aircraft}));
    view.press(Kind::Enter);
    EXPECT_EQ(view.line(0), "Aircraft 4840D6 heard by roof?");
}

TEST(LiveView, HelpsWithEveryKey) {
    View view(pictureOf({}));
    view.type("?");
    auto all = texts(view.screen());
    view.press(Kind::End);
    auto const rest = texts(view.screen());
    all.insert(all.end(), rest.begin(), rest.end());
    for (auto const* line :
        {"q            go back, or quit", "i            ICAO", "w            Rate (ft/min)", "u            Source"}) {
        EXPECT_NE(std::find(all.begin(), all.end(), line), all.end()) << line;
    }
    view.press(Kind::Escape);
    EXPECT_EQ(view.state.mode, Mode::Table);
}

TEST(LiveView, QuitsWithQ) {
    View view(pictureOf({}));
    view.type("xz!");
    EXPECT_FALSE(view.state.wantsToQuit);
    view.type("q");
    EXPECT_TRUE(view.state.wantsToQuit);
}

TEST(LiveView, TellsWhatWasRepairedRefusedDroppedAndLost) {
    View view(pictureOf({}));
    view.columns = 200;
    view.picture.counters.repaired = 12;
    view.picture.counters.outputDropped = 3;
    view.picture.counters.positionsTooFast = 1;
    view.picture.counters.positionsOutOfRange = 2;
    view.picture.counters.positionsImpossible = 4;
    view.picture.counters.tableFull = 5;
    EXPECT_EQ(view.line(0), "0 aircraft, 0 with position  0 frames/s  12 repaired  3 dropped  7 positions refused  "
                            "5 lost: table full");
}

TEST(LiveView, TellsTheStateOfEachSourceAndWhenTheDayIsNotKnown) {
    View view(pictureOf({}));
    view.picture.sources.push_back({"a\x1B.beast", "reading", kNow, kNow, false, {}});
    EXPECT_EQ(view.line(1), "12:34:56Z of an unknown day  tcp://receiver:30005 connected, a?.beast reading");
}

TEST(LiveView, TellsTheRateOfFramesBetweenPictures) {
    auto picture = pictureOf({});
    picture.counters.frames = 50'000; // of a recording, which is read ahead
    picture.counters.byFormat[17] = 1'000;
    auto state = outputs::afterPicture({}, picture);
    EXPECT_EQ(state.framesPerSecond, 0);
    picture.now += 2'000;
    picture.counters.byFormat[17] = 1'200;
    picture.counters.byFormat[11] = 300;
    state = outputs::afterPicture(state, picture);
    EXPECT_EQ(state.framesPerSecond, 250);
    state = outputs::afterPicture(state, picture);
    EXPECT_EQ(state.framesPerSecond, 250) << "the same picture again";
    picture.now = 5'000;
    EXPECT_EQ(outputs::afterPicture(state, picture).framesPerSecond, 0) << "another recording";
}
