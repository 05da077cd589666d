// SPDX-License-Identifier: MIT
#include "core/names.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

TEST(NameTable, NamesItsValuesAndFallsBackForAllOthers) {
    NameTable const names{{"Uplink", "Downlink"}, "--"};
    EXPECT_EQ(names[0], "Uplink");
    EXPECT_EQ(names[1], "Downlink");
    EXPECT_EQ(names[2], "--");
    EXPECT_EQ(names[static_cast<std::size_t>(-1)], "--");
    EXPECT_EQ(names.size(), 2U);
}

TEST(NameTable, HandsOutTheSameReferenceEachTime) {
    NameTable const names{{"a"}, "b"};
    EXPECT_EQ(&names[0], &names[0]);
    EXPECT_EQ(&names[1], &names[99]);
}
