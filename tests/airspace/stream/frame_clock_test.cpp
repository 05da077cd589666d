// SPDX-License-Identifier: MIT
#include "airspace/stream/frame_clock.h"

#include <gtest/gtest.h>

using namespace quorvel::airspace;

namespace {

constexpr TimeMs kDay = 86'400'000;
constexpr TimeMs kHour = 3'600'000;
constexpr TimeMs kMayDay = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC
constexpr std::uint64_t kTicksPerMs = 12'000;
constexpr std::uint64_t kCounterValues = std::uint64_t{1} << 48;

std::uint64_t ofDay(TimeMs time) { return time % kDay / 1000 << 30 | time % 1000 * 1'000'000; }

Frame frame(std::optional<std::uint64_t> stamp) {
    Frame result;
    result.stamp = stamp;
    return result;
}

// Frames with these stamps, one for each.
Frames frames(std::vector<std::uint64_t> const& stamps) {
    Frames all;
    for (auto const stamp : stamps) all.push_back(frame(stamp));
    return all;
}

struct Clock {
    Counts counts;
    FrameClock clock;

    explicit Clock(TimeOptions const& options, Origin origin = Origin::Recording) : clock(options, origin) {}

    TimeMs time(std::optional<std::uint64_t> stamp, TimeMs arrival = 0) {
        auto one = frame(stamp);
        clock.stamp(one, arrival, counts);
        EXPECT_EQ(one.now, clock.now());
        return one.time;
    }
};

TimeReading found(std::vector<std::uint64_t> const& stamps, Origin origin = Origin::Recording, TimeMs arrival = 0) {
    FrameClock clock({}, origin);
    EXPECT_TRUE(clock.settle(frames(stamps), arrival, true));
    return clock.reading();
}

std::vector<std::uint64_t> ticks(TimeMs from, TimeMs step, std::size_t count) {
    std::vector<std::uint64_t> stamps;
    for (std::size_t i = 0; i < count; ++i) stamps.push_back((from + i * step) * kTicksPerMs);
    return stamps;
}

std::vector<std::uint64_t> timesOfDay(TimeMs from, TimeMs step, std::size_t count) {
    std::vector<std::uint64_t> stamps;
    for (std::size_t i = 0; i < count; ++i) stamps.push_back(ofDay(from + i * step));
    return stamps;
}

} // namespace

TEST(FrameClock, TellsTimesOfDayFromTicks) {
    EXPECT_EQ(found(timesOfDay(12 * kHour, 10, 500)), TimeReading::Receiver);
    EXPECT_EQ(found(timesOfDay(23 * kHour, 1, 50)), TimeReading::Receiver) << "a short recording";
    EXPECT_EQ(found(ticks(500 * kHour, 100, 2000)), TimeReading::Counter12MHz);
    EXPECT_EQ(found(ticks(1, 5, 2000)), TimeReading::Counter12MHz) << "too many in the second that they seem to take";
    EXPECT_EQ(found({}), TimeReading::Fixed);
    EXPECT_EQ(found({0, 0, 0}), TimeReading::Fixed) << "receivers without a clock";
    EXPECT_EQ(found({0, 0}, Origin::Connection, kMayDay), TimeReading::Arrival);
}

TEST(FrameClock, ToleratesADamagedStampWhenItTellsWhatTheyAre) {
    auto stamps = timesOfDay(12 * kHour, 10, 500);
    stamps[100] = ~std::uint64_t{0} >> 16;
    EXPECT_EQ(found(stamps), TimeReading::Receiver);
}

TEST(FrameClock, TakesAPipeForARecordingOfToday) {
    EXPECT_EQ(found(timesOfDay(3 * kHour, 10, 500), Origin::Pipe, kMayDay + 12 * kHour), TimeReading::Receiver);
    EXPECT_EQ(found({}, Origin::Pipe, kMayDay), TimeReading::Arrival);
    Clock clock({TimeReading::Receiver, 0}, Origin::Pipe);
    EXPECT_EQ(clock.time(ofDay(3 * kHour), kMayDay + 12 * kHour), kMayDay + 3 * kHour);
}

