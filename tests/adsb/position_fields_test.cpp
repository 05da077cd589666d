// SPDX-License-Identifier: MIT
#include "adsb/position_fields.h"

#include <modes/adsb_airborne_position_message.h>

#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

TEST(PositionFields, AreReadAndListedInTheOrderOfThePayload) {
    ADSBAirbornePositionMessage message;
    ASSERT_TRUE(
        message.decode(test::withBits(test::airbornePosition({0x15555, 0x0AAAA, true, 0, false, 11}), 20, 1, 1)));
    auto const listed = message.fields().size();
    auto const position = readPositionFields(Payload(message));
    listPositionFields(message);
    EXPECT_TRUE(position.timeApplicability);
    EXPECT_EQ(position.cprFormat, 0U);
    EXPECT_EQ(position.cprLatitude, 0x15555U);
    EXPECT_EQ(position.cprLongitude, 0x0AAAAU);
    auto const fields = message.fields();
    ASSERT_EQ(fields.size(), listed + 4);
    char const* const names[] = {"T", "CPR_FMT", "CPR_LAT", "CPR_LON"};
    char const* const texts[] = {"1", "ODD", "87381", "43690"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(fields[listed + i].name(), names[i]);
        EXPECT_EQ(fields[listed + i].description(), texts[i]);
    }
}

TEST(PositionText, NamesTheFormatByTheMessagesOwnConvention) {
    EXPECT_EQ(positionText(1, 2, 3), ", CPR=EVEN, LAT=2, LON=3");
    EXPECT_EQ(positionText(0, 2, 3), ", CPR=ODD, LAT=2, LON=3");
}
