// SPDX-License-Identifier: MIT
#include "run/growing_pause.h"

#include <gtest/gtest.h>

#include <vector>

using quorvel::host::GrowingPause;

namespace {

std::vector<long> seconds(GrowingPause& pause, std::size_t count) {
    std::vector<long> all;
    while (all.size() < count) all.push_back(static_cast<long>(pause.next().count()));
    return all;
}

} // namespace

TEST(GrowingPause, DoublesUpToAMinute) {
    GrowingPause pause;
    EXPECT_EQ(seconds(pause, 9), (std::vector<long>{1, 2, 4, 8, 16, 32, 60, 60, 60}));
}

TEST(GrowingPause, BeginsAnewAfterASuccess) {
    GrowingPause pause;
    seconds(pause, 5);
    pause.reset();
    EXPECT_EQ(seconds(pause, 2), (std::vector<long>{1, 2}));
}
