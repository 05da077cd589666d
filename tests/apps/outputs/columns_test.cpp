// SPDX-License-Identifier: MIT
#include "outputs/columns.h"
#include "outputs/text_table.h"

#include "pictures.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

using namespace quorvel;
using namespace quorvel::outputs::test;
using outputs::makeTable;
using outputs::tableText;

namespace {

std::string cell(outputs::Aircraft const& aircraft, std::string_view heading) {
    for (auto const& column : outputs::allColumns()) {
        if (column.heading == heading) return column.text(aircraft);
    }
    return "no such column";
}

} // namespace

TEST(AircraftTable, ShowsWhatIsValidInAlignedColumns) {
    EXPECT_EQ(tableText(makeTable(pictureOf({heardAircraft(0xABC, kNow - 102'500), knownAircraft()}))),
        "No.  ICAO    Callsign  Squawk  Altitude    Rate  Speed  Track  Latitude  Longitude  Pos. age  "
        "Version  Messages    Age\n"
        "                                     ft  ft/min     kt    deg       deg        deg         s  "
        "                       s\n"
        "  0  000ABC  -         -              -       -      -      -         -          -         -  "
        "    (0)         1  102.5\n"
        "  7  4840D6  KLM1023   4032       38000    -640    451   92.5  52.25000   -3.93750       2.5  "
        "      2       321    2.5\n");
}

TEST(AircraftTable, HasTrackNumbersAndDistancesWhereThereAreSome) {
    auto aircraft = knownAircraft();
    aircraft.trackNumber = 0;
    auto const headings = [&] {
        std::vector<std::string> names;
        for (auto const* column : makeTable(pictureOf({aircraft})).columns) names.emplace_back(column->heading);
        return names;
    };
    EXPECT_THAT(headings(), testing::Not(testing::Contains("No.")));
    EXPECT_THAT(headings(), testing::Not(testing::Contains("Distance")));
    aircraft.distance.value = 31.75;
    EXPECT_THAT(headings(), testing::Contains("Distance"));
    EXPECT_EQ(cell(aircraft, "Distance"), "31.8");
}

TEST(AircraftTable, HasRegistrationsAndTypesWhereThereAreSome) {
    auto aircraft = knownAircraft();
    auto const hasColumn = [&](std::string_view heading) {
        auto const columns = makeTable(pictureOf({aircraft})).columns;
        return std::any_of(
            columns.begin(), columns.end(), [&](auto const* column) { return column->heading == heading; });
    };
    EXPECT_FALSE(hasColumn("Registration"));
    EXPECT_FALSE(hasColumn("Type"));
    aircraft.registration.value = "PH-BXA";
    aircraft.type = "B738";
    EXPECT_TRUE(hasColumn("Registration"));
    EXPECT_EQ(cell(aircraft, "Registration"), "PH-BXA");
    EXPECT_TRUE(hasColumn("Type"));
    EXPECT_EQ(cell(aircraft, "Type"), "B738");
}

TEST(AircraftTable, ShowsTheVerticalRateThatIsNewer) {
    auto aircraft = knownAircraft();
    aircraft.verticalRateGnss = {-500, airspace::Source::AdsB, kNow, 0};
    EXPECT_EQ(cell(aircraft, "Rate"), "-500");
    aircraft.verticalRateBaro.updated = kNow;
    EXPECT_EQ(cell(aircraft, "Rate"), "-640") << "of the barometer if they are of one age";
}

TEST(AircraftTable, MarksAddressesThatNoStateAssigned) {
    auto aircraft = heardAircraft(0xABC, kNow);
    aircraft.addressKind = airspace::AddressKind::TisB;
    EXPECT_EQ(cell(aircraft, "ICAO"), "~000ABC");
}

TEST(AircraftTable, NamesTheSourceWhereThereAreSeveral) {
    auto a = knownAircraft(), b = heardAircraft(0xABC, kNow);
    a.source = "b\x1B[2J";
    b.source = "a";
    auto const table = makeTable(pictureOf({a, b}));
    EXPECT_STREQ(table.columns.back()->heading, "Source");
    EXPECT_EQ(table.rows.at(0).back(), "a");
    EXPECT_EQ(table.rows.at(1).back(), "b?[2J");
    EXPECT_STREQ(makeTable(pictureOf({knownAircraft()})).columns.back()->heading, "Age");
}

TEST(AircraftTable, IsInTheOrderOfTrackNumbersWithinASource) {
    auto a = heardAircraft(1, kNow), b = heardAircraft(2, kNow);
    a.trackNumber = 9;
    b.trackNumber = 8;
    EXPECT_EQ(makeTable(pictureOf({a, b})).rows.at(0).at(1), "000002");
}

TEST(AircraftTable, GivesNoNegativeAges) {
    EXPECT_EQ(cell(heardAircraft(1, kNow + 5'000), "Age"), "0.0");
    auto future = heardAircraft(1, kNow);
    future.position.value = airspace::Place{1, 2};
    future.position.updated = kNow + 5'000;
    EXPECT_EQ(cell(future, "Pos. age"), "0.0");
}

TEST(AircraftTable, ShowsVersionsAsConfirmedOrAssumed) {
    auto aircraft = heardAircraft(1, kNow);
    aircraft.mopsVersion.value = modes::MOPS_V2;
    EXPECT_EQ(cell(aircraft, "Version"), "(2)");
    aircraft.mopsVersionConfirmed = true;
    EXPECT_EQ(cell(aircraft, "Version"), "2");
    aircraft.mopsVersion.value.reset();
    EXPECT_EQ(cell(aircraft, "Version"), "");
    aircraft.trackNumber = 1;
    EXPECT_EQ(cell(aircraft, "Version"), "(?)") << "the core's tracker always assumes one";
}

TEST(AircraftTable, ShowsNoAltitudeForAnAircraftOnTheGround) {
    auto aircraft = knownAircraft();
    aircraft.groundStatus.value = true;
    EXPECT_EQ(cell(aircraft, "Altitude"), "ground");
}

TEST(AircraftTable, ShowsNoControlCharactersFromTheAir) {
    auto aircraft = knownAircraft();
    aircraft.callsign.value = "A\x1B[2J\n";
    EXPECT_EQ(cell(aircraft, "Callsign"), "A?[2J?");
}

TEST(AircraftTable, HasAKeyAndARankForEachColumn) {
    std::set<char> keys;
    for (auto const& column : outputs::allColumns()) {
        EXPECT_TRUE(keys.insert(column.key).second) << column.heading;
        EXPECT_LE(std::string(column.brief).size(), static_cast<std::size_t>(column.width)) << column.heading;
    }
}

TEST(TextTable, IsWrittenOnceAtTheEnd) {
    Written written;
    outputs::TextTable output(sinkTo(written));
    output.picture(pictureOf({knownAircraft()}));
    EXPECT_EQ(written.text(), "");
    output.finish(pictureOf({knownAircraft()}));
    EXPECT_EQ(written.text(), tableText(makeTable(pictureOf({knownAircraft()}))));
    EXPECT_EQ(written.flushes, 1);
}
