// SPDX-License-Identifier: MIT
#include "report/utc_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>

using namespace quorvel::modes;

TEST(UtcText, ShowsMilliseconds) {
    EXPECT_EQ(utcText(1'714'566'896'789), "2024-05-01T12:34:56.789Z");
    EXPECT_EQ(utcText(999), "1970-01-01T00:00:00.999Z");
    EXPECT_EQ(utcText(951'782'400'000), "2000-02-29T00:00:00.000Z");
    EXPECT_EQ(utcText(253'402'300'800'000), "10000-01-01T00:00:00.000Z");
}

TEST(UtcText, IsDefinedForEveryTime) {
    EXPECT_EQ(utcText(std::numeric_limits<unsigned long long>::max()), "584556019-04-03T14:25:51.615Z");
}

TEST(UtcText, DoesNotDependOnTheTimeZone) {
    ::setenv("TZ", "Pacific/Auckland", 1);
    ::tzset();
    EXPECT_EQ(utcText(1'714'566'896'789), "2024-05-01T12:34:56.789Z");
    ::unsetenv("TZ");
    ::tzset();
}