TEST(FrameClock, WaitsForMoreFramesUntilItCanDecide) {
    FrameClock clock({}, Origin::Recording);
    EXPECT_FALSE(clock.settle(frames(timesOfDay(12 * kHour, 10, 50)), 0, false));
    EXPECT_EQ(clock.reading(), TimeReading::Auto);
    EXPECT_TRUE(clock.settle(frames(timesOfDay(12 * kHour, 10, 150)), 0, false));
    EXPECT_EQ(clock.reading(), TimeReading::Receiver);
    FrameClock named({TimeReading::Counter12MHz, 0}, Origin::Recording);
    EXPECT_TRUE(named.settle({}, 0, false));
}

TEST(FrameClock, DatesARecording) {
    Clock dated({TimeReading::Receiver, kMayDay});
    EXPECT_EQ(dated.time(ofDay(18 * kHour)), kMayDay + 18 * kHour);
    EXPECT_TRUE(dated.clock.timeKnown());
    Clock undated({TimeReading::Receiver, 0});
    EXPECT_EQ(undated.time(ofDay(18 * kHour)), kDay + 18 * kHour);
    EXPECT_FALSE(undated.clock.timeKnown());
    EXPECT_EQ(Clock({TimeReading::Receiver, 0}).time(0), kDay) << "0 would be no time";
}

TEST(FrameClock, PaysNoHeedToTheHostsClockInARecording) {
    Clock clock({TimeReading::Receiver, 0});
    EXPECT_EQ(clock.time(ofDay(kHour), kMayDay), kDay + kHour);
    EXPECT_EQ(clock.time({}, kMayDay), kDay + kHour) << "a frame without a stamp comes at the time of the one before";
    Clock ticks12({TimeReading::Counter12MHz, kMayDay});
    EXPECT_EQ(ticks12.time(5, 99 * kMayDay), kMayDay);
}

TEST(FrameClock, GoesOnAcrossMidnight) {
    Clock clock({TimeReading::Receiver, kMayDay});
    clock.time(ofDay(kDay - 100));
    EXPECT_EQ(clock.time(ofDay(50)), kMayDay + kDay + 50);
    EXPECT_EQ(clock.time(ofDay(kDay - 10)), kMayDay + kDay - 10) << "a late frame of the day before";
    EXPECT_EQ(clock.time(ofDay(60)), kMayDay + kDay + 60);
    EXPECT_EQ(clock.clock.now(), kMayDay + kDay + 60);
    EXPECT_EQ(clock.counts.timeBackwards, 1U);
    EXPECT_EQ(clock.counts.timeJumps, 0U);
}

TEST(FrameClock, OfALiveStreamHasTheHostsDate) {
    Clock clock({TimeReading::Receiver, 0}, Origin::Connection);
    EXPECT_EQ(clock.time(ofDay(kDay - 5), kMayDay + 3), kMayDay - 5) << "just before midnight, read just after it";
    Clock fast({TimeReading::Receiver, 0}, Origin::Connection);
    EXPECT_EQ(fast.time(ofDay(5), kMayDay - 3), kMayDay + 5) << "the receiver's clock is ahead";
}

TEST(FrameClock, IsNotTurnedByADamagedStamp) {
    for (TimeMs const damaged : {3 * kHour, 11 * kHour, 18 * kHour, 23 * kHour}) {
        Clock clock({TimeReading::Receiver, kMayDay});
        clock.time(ofDay(12 * kHour));
        clock.time(ofDay(damaged));
        EXPECT_EQ(clock.clock.now(), kMayDay + 12 * kHour);
        EXPECT_EQ(clock.time(ofDay(12 * kHour + 1)), kMayDay + 12 * kHour + 1);
        EXPECT_EQ(clock.counts.timeJumps, 0U);
    }
}

