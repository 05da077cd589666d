// SPDX-License-Identifier: MIT
#include <airspace/aircraft.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace quorvel::airspace;

TEST(AircraftTexts, HaveAllTheirDigits) {
    EXPECT_EQ(addressText(0xABC), "000ABC");
    EXPECT_EQ(addressText(0x4840D6), "4840D6");
    EXPECT_EQ(addressText(0x4840D6, AddressKind::TrackFile), "~4840D6") << "no state assigned it";
    EXPECT_EQ(textOf(Squawk{07}), "0007");
    EXPECT_EQ(textOf(Squawk{07700}), "7700");
}

TEST(Squawk, SaysWhatEmergencyItMeans) {
    EXPECT_EQ(Squawk{07500}.emergency(), Emergency::Unlawful);
    EXPECT_EQ(Squawk{07600}.emergency(), Emergency::Radio);
    EXPECT_EQ(Squawk{07700}.emergency(), Emergency::General);
    for (int const code : {0, 07000, 07501, 07777})
        EXPECT_EQ(Squawk{static_cast<std::uint16_t>(code)}.emergency(), Emergency::None) << code;
}

TEST(Aircraft, HasNoAgesForTimesToCome) {
    Aircraft aircraft;
    aircraft.now = 1000;
    EXPECT_EQ(aircraft.age(400), 600U);
    EXPECT_EQ(aircraft.age(1001), 0U);
}

TEST(Items, AreEachVisitedOnceByANameOfTheirOwn) {
    Aircraft aircraft;
    std::set<std::string_view> names;
    std::set<void const*> items;
    std::size_t visits = 0;
    visitItems(aircraft, [&](ItemText const& text, auto& item) {
        names.insert(text.name);
        items.insert(&item);
        item.updated = ++visits;
        EXPECT_FALSE(text.label.empty());
    });
    EXPECT_EQ(names.size(), visits);
    EXPECT_EQ(items.size(), visits);
    EXPECT_EQ(aircraft.callsign.updated, 1U);
    EXPECT_EQ(aircraft.nicBaro.updated, visits);
}
