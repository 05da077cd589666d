// SPDX-License-Identifier: MIT
#include "airspace/stream/clock_kind.h"

#include <airspace/encoding.h>
#include <airspace/stream.h>

#include "support/frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

using namespace quorvel;
using namespace quorvel::airspace;

namespace {

constexpr TimeMs kHour = 3'600'000;
constexpr TimeMs kNow = 1'714'521'600'000 + 12 * kHour; // 2024-05-01 12:00:00 UTC
constexpr std::uint64_t kCounterValues = std::uint64_t{1} << 48;

using StampOf = std::function<std::uint64_t(TimeMs)>; // of what is received this long after the start

StampOf timesOfDay(TimeMs begin) {
    return [begin](TimeMs after) { return timeOfDayStamp(begin + after); };
}

StampOf ticks(std::uint64_t begin) {
    return [begin](TimeMs after) { return (begin + after * 12'000) % kCounterValues; };
}

std::string position(std::uint32_t address, bool isOdd) {
    modes::test::PositionBits bits;
    bits.odd = isOdd;
    bits.latitude = 1000;
    return modes::test::squitter(address, modes::test::airbornePosition(bits));
}

std::string allCall(std::uint32_t address) { return modes::test::shortFrame(11, address, 0); }

std::string beast(std::string const& bytes, std::uint64_t stamp) {
    auto frame = Frame::of(bytes);
    frame.stamp = stamp;
    std::string out;
    appendEncoded(out, frame, Encoding::Beast);
    return out;
}

/// One thing that is received, this long after the start.
struct Heard {
    TimeMs after;
    std::string bytes;
};

// Three aircraft that send positions twice a second, and all-call replies between them.
std::vector<Heard> traffic(TimeMs length) {
    std::vector<Heard> heard;
    for (TimeMs after = 0; after < length; after += 50) {
        auto const aircraft = static_cast<std::uint32_t>(after % 500 / 50);
        auto const address = 0x4B1230 + aircraft;
        heard.push_back({after, aircraft < 3 ? position(address, after / 500 % 2 != 0) : allCall(address)});
    }
    return heard;
}

// The same without positions.
std::vector<Heard> replies(TimeMs length, TimeMs every = 50) {
    std::vector<Heard> heard;
    for (TimeMs after = 0; after < length; after += every) heard.push_back({after, allCall(0x4B1234)});
    return heard;
}

std::string recordingOf(std::vector<Heard> const& heard, StampOf const& stampOf) {
    std::string bytes;
    for (auto const& each : heard) bytes += beast(each.bytes, stampOf(each.after));
    return bytes;
}

Stream streamOf(Origin origin) {
    StreamOptions options;
    options.encoding = Encoding::Beast;
    options.origin = origin;
    return Stream(options);
}

/// What became of a stream.
struct Outcome {
    TimeReading reading;
    Frames frames;
    std::string remark;
};

Outcome recorded(std::string const& bytes, Origin origin = Origin::Recording) {
    auto stream = streamOf(origin);
    Outcome outcome{};
    stream.feed(bytes, kNow, outcome.frames);
    stream.finish(kNow, outcome.frames);
    outcome.reading = stream.timeReading();
    outcome.remark = stream.remark();
    return outcome;
}

// As it comes: each thing when it is received, on the host's clock, which may play it at a speed.
Outcome live(std::vector<Heard> const& heard, StampOf const& stampOf, TimeMs speed = 1) {
    auto stream = streamOf(Origin::Connection);
    Outcome outcome{};
    for (auto const& each : heard)
        stream.feed(beast(each.bytes, stampOf(each.after)), kNow + each.after / speed, outcome.frames);
    outcome.reading = stream.timeReading();
    outcome.remark = stream.remark();
    return outcome;
}

std::string contentOf(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(ClockKind, IsDetectedByThePositionsOfARecordingHoweverShort) {
    for (TimeMs const length : {600U, 2'000U, 20'000U}) {
        EXPECT_EQ(recorded(recordingOf(traffic(length), timesOfDay(3 * kHour))).reading, TimeReading::Receiver)
            << length;
        EXPECT_EQ(recorded(recordingOf(traffic(length), ticks(5'000'000))).reading, TimeReading::Counter12MHz)
            << length;
    }
}

TEST(ClockKind, IsDetectedAcrossMidnightAndAcrossTheWrapOfACounter) {
    EXPECT_EQ(recorded(recordingOf(traffic(3'000), timesOfDay(24 * kHour - 1'500))).reading, TimeReading::Receiver);
    EXPECT_EQ(
        recorded(recordingOf(traffic(3'000), ticks(kCounterValues - 18'000'000))).reading, TimeReading::Counter12MHz);
}

TEST(ClockKind, IsDetectedByPositionsWhereTheCounterRollsOverFromOneSecondToTheNext) {
    EXPECT_EQ(recorded(recordingOf(traffic(2'000), ticks((std::uint64_t{77} << 30) - 12'000'000))).reading,
        TimeReading::Counter12MHz);
}

TEST(ClockKind, IsDetectedByPositionsOfWhichManyWereNotHeard) {
    auto heard = traffic(120'000);
    std::erase_if(heard, [n = 0](Heard const&) mutable { return ++n % 7 > 1; });
    EXPECT_EQ(recorded(recordingOf(heard, timesOfDay(3 * kHour))).reading, TimeReading::Receiver);
    EXPECT_EQ(recorded(recordingOf(heard, ticks(0x10'0000'0000))).reading, TimeReading::Counter12MHz);
}

TEST(ClockKind, StampsOfNoSecondOfTheDayAreATimeOfDayInNoReading) {
    std::vector<Heard> const apart{{0, position(1, false)}, {42'000, position(1, true)}};
    EXPECT_EQ(recorded(recordingOf(apart, ticks(1))).reading, TimeReading::Receiver)
        << "they would be half a second apart";
    EXPECT_EQ(recorded(recordingOf(apart, ticks(std::uint64_t{86'400} << 30))).reading, TimeReading::Counter12MHz);
}

TEST(ClockKind, TakesNoHeedOfDamagedPositionsAndDamagedStamps) {
    auto heard = traffic(5'000);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        if (i % 10 == 1) heard[i].bytes = modes::test::withBitsInverted(heard[0].bytes, {40});
    }
    for (auto const& [stampOf, reading] : {std::pair(timesOfDay(3 * kHour), TimeReading::Receiver),
             std::pair(ticks(5'000'000), TimeReading::Counter12MHz)}) {
        auto const damaged = [&stampOf = stampOf](TimeMs after) {
            return after % 1'000 == 950 ? ~std::uint64_t{0} >> 16 : stampOf(after);
        };
        EXPECT_EQ(recorded(recordingOf(heard, damaged)).reading, reading);
    }
}

TEST(ClockKind, OfARecordingWithoutPositionsIsDetectedByItsValues) {
    EXPECT_EQ(recorded(recordingOf(replies(10'000), timesOfDay(3 * kHour))).reading, TimeReading::Receiver);
    EXPECT_EQ(recorded(recordingOf(replies(100), timesOfDay(3 * kHour))).reading, TimeReading::Receiver);
    EXPECT_EQ(recorded(recordingOf(replies(200'000), ticks(0))).reading, TimeReading::Counter12MHz)
        << "nanoseconds that no second has";
    EXPECT_EQ(recorded(recordingOf(replies(10'000, 5), ticks(0))).reading, TimeReading::Counter12MHz)
        << "more than the channel holds";
}

TEST(ClockKind, MarksOfUnknownTimesAreNoHintOfACounter) {
    auto const marked = [stampOf = timesOfDay(3 * kHour)](
                            TimeMs after) { return after % 500 == 0 ? 0xFF00'0000'0001 : stampOf(after); };
    EXPECT_EQ(recorded(recordingOf(replies(10'000), marked)).reading, TimeReading::Receiver);
}

TEST(ClockKind, OfALiveStreamIsDetectedHoweverFarItsClockIsOff) {
    for (auto const& heard : {traffic(3'000), replies(3'000), replies(60'000, 4'000)}) {
        for (TimeMs const begin : {6 * kHour, 12 * kHour, 13 * kHour, 24 * kHour - 700})
            EXPECT_EQ(live(heard, timesOfDay(begin)).reading, TimeReading::Receiver) << begin;
        for (std::uint64_t const begin : {std::uint64_t{0}, std::uint64_t{43'200} << 30, kCounterValues - 9'000'000})
            EXPECT_EQ(live(heard, ticks(begin)).reading, TimeReading::Counter12MHz) << begin;
    }
}

TEST(ClockKind, OfARecordingThatIsSentFasterThanItWasHeardIsDetectedByItsPositions) {
    for (TimeMs const speed : {2U, 60U, 100'000U}) {
        EXPECT_EQ(live(traffic(5'000), timesOfDay(6 * kHour), speed).reading, TimeReading::Receiver) << speed;
        EXPECT_EQ(live(traffic(5'000), ticks(99), speed).reading, TimeReading::Counter12MHz) << speed;
    }
}

TEST(ClockKind, OfALiveStreamIsDetectedDespiteABacklog) {
    for (auto const& [stampOf, reading] :
        {std::pair(timesOfDay(6 * kHour), TimeReading::Receiver), std::pair(ticks(99), TimeReading::Counter12MHz)}) {
        auto stream = streamOf(Origin::Connection);
        Frames frames;
        for (auto const& each : replies(30'000)) {
            TimeMs const late = each.after < 20'000 ? 20'000 : each.after; // the first 20 s come at once
            stream.feed(beast(each.bytes, stampOf(each.after)), kNow + late, frames);
        }
        EXPECT_EQ(stream.timeReading(), reading);
    }
}

TEST(ClockKind, OfALiveStreamIsSettledWithinASecondOfTraffic) {
    for (auto const& heard : {traffic(1'000), replies(1'000)}) {
        for (auto const& stampOf : {timesOfDay(6 * kHour), ticks(99)}) {
            auto const outcome = live(heard, stampOf);
            EXPECT_NE(outcome.reading, TimeReading::Auto);
            EXPECT_EQ(outcome.frames.size(), heard.size());
        }
    }
}

TEST(ClockKind, FramesHaveTheTimesOfArrivalUntilALiveClockIsDetected) {
    for (auto const& stampOf : {timesOfDay(6 * kHour), ticks(99)}) {
        auto stream = streamOf(Origin::Connection);
        Frames frames;
        stream.feed(beast(allCall(1), stampOf(0)), kNow, frames);
        EXPECT_TRUE(frames.empty());
        EXPECT_TRUE(stream.isUnsettled());
        stream.settle(kNow + 1'000, frames);
        ASSERT_EQ(frames.size(), 1U);
        EXPECT_EQ(frames[0].time, kNow);
        EXPECT_FALSE(stream.isUnsettled());
        stream.feed(beast(allCall(1), stampOf(5'000)), kNow + 5'010, frames);
        ASSERT_EQ(frames.size(), 2U) << "nobody waits twice";
        EXPECT_EQ(frames[1].time, kNow + 5'010);
        EXPECT_EQ(stream.timeReading(), TimeReading::Auto);
    }
}

TEST(ClockKind, OfALiveCounterIsAnchoredWhereItsFirstFrameArrived) {
    auto const outcome = live(replies(2'000), ticks(99));
    for (std::size_t i = 0; i < outcome.frames.size(); ++i) EXPECT_EQ(outcome.frames[i].time, kNow + 50 * i);
}

TEST(ClockKind, OfALiveCounterIsAnchoredWhereItsFirstFrameArrivedThoughItsEncodingWasFoundLater) {
    StreamOptions options;
    options.origin = Origin::Connection;
    Stream stream(options);
    Frames frames;
    TimeMs after = 0;
    for (; after <= 1'500; after += 500) {
        stream.feed(beast(position(0x4B1234, after / 500 % 2 != 0), ticks(99)(after)), kNow + after, frames);
        ASSERT_FALSE(stream.encoding()) << "or nothing is held back";
    }
    stream.settle(kNow + 2'500, frames);
    ASSERT_EQ(stream.timeReading(), TimeReading::Counter12MHz);
    stream.feed(beast(position(0x4B1234, false), ticks(99)(3'000)), kNow + 3'000, frames);
    ASSERT_EQ(frames.size(), 5U);
    EXPECT_EQ(frames.front().time, kNow);
    EXPECT_EQ(frames.back().time, kNow + 3'000);
}

TEST(ClockKind, AReceiverThatIsHoursOffKeepsItsOwnTimeOnTheNearestDay) {
    for (auto const& [begin, first] :
        {std::pair(6 * kHour, kNow - 6 * kHour), std::pair(17 * kHour, kNow + 5 * kHour)}) {
        auto const outcome = live(traffic(2'000), timesOfDay(begin));
        ASSERT_FALSE(outcome.frames.empty());
        for (std::size_t i = 0; i < outcome.frames.size(); ++i) EXPECT_EQ(outcome.frames[i].time, first + 50 * i);
    }
}

TEST(ClockKind, TheTimeOfAReceiverStartsWhenItIsDetected) {
    auto stream = streamOf(Origin::Connection);
    Frames frames;
    auto const stampOf = timesOfDay(6 * kHour);
    for (TimeMs after = 0; after < 20'000; after += 2'000) {
        stream.feed(beast(allCall(1), stampOf(after)), kNow + after, frames);
        stream.settle(kNow + after + 1'000, frames);
    }
    EXPECT_EQ(frames.front().time, kNow);
    EXPECT_EQ(frames.back().time, kNow - 6 * kHour + 18'000);
    EXPECT_EQ(stream.now(), frames.back().time);
}

TEST(ClockKind, WhichWasFoundIsSaidOnceWhereItIsNotAssumed) {
    auto const ticking = "its time stamps count 12 MHz";
    EXPECT_EQ(live(traffic(2'000), ticks(99)).remark, ticking);
    EXPECT_EQ(recorded(recordingOf(traffic(2'000), ticks(99))).remark, ticking);
    EXPECT_EQ(recorded(recordingOf(traffic(2'000), timesOfDay(0))).remark, "");
    EXPECT_EQ(recorded(recordingOf(traffic(2'000), timesOfDay(0)), Origin::Pipe).remark, "") << "it may be a recording";
    EXPECT_EQ(live(traffic(2'000), timesOfDay(12 * kHour - 59'000)).remark, "");
    auto const timesAre = std::string("its time stamps are times of day, ");
    EXPECT_EQ(
        live(traffic(2'000), timesOfDay(6 * kHour + 60'000)).remark, timesAre + "5 h 59 min behind this host's clock");
    EXPECT_EQ(
        live(traffic(2'000), timesOfDay(12 * kHour + 61'000)).remark, timesAre + "1 min ahead of this host's clock");
    auto stream = streamOf(Origin::Connection);
    Frames frames;
    std::string said;
    for (auto const& each : traffic(5'000)) {
        stream.feed(beast(each.bytes, ticks(99)(each.after)), kNow + each.after, frames);
        said += stream.remark();
    }
    EXPECT_EQ(said, ticking);
}

TEST(ClockKind, StampsThatStandStillGiveWayToTheTimeOfArrival) {
    auto const standing = [](TimeMs) { return std::uint64_t{12'345}; };
    auto const outcome = live(replies(200'050, 1), standing);
    EXPECT_EQ(outcome.reading, TimeReading::Arrival);
    EXPECT_EQ(outcome.remark, "its time stamps cannot be used: the time of arrival is used instead");
    EXPECT_EQ(outcome.frames.size(), 200'050U);
}

TEST(ClockKind, ReceiversWithoutAClockAreHeardAtTheTimeOfArrival) {
    auto const none = [](TimeMs) { return std::uint64_t{0}; };
    EXPECT_EQ(live(traffic(60'000), none).reading, TimeReading::Arrival);
    EXPECT_EQ(recorded(recordingOf(traffic(2'000), none)).reading, TimeReading::Fixed);
}

TEST(ClockKind, OfRealRecordingsIsDetectedInWholeAndInParts) {
    std::filesystem::path const folder(TREVALLO_RECORDINGS);
    if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "no recordings in " << folder;
    struct {
        char const* name;
        Encoding encoding;
        TimeReading reading;
    } const cases[] = {
        {"petersburg.beast", Encoding::BeastPlain, TimeReading::Receiver},
        {"petersburg_escaped.beast", Encoding::Beast, TimeReading::Receiver},
        {"petersburg_modeac_escaped.beast", Encoding::Beast, TimeReading::Receiver},
        {"petersburg_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"flight_4c01e4_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"flight_406b90_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"flights_us_2025_escaped.beast", Encoding::Beast, TimeReading::Receiver},
        {"comm_b_2017_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"iq_modes1_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"receiver_session_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"receiver_session_damaged_mlat.avr", Encoding::Avr, TimeReading::Receiver},
        {"petersburg_12mhz.beast", Encoding::Beast, TimeReading::Counter12MHz},
        {"receiver_log_12mhz.avr", Encoding::Avr, TimeReading::Counter12MHz},
        {"small_12mhz.beast", Encoding::Beast, TimeReading::Counter12MHz},
    };
    for (auto const& each : cases) {
        auto const content = contentOf(folder / each.name);
        ASSERT_FALSE(content.empty()) << each.name;
        for (std::size_t const bytes : {content.size(), content.size() / 2}) {
            bool const isPartOfSmall = bytes < content.size() && std::string(each.name) == "small_12mhz.beast";
            if (isPartOfSmall) continue; // no aircraft is heard twice in it
            for (auto const origin : {Origin::Recording, Origin::Connection}) {
                StreamOptions options;
                options.encoding = each.encoding;
                options.origin = origin;
                Stream stream(options);
                Frames frames;
                stream.feed(std::string_view(content).substr(0, bytes), kNow, frames);
                stream.finish(kNow, frames);
                if (origin == Origin::Connection && stream.timeReading() == TimeReading::Auto) continue;
                EXPECT_EQ(stream.timeReading(), each.reading) << each.name << " " << bytes;
            }
        }
    }
}
