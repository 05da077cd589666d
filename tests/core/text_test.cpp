// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

TEST(Formatted, FormatsShortTexts) {
    EXPECT_EQ(formatted("%.4o", 04032U), "4032");
    EXPECT_EQ(formatted("%6.6X", 0xABCU), "000ABC");
    EXPECT_EQ(formatted("plain"), "plain");
}

TEST(Formatted, CutsAt63Characters) {
    EXPECT_EQ(formatted("%s", std::string(100, 'x').c_str()), std::string(63, 'x'));
}
