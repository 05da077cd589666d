// SPDX-License-Identifier: MIT
#include "inspect/position_finder.h"

#include "reference/cpr_encoder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quorvel::inspect {

namespace {

using airspace::Place;
using Messages = std::vector<PositionMessage>;

constexpr double kMetreNm = 1.0 / 1852.0;
constexpr Place kStart{52.3, 4.78};

PositionMessage airborne(Place const& place, bool isOdd, double seconds) {
    auto const sent = modes::reference::encoded(place.latitude, place.longitude, isOdd ? 1 : 0);
    return {{sent.latitude, sent.longitude, isOdd, false}, seconds, {}};
}

// Surface positions have four times as many units in a zone, of which the lower 17 bits are sent.
PositionMessage onSurface(Place const& place, bool isOdd, double seconds, std::optional<double> speedKt = {}) {
    constexpr double units = 524288.0;
    double const zoneHeight = 360.0 / (60 - (isOdd ? 1 : 0));
    double const zoneWidth =
        360.0 / std::max(modes::reference::longitudeZonesByFormula(place.latitude) - (isOdd ? 1 : 0), 1);
    auto const part = [](double degrees, double zone) {
        return static_cast<std::uint32_t>(
                   std::floor(units * modes::reference::positiveRemainder(degrees, zone) / zone + 0.5)) &
               0x1FFFF;
    };
    return {{part(place.latitude, zoneHeight), part(place.longitude, zoneWidth), isOdd, true}, seconds, speedKt};
}

// An aircraft that flies north with 480 kt and is heard every `step` seconds.
Place placeAt(double seconds) { return {kStart.latitude + seconds * 480.0 / 3600.0 / 60.0, kStart.longitude}; }

Messages flight(int count, double step) {
    Messages messages;
    for (int i = 0; i < count; ++i) messages.push_back(airborne(placeAt(i * step), i % 2 == 1, i * step));
    return messages;
}

void expectAt(std::optional<FoundPlace> const& found, Place const& place, bool isOfPair) {
    ASSERT_TRUE(found);
    EXPECT_LT(airspace::distanceNm(found->place, place), 10.0 * kMetreNm);
    EXPECT_EQ(found->isOfPair, isOfPair);
}

} // namespace

TEST(PositionFinder, FindsBothMessagesOfAPairEachAtItsOwnPlace) {
    auto const found = findPlaces(flight(2, 9.0), {});
    expectAt(found[0], placeAt(0.0), true);
    expectAt(found[1], placeAt(9.0), true);
}

TEST(PositionFinder, FindsNothingWhereNoPairIsWithinTenSeconds) {
    for (auto const& place : findPlaces(flight(4, 10.5), {})) EXPECT_FALSE(place);
}

TEST(PositionFinder, LooksAheadForTheMessagesBeforeThePair) {
    auto messages = flight(2, 1.0);
    messages.insert(messages.begin(), airborne(placeAt(-25.0), true, -25.0));
    messages.push_back(airborne(placeAt(30.0), true, 30.0));
    auto const found = findPlaces(messages, {});
    expectAt(found[0], placeAt(-25.0), false);
    expectAt(found[3], placeAt(30.0), false);
}

TEST(PositionFinder, GoesOnFromPlaceToPlaceUpToThirtySecondsApart) {
    auto messages = flight(2, 1.0);
    messages.push_back(airborne(placeAt(29.0), false, 29.0));
    messages.push_back(airborne(placeAt(58.0), false, 58.0));
    messages.push_back(airborne(placeAt(89.0), false, 89.0));
    auto const found = findPlaces(messages, {});
    expectAt(found[3], placeAt(58.0), false);
    EXPECT_FALSE(found[4]);
}

TEST(PositionFinder, LeavesOutAPlaceThatTheAircraftCannotReach) {
    auto messages = flight(12, 0.5);
    messages[6] = airborne({48.0, 11.0}, false, 3.0);
    messages[7] = airborne({48.0, 11.0}, true, 3.5);
    auto const found = findPlaces(messages, {});
    EXPECT_FALSE(found[6]);
    EXPECT_FALSE(found[7]);
    for (std::size_t i : {0U, 5U, 8U, 11U}) expectAt(found[i], placeAt(0.5 * static_cast<double>(i)), true);
}

TEST(PositionFinder, BelievesTheLongerTrackEvenIfTheWrongOneComesFirst) {
    auto messages = flight(12, 0.5);
    messages[0] = airborne({48.0, 11.0}, false, 0.0);
    messages[1] = airborne({48.0, 11.0}, true, 0.5);
    auto const found = findPlaces(messages, {});
    EXPECT_FALSE(found[0]);
    EXPECT_FALSE(found[1]);
    expectAt(found[2], placeAt(1.0), true);
}

TEST(PositionFinder, FindsPlacesOnTheSurfaceWithAReferenceAlone) {
    Place const stand{52.31, 4.76};
    Messages const messages{onSurface(stand, false, 0.0), onSurface(stand, true, 20.0)};
    for (auto const& place : findPlaces(messages, {})) EXPECT_FALSE(place);
    auto const found = findPlaces(messages, kStart);
    expectAt(found[0], stand, true);
    expectAt(found[1], stand, true);
}

TEST(PositionFinder, WaitsLongerForThePairOfASlowAircraft) {
    Place const stand{52.31, 4.76};
    Messages const slow{onSurface(stand, false, 0.0, 5.0), onSurface(stand, true, 45.0, 5.0)};
    Messages const fast{onSurface(stand, false, 0.0, 60.0), onSurface(stand, true, 45.0, 60.0)};
    expectAt(findPlaces(slow, kStart)[1], stand, true);
    expectAt(findPlaces(fast, kStart)[1], stand, false);
}

TEST(PositionFinder, FollowsAnAircraftThatLandsWithoutAReference) {
    Place const touchdown{52.305, 4.78};
    auto messages = flight(2, 1.0);
    messages.push_back(onSurface(touchdown, false, 20.0));
    expectAt(findPlaces(messages, {})[2], touchdown, false);
}

TEST(PositionFinder, GivesALoneSurfaceMessageThePlaceNextToTheReference) {
    Place const stand{52.31, 4.76};
    expectAt(findPlaces({onSurface(stand, false, 0.0)}, kStart)[0], stand, false);
    EXPECT_FALSE(findPlaces({airborne(stand, false, 0.0)}, kStart)[0]);
}

} // namespace quorvel::inspect
