// SPDX-License-Identifier: MIT
#include "airspace/readings/standard_atmosphere.h"

#include <gtest/gtest.h>

using namespace quorvel::airspace;

TEST(StandardAtmosphere, TheTableOfPressuresIsTheFormulasAtEveryAltitudeThatCanBeSent) {
    for (int altitude = -1'000; altitude <= 126'700; altitude += 25) {
        EXPECT_NEAR(tabulatedPressureRatio(altitude), standardPressureRatio(altitude), 1e-4) << altitude;
    }
}

TEST(StandardAtmosphere, TheTableOfPressuresEndsWithItsLastValueOnBothSides) {
    EXPECT_NEAR(tabulatedPressureRatio(-1'000'000), standardPressureRatio(-1'024), 1e-9);
    EXPECT_NEAR(tabulatedPressureRatio(1'000'000), standardPressureRatio(126'976), 1e-4);
}

TEST(StandardAtmosphere, HasThePressuresOfItsTables) {
    EXPECT_NEAR(1013.25 * tabulatedPressureRatio(0), 1013.25, 0.1);
    EXPECT_NEAR(1013.25 * tabulatedPressureRatio(18'000), 506.0, 0.5);
    EXPECT_NEAR(1013.25 * tabulatedPressureRatio(36'089), 226.3, 0.3);
    EXPECT_NEAR(1013.25 * tabulatedPressureRatio(50'000), 116.0, 0.3);
}
