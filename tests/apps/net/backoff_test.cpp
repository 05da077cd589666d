// SPDX-License-Identifier: MIT
#include "net/backoff.h"

#include <gtest/gtest.h>

#include <vector>

using quorvel::net::Backoff;

namespace {

std::vector<long> seconds(Backoff& pause, std::size_t count) {
    std::vector<long> all;
    while (all.size() < count) all.push_back(static_cast<long>(pause.next().count()));
    return all;
}

} // namespace

TEST(Backoff, DoublesUpToAMinute) {
    Backoff pause;
    EXPECT_EQ(seconds(pause, 9), (std::vector<long>{1, 2, 4, 8, 16, 32, 60, 60, 60}));
}

TEST(Backoff, BeginsAnewAfterASuccess) {
    Backoff pause;
    seconds(pause, 5);
    pause.reset();
    EXPECT_EQ(seconds(pause, 2), (std::vector<long>{1, 2}));
}
