// SPDX-License-Identifier: MIT
#include "outputs/shown_aircraft.h"

#include "pictures.h"

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::outputs::test;

TEST(ShownAircraft, ShowsPositionsOfTheLastMinute) {
    EXPECT_TRUE(outputs::showsPosition(knownAircraft(60'000)));
    EXPECT_FALSE(outputs::showsPosition(knownAircraft(60'001)));
    EXPECT_FALSE(outputs::showsPosition(heardAircraft(1, kNow)));
}

TEST(ShownAircraft, AreOneForEachAddressHeardLast) {
    auto a = heardAircraft(0xABC, kNow - 2'000), b = heardAircraft(0xABC, kNow - 1'000);
    auto const c = heardAircraft(0x123, kNow);
    a.source = "a", b.source = "b";
    auto const picture = pictureOf({a, b, c});
    auto const shown = outputs::newestByAddress(picture);
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0]->address, 0x123U);
    EXPECT_EQ(shown[1]->source, "b");
}

TEST(ShownAircraft, AreHeardLastByTheClockOfTheirOwnSource) {
    auto recorded = heardAircraft(0xABC, 1'000), live = heardAircraft(0xABC, kNow - 5'000);
    recorded.source = "recorded", recorded.now = 2'000;
    live.source = "live";
    auto const picture = pictureOf({live, recorded});
    EXPECT_EQ(outputs::newestByAddress(picture).at(0)->source, "recorded");
}

TEST(ShownAircraft, HaveKnownTimesWhenTheirSourceHas) {
    auto picture = pictureOf({heardAircraft(1, kNow), heardAircraft(2, kNow), heardAircraft(3, kNow)});
    picture.sources[0].name = "undated";
    picture.sources[0].timeKnown = false;
    picture.sources.push_back({"dated", "reading", kNow, kNow, true, {}});
    picture.aircraft[0].source = "undated";
    picture.aircraft[1].source = "dated";
    EXPECT_FALSE(outputs::timeKnown(picture, picture.aircraft[0]));
    EXPECT_TRUE(outputs::timeKnown(picture, picture.aircraft[1]));
    EXPECT_FALSE(outputs::timeKnown(picture, picture.aircraft[2])) << "of merged sources all must know";
}
