// SPDX-License-Identifier: MIT
// What the message is before it decodes, and when it is decoded again or fails; what it makes of payloads
// is tested in tests/vectors.
#include <modes/adsb_surface_position_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::withBits;

TEST(SurfacePosition, StartsAtZero) {
    ADSBSurfacePositionMessage const message;
    EXPECT_EQ(message.type(), ADSBMessage::POS_GND);
    EXPECT_EQ(message.movementCode(), 0U);
    EXPECT_FALSE(message.movement());
    EXPECT_EQ(message.groundSpeed(), 0.0);
    EXPECT_FALSE(message.headingValid());
    EXPECT_EQ(message.heading(), 0.0);
    EXPECT_FALSE(message.timeApplicability());
    EXPECT_EQ(message.cprFormat(), 0U);
    EXPECT_EQ(message.cprLatitude(), 0U);
    EXPECT_EQ(message.cprLongitude(), 0U);
    EXPECT_EQ(message.description(), "TC=POS_GND, SPD=0, HDG=0, CPR=ODD, LAT=0, LON=0");
}

TEST(SurfacePosition, HasTheSpeedsOfTheMovementTable) {
    struct {
        unsigned code;
        double knots;
    } const rows[] = {{0, 0.0}, {1, 0.0}, {2, 0.125}, {3, 0.125}, {8, 5 * 0.14583332 + 0.125}, {9, 1.0}, {12, 1.75},
        {13, 2.0}, {38, 14.5}, {39, 15.0}, {93, 69.0}, {94, 70.0}, {108, 98.0}, {109, 100.0}, {123, 170.0},
        {124, 175.0}, {125, 0.0}, {126, 0.0}, {127, 0.0}};
    for (auto const& [code, knots] : rows) {
        CapturedLog log;
        ADSBSurfacePositionMessage message;
        EXPECT_TRUE(message.decode(withBits(test::payload(7), 5, 7, code)));
        EXPECT_EQ(message.groundSpeed(), knots) << code;
        EXPECT_EQ(message.movement(), code >= 1 && code <= 124);
        EXPECT_EQ(log.lines().size(), code > 124 ? 1U : 0U) << "a reserved code is reported once";
    }
}
