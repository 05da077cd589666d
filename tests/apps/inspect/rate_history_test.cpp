// SPDX-License-Identifier: MIT
#include "inspect/rate_history.h"

#include <gmock/gmock.h>

#include <numeric>

namespace quorvel::inspect {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr airspace::TimeMs kNoon = 43'200'000;

RateHistory historyOf(std::vector<airspace::TimeMs> const& sinceNoon) {
    RateHistory history;
    for (auto const time : sinceNoon) history.take(kNoon + time);
    history.finish();
    return history;
}

} // namespace

TEST(RateHistory, TellsSpanAndBusiestSecond) {
    auto const history = historyOf({0, 100, 200, 1100, 1200, 1300, 1999, 2000, 5500});
    EXPECT_EQ(history.first(), kNoon);
    EXPECT_EQ(history.last(), kNoon + 5500);
    EXPECT_EQ(history.frames(), 9U);
    EXPECT_EQ(history.busiestSecond(), 4U);
    EXPECT_THAT(history.intervals(), ElementsAre(3, 4, 1, 0, 0, 1));
    EXPECT_EQ(history.intervalWidth(), 1000U);
}

TEST(RateHistory, ListsGapsOfMoreThanTenSeconds) {
    auto const history = historyOf({0, 10'000, 20'001, 20'002, 60'000, 60'001});
    ASSERT_EQ(history.gaps().size(), 2U);
    EXPECT_EQ(history.gaps()[0].start, kNoon + 10'000);
    EXPECT_EQ(history.gaps()[0].length, 10'001U);
    EXPECT_EQ(history.gaps()[1].start, kNoon + 20'002);
    EXPECT_EQ(history.gapCount(), 2U);
}

TEST(RateHistory, TakesASingleFarTimeForADamagedTimeStamp) {
    auto const history = historyOf({0, 1000, 40'000'000, 1001, 1, 2000});
    EXPECT_EQ(history.last(), kNoon + 2000);
    EXPECT_EQ(history.first(), kNoon);
    EXPECT_THAT(history.gaps(), IsEmpty());
    EXPECT_EQ(history.frames(), 6U);
}

TEST(RateHistory, WidensItsIntervalsSoThatMemoryStaysConstant) {
    RateHistory history;
    for (airspace::TimeMs second = 0; second < 100'000; ++second) history.take(kNoon + second * 1000);
    history.finish();
    EXPECT_LE(history.intervals().size(), RateHistory::kMostIntervals);
    EXPECT_EQ(history.intervalWidth(), 2'048'000U);
    EXPECT_EQ(std::accumulate(history.intervals().begin(), history.intervals().end(), std::uint64_t{0}), 100'000U);
    EXPECT_EQ(history.intervals().front(), 2048U);
}

TEST(RateHistory, CountsGapsBeyondThoseItLists) {
    RateHistory history;
    for (airspace::TimeMs i = 0; i < 300; ++i) {
        history.take(kNoon + i * 20'000);
        history.take(kNoon + i * 20'000 + 1);
    }
    history.finish();
    EXPECT_EQ(history.gaps().size(), RateHistory::kMostGaps);
    EXPECT_EQ(history.gapCount(), 299U);
}

TEST(RateHistory, OfFewFramesIsWhatTheyAre) {
    EXPECT_EQ(historyOf({}).frames(), 0U);
    auto const one = historyOf({5});
    EXPECT_EQ(one.frames(), 1U);
    EXPECT_EQ(one.busiestSecond(), 1U);
    EXPECT_EQ(one.first(), one.last());
    auto const two = historyOf({5, 30'000});
    EXPECT_EQ(two.gapCount(), 1U);
    EXPECT_EQ(historyOf({5, 3, 4}).last(), kNoon + 5);
}

} // namespace quorvel::inspect
