// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

using namespace quorvel::modes;

TEST(Formatted, FormatsShortTexts) {
    EXPECT_EQ(formatted("%.4o", 04032U), "4032");
    EXPECT_EQ(formatted("%6.6X", 0xABCU), "000ABC");
    EXPECT_EQ(formatted("plain"), "plain");
}

TEST(Formatted, CutsAt63Characters) { EXPECT_EQ(formatted("%s", std::string(100, 'x').c_str()), std::string(63, 'x')); }

TEST(NumberText, IsThatOfTheCLocale) {
    double const numbers[] = {0.0, -0.0, 0.125, 5 * 0.14583332 + 0.125, 175.0, 359.99999949, 1e6, 1e-7, 123456789.,
        -0.5, 12.7279220613579, 1e300, 100000.0, 999999.5};
    for (double const number : numbers) {
        char text[400];
        std::snprintf(text, sizeof text, "%f", number);
        EXPECT_EQ(fixedSix(number), text);
        std::snprintf(text, sizeof text, "%g", number);
        EXPECT_EQ(sixSignificant(number), text);
    }
    EXPECT_EQ(fixedSix(0.125), "0.125000");
    EXPECT_EQ(sixSignificant(12.7279220613579), "12.7279");
}

TEST(NumberText, HasRoomForEveryNumber) {
    EXPECT_EQ(fixedSix(std::numeric_limits<double>::lowest()).size(), 1 + 309 + 7U);
    EXPECT_EQ(fixedSix(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(fixedSix(std::numeric_limits<double>::quiet_NaN()), "nan");
}
