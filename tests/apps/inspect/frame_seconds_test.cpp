// SPDX-License-Identifier: MIT
#include "inspect/frame_seconds.h"

#include <gtest/gtest.h>

namespace quorvel::inspect {

namespace {

airspace::Frame frameAt(airspace::TimeMs time, std::optional<std::uint64_t> stamp = {}) {
    airspace::Frame frame;
    frame.time = time;
    frame.stamp = stamp;
    return frame;
}

constexpr std::uint64_t kTicksPerMs = 12'000;

} // namespace

TEST(FrameSeconds, FollowTheTimesOfTheFrames) {
    FrameSeconds clock({}, false);
    auto const first = clock.next(frameAt(1'500));
    EXPECT_DOUBLE_EQ(clock.next(frameAt(4'000)) - first, 2.5);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(90'004'000)) - first, 90'002.5);
}

TEST(FrameSeconds, CountFramesThatHaveNoTimes) {
    FrameSeconds clock(0.25, false);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(0)), 0.0);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(0)), 0.25);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(0)), 0.5);
}

TEST(FrameSeconds, LeaveTenMinutesWhereACounterStartsAnew) {
    FrameSeconds clock({}, true);
    auto const first = clock.next(frameAt(1'000, 500'000 * kTicksPerMs));
    EXPECT_DOUBLE_EQ(clock.next(frameAt(2'000, 501'000 * kTicksPerMs)) - first, 1.0);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(2'000, 70 * kTicksPerMs)) - first, 601.0);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(3'000, 1'070 * kTicksPerMs)) - first, 602.0);
    EXPECT_DOUBLE_EQ(clock.next(frameAt(3'000, 700'000 * kTicksPerMs)) - first, 1202.0);
}

TEST(FrameSeconds, DoNotTakeTimesOfDayForACounter) {
    FrameSeconds clock({}, false);
    auto const first = clock.next(frameAt(1'000, std::uint64_t{86'399} << 30));
    EXPECT_DOUBLE_EQ(clock.next(frameAt(2'000, 0)) - first, 1.0);
}

} // namespace quorvel::inspect
