// SPDX-License-Identifier: MIT
#include "host/frame_clock.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace quorvel::host {

namespace {

constexpr TimeMs kDay = 86'400'000;
constexpr TimeMs kHalfDay = kDay / 2;
// Of what has no date. The first day of all would begin with times that are none: 0, and what the library
// pairs with it.
constexpr TimeMs kNoDay = kDay;

constexpr unsigned kNanosecondBits = 30;
constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::uint64_t kSecondsPerDay = 86'400;

constexpr std::uint64_t kCounterMask = (std::uint64_t{1} << 48) - 1;
constexpr std::uint64_t kTicksPerMs = 12'000;
constexpr std::int64_t kLateTicks = 12'000'000 * std::int64_t{10};     // frames may come late by 10 s
constexpr std::int64_t kSilenceTicks = 12'000'000 * std::int64_t{600}; // and the sky be silent for 10 minutes
constexpr TimeMs kAnHour = 3'600'000;
constexpr TimeMs kFar = 600'000;
constexpr int kFewFrames = 10;

constexpr std::size_t kDamagedShare = 50; // one in so many stamps may be damaged
constexpr TimeMs kTellingSpan = 1100;
constexpr std::size_t kManyFrames = 200'000;
constexpr std::size_t kFewFramesForARate = 1000;
constexpr std::size_t kChannelFramesPerSecond = 9000; // 112 us each

std::uint64_t nanosecondsOf(std::uint64_t stamp) {
    return stamp & ((std::uint64_t{1} << kNanosecondBits) - 1);
}

std::uint64_t secondsOf(std::uint64_t stamp) { return stamp >> kNanosecondBits; }

bool canBeTimeOfDay(std::uint64_t stamp) {
    return secondsOf(stamp) < kSecondsPerDay && nanosecondsOf(stamp) < kNanosecondsPerSecond;
}

TimeMs timeOfDay(std::uint64_t stamp) { return secondsOf(stamp) * 1000 + nanosecondsOf(stamp) / 1'000'000; }

TimeMs midnightBefore(TimeMs time) { return time - time % kDay; }

// How far two times of day lie apart, over midnight if that is shorter.
TimeMs apart(TimeMs a, TimeMs b) {
    auto const difference = a > b ? a - b : b - a;
    return std::min(difference, kDay - difference % kDay);
}

// Digits of a fixed number at the beginning of `text`, followed by `end`.
std::optional<int> number(std::string_view& text, std::size_t digits, std::string_view end) {
    if (text.size() < digits + end.size() || text.substr(digits, end.size()) != end) return {};
    int value = 0;
    auto const read = std::from_chars(text.data(), text.data() + digits, value);
    if (read.ptr != text.data() + digits || value < 0 || text.front() == '-') return {};
    text.remove_prefix(digits + end.size());
    return value;
}

} // namespace

std::optional<TimeMs> parseTime(std::string const& text) {
    using namespace std::chrono;
    std::string_view rest = text;
    auto const year = number(rest, 4, "-");
    auto const month = year ? number(rest, 2, "-") : std::nullopt;
    auto const day = month ? number(rest, 2, "") : std::nullopt;
    if (!day) return {};
    year_month_day const date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                              std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok() || *year < 1970) return {};
    auto const midnight = duration_cast<milliseconds>(sys_days(date).time_since_epoch()).count();
    if (rest.empty()) return static_cast<TimeMs>(midnight);

    if (rest.front() != 'T') return {};
    rest.remove_prefix(1);
    auto const hour = number(rest, 2, ":");
    auto const minute = hour ? number(rest, 2, ":") : std::nullopt;
    auto const second = minute ? number(rest, 2, "") : std::nullopt;
    if (!second || *hour > 23 || *minute > 59 || *second > 59) return {};
    int fraction = 0;
    if (!rest.empty() && rest.front() == '.') {
        rest.remove_prefix(1);
        auto const digits = number(rest, 3, "Z");
        if (!digits || !rest.empty()) return {};
        fraction = *digits;
    } else if (rest != "Z") {
        return {};
    }
    return static_cast<TimeMs>(midnight) +
           static_cast<TimeMs>(((*hour * 60 + *minute) * 60 + *second) * 1000 + fraction);
}

FrameClock::FrameClock(TimeOptions const& options, Origin origin)
    : _reading(options.reading)
    , _start(origin == Origin::Recording && options.start == 0 ? kNoDay : options.start)
    , _origin(origin)
    , _timeKnown(origin != Origin::Recording || options.start != 0) {}