TEST(FrameClock, GivesNoTimeBeyondThePresentToAFrameThatIsNotBelieved) {
    Clock clock({TimeReading::Receiver, kMayDay});
    clock.time(ofDay(12 * kHour));
    EXPECT_EQ(clock.time(ofDay(16 * kHour)), kMayDay + 12 * kHour) << "a damaged stamp";
    EXPECT_EQ(clock.time(ofDay(12 * kHour + 1)), kMayDay + 12 * kHour + 1);
    TimeMs time = 0;
    for (TimeMs i = 0; i < 10; ++i) time = clock.time(ofDay(16 * kHour + i));
    EXPECT_EQ(time, kMayDay + 16 * kHour + 9) << "the stream has stayed there";
}

TEST(FrameClock, FollowsAStreamThatStaysWhereItJumped) {
    Clock clock({TimeReading::Receiver, kMayDay});
    clock.time(ofDay(12 * kHour));
    for (TimeMs i = 0; i < 20; ++i) clock.time(ofDay(15 * kHour + i));
    EXPECT_EQ(clock.clock.now(), kMayDay + 15 * kHour + 19);
    for (TimeMs i = 0; i < 20; ++i) clock.time(ofDay(13 * kHour + i));
    EXPECT_EQ(clock.clock.now(), kMayDay + 13 * kHour + 19);
    EXPECT_EQ(clock.counts.timeJumps, 2U);
}

TEST(FrameClock, AnchorsACounterWhereItBegins) {
    Clock recorded({TimeReading::Counter12MHz, kMayDay});
    EXPECT_EQ(recorded.time(77 * kTicksPerMs), kMayDay);
    EXPECT_EQ(recorded.time(1077 * kTicksPerMs), kMayDay + 1000);
    EXPECT_EQ(recorded.time(1070 * kTicksPerMs), kMayDay + 993) << "a late frame";
    Clock live({TimeReading::Counter12MHz, 0}, Origin::Connection);
    EXPECT_EQ(live.time(77 * kTicksPerMs, kMayDay + 5), kMayDay + 5);
    EXPECT_EQ(live.time(1077 * kTicksPerMs, kMayDay + 9'999'999), kMayDay + 1005) << "late on the network";
}

TEST(FrameClock, GoesOnAcrossTheWrapOfACounter) {
    Clock clock({TimeReading::Counter12MHz, kMayDay});
    clock.time(kCounterValues - 10 * kTicksPerMs);
    EXPECT_EQ(clock.time(30 * kTicksPerMs), kMayDay + 40);
    TimeMs expected = kMayDay + 40;
    for (std::uint64_t tick = 30 * kTicksPerMs; expected < kMayDay + 600 * kDay; expected += 500'000) {
        EXPECT_EQ(clock.time(tick % kCounterValues), expected);
        tick += 500'000 * kTicksPerMs;
    }
    EXPECT_EQ(clock.counts.timeJumps, 0U) << "a counter wraps in 271 days";
}

TEST(FrameClock, AnchorsACounterAnewAfterAJump) {
    Clock live({TimeReading::Counter12MHz, 0}, Origin::Connection);
    live.time(500'000 * kTicksPerMs, kMayDay);
    EXPECT_EQ(live.time(1, kMayDay + 60'000), kMayDay + 60'000) << "the receiver was switched on again";
    EXPECT_EQ(live.time(1 + kTicksPerMs, kMayDay + 60'001), kMayDay + 60'001);
    EXPECT_EQ(live.counts.timeJumps, 1U);
    Clock recorded({TimeReading::Counter12MHz, kMayDay});
    recorded.time(500'000 * kTicksPerMs);
    recorded.time(500'010 * kTicksPerMs);
    EXPECT_EQ(recorded.time(1), kMayDay + 10) << "nobody knows how long it was off";
}

TEST(FrameClock, TakesTheTimeOfArrivalOrOneForAll) {
    Clock arrival({TimeReading::Arrival, 0}, Origin::Connection);
    EXPECT_EQ(arrival.time(5, kMayDay + 7), kMayDay + 7);
    Clock file({TimeReading::Arrival, 0});
    EXPECT_EQ(file.time(5, kMayDay + 7), kMayDay + 7);
    Clock fixed({TimeReading::Fixed, kMayDay + 3});
    EXPECT_EQ(fixed.time(5, kMayDay + 7), kMayDay + 3);
    EXPECT_EQ(Clock({TimeReading::Fixed, 0}).time({}), kDay);
}
