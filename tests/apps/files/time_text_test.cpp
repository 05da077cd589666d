// SPDX-License-Identifier: MIT
#include "files/time_text.h"

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::files;

namespace {

constexpr quorvel::airspace::TimeMs kMayDay = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC

} // namespace

TEST(Times, AreParsedFromDatesAndTimesInUtc) {
    EXPECT_EQ(parseTime("2024-05-01"), kMayDay);
    EXPECT_EQ(parseTime("2024-05-01T12:34:56Z"), kMayDay + 45'296'000);
    EXPECT_EQ(parseTime("2024-05-01T12:34:56.789Z"), kMayDay + 45'296'789);
    EXPECT_EQ(parseTime("1970-01-01"), 0U);
    for (auto const* text :
        {"", "today", "2024-5-1", "2024-02-30", "2024-05-01T", "2024-05-01T25:00:00Z", "2024-05-01T12:34:56",
            "2024-05-01T12:34:56.7Z", "2024-05-01T12:34:56Zulu", "1969-12-31", "2024-05-01 12:34:56Z", "-024-05-01"}) {
        EXPECT_FALSE(parseTime(text)) << text;
    }
}