// A live stream's time of day is near the host's. Of a recording, nanoseconds that no second has prove a
// counter; read as times of day, ticks of 12 MHz come to such values within 1.1 s. A recording that is
// shorter is judged by its rate: ticks read as nanoseconds make it 83 times too high, more than the channel
// holds. Stamps that are all 0 say nothing.
bool FrameClock::settle(Frames const& sample, TimeMs arrival, bool isWhole) {
    if (_reading != TimeReading::Auto) return true;
    std::size_t stamps = 0;
    TimeMs first = ~TimeMs{0};
    TimeMs last = 0;
    std::size_t noTimesOfDay = 0;
    for (auto const& frame : sample) {
        auto const stamp = frame.stamp.value_or(0);
        if (stamp == 0) continue;
        ++stamps;
        first = std::min(first, timeOfDay(stamp));
        last = std::max(last, timeOfDay(stamp));
        bool const isTimeOfDay =
            canBeTimeOfDay(stamp) &&
            (_origin != Origin::Connection || apart(timeOfDay(stamp), arrival % kDay) <= kAnHour);
        noTimesOfDay += isTimeOfDay ? 0U : 1U;
    }
    bool const isCounter = noTimesOfDay * kDamagedShare > stamps;
    bool const isSettled = isWhole || _origin == Origin::Connection || isCounter ||
                           (stamps > 0 && (last - first > kTellingSpan || sample.size() >= kManyFrames)) ||
                           (stamps == 0 && sample.size() >= kFewFramesForARate);
    if (!isSettled) return false;
    if (stamps == 0) {
        _reading = _origin == Origin::Recording ? TimeReading::Fixed : TimeReading::Arrival;
        return true;
    }
    bool const isTooFast = _origin != Origin::Connection && last - first <= kTellingSpan &&
                           stamps >= kFewFramesForARate &&
                           stamps * 1000 > kChannelFramesPerSecond * std::max<TimeMs>(last - first, 1);
    _reading = isCounter || isTooFast ? TimeReading::Counter12MHz : TimeReading::Receiver;
    return true;
}

TimeMs FrameClock::stamp(Frame& frame, TimeMs arrival, Counters& counters) {
    if (_origin == Origin::Recording && _reading != TimeReading::Arrival) arrival = 0;
    TimeMs time = 0;
    switch (_reading) {
    case TimeReading::Receiver:
        time = frame.stamp ? ofDay(*frame.stamp, arrival) : std::max(_now, arrival);
        break;
    case TimeReading::Counter12MHz:
        time = frame.stamp ? ofCounter(*frame.stamp, arrival, counters) : std::max(_now, arrival);
        break;
    case TimeReading::Arrival: time = arrival != 0 ? arrival : _start; break;
    case TimeReading::Auto:
    case TimeReading::Fixed: time = _start; break;
    }
    time = std::max(time, kNoDay);
    advance(time, counters);
    time = std::min(time, _now); // what is far ahead and not believed is heard now
    frame.record->setTimeStamp(time);
    return time;
}

// One damaged time stamp does not turn the clock; a stream that stays where it went does.
void FrameClock::advance(TimeMs time, Counters& counters) {
    auto const isFar = [&](TimeMs a, TimeMs b) { return a > b && a - b > kFar; };
    if (time < _now) ++counters.timeBackwards;
    if (_now == 0 || (!isFar(time, _now) && !isFar(_now, time))) {
        _now = std::max(_now, time);
        _farFrames = 0;
    } else if (++_farFrames >= kFewFrames) {
        ++counters.timeJumps;
        _now = time;
        _farFrames = 0;
    }
}

// The day on which the time of day is nearest to the present.
TimeMs FrameClock::ofDay(std::uint64_t stamp, TimeMs arrival) const {
    auto const ofDay = timeOfDay(stamp);
    auto present = _now;
    if (present == 0) present = _start != 0 ? _start : arrival;
    auto const time = midnightBefore(present) + ofDay;
    bool const isWholeDay = _now == 0 && present % kDay == 0; // a date without a time
    if (isWholeDay) return time;
    if (time + kHalfDay < present) return time + kDay;
    if (time > present + kHalfDay && time >= kDay) return time - kDay;
    return time;
}

// Differences are taken at 48 bits, so that a counter goes on across its wrap.
TimeMs FrameClock::ofCounter(std::uint64_t stamp, TimeMs arrival, Counters& counters) {
    auto const tick = stamp & kCounterMask;
    auto const sinceLast = _lastTick ? static_cast<std::int64_t>((tick - *_lastTick) << 16) >> 16 : 0;
    bool const jumped = _lastTick && (sinceLast < -kLateTicks || sinceLast > kSilenceTicks);
    if (!_lastTick || jumped) {
        if (jumped) ++counters.timeJumps;
        _anchorTick = tick;
        _anchorTime = arrival != 0 ? arrival : std::max({_now, _start, kNoDay});
        _lastTick = tick;
        return _anchorTime;
    }
    if (sinceLast > 0) _lastTick = tick;
    auto const sinceAnchor = static_cast<std::int64_t>((tick - _anchorTick) << 16) >> 16;
    auto const ms = sinceAnchor / static_cast<std::int64_t>(kTicksPerMs);
    if (ms < 0 && static_cast<TimeMs>(-ms) > _anchorTime) return kNoDay;
    auto const time = _anchorTime + static_cast<TimeMs>(ms);
    if (sinceAnchor > (std::int64_t{1} << 46)) { // long before the difference to the anchor would wrap
        _anchorTick = tick;
        _anchorTime = time;
    }
    return time;
}

} // namespace quorvel::host
