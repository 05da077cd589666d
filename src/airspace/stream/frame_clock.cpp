// SPDX-License-Identifier: MIT
#include "airspace/stream/frame_clock.h"

#include "core/wire.h"

#include <algorithm>
#include <cstdlib>

namespace quorvel::airspace {

namespace {

using namespace modes::wire;

constexpr TimeMs kHalfDay = kDayMs / 2;
// For streams without a date. The very first day would start with times that are invalid: 0, and what the library pairs
// with it.
constexpr TimeMs kNoDay = kDayMs;

constexpr std::uint64_t kCounterMask = (std::uint64_t{1} << kStampBits) - 1;
constexpr std::int64_t kLateTicks = kTicksPerMs * 10'000;     // frames may come late by 10 s
constexpr std::int64_t kSilenceTicks = kTicksPerMs * 600'000; // and there may be no frames for 10 minutes
constexpr TimeMs kFar = 600'000;
constexpr int kFewFrames = 10;
constexpr std::int64_t kMinute = 60'000;

// "5 h 59 min", "12 min".
std::string spanText(std::int64_t ms) {
    auto const minutes = (ms + kMinute / 2) / kMinute;
    auto const rest = std::to_string(minutes % 60) + " min";
    return minutes < 60 ? rest : std::to_string(minutes / 60) + " h " + rest;
}

bool isStamped(Frame const& frame) { return frame.stamp.value_or(0) != 0; }

// For a live receiver that keeps UTC: how far its clock is off, if it is.
std::string remarkOnTimeOfDay(std::uint64_t stamp, TimeMs arrival) {
    auto const ahead = msBetweenTimesOfDay(arrival, timeOfDayMs(stamp));
    if (!canBeTimeOfDay(stamp) || std::abs(ahead) < kMinute) return {};
    return "its time stamps are times of day, " + spanText(std::abs(ahead)) + (ahead > 0 ? " ahead of" : " behind") +
           " this host's clock";
}

// What the user would not expect of a stream that so far ends with these frames.
std::string remarkOn(TimeReading reading, Origin origin, std::span<Frame const> frames, TimeMs arrival) {
    if (reading == TimeReading::Counter12MHz) return "its time stamps count 12 MHz";
    auto const last = std::find_if(frames.rbegin(), frames.rend(), isStamped);
    if (origin != Origin::Connection || last == frames.rend()) return {};
    if (reading == TimeReading::Receiver) return remarkOnTimeOfDay(*last->stamp, arrival);
    return "its time stamps cannot be used: the time of arrival is used instead";
}

} // namespace

FrameClock::FrameClock(TimeOptions const& options, Origin origin)
    : _reading(options.reading)
    , _start(origin == Origin::Recording && options.start == 0 ? kNoDay : options.start)
    , _origin(origin)
    , _timeKnown(origin != Origin::Recording || options.start != 0) {
    if (_reading == TimeReading::Auto) _kind = std::make_unique<ClockKind>(origin);
}

bool FrameClock::settle(std::span<Frame const> next, TimeMs arrival, bool isWhole) {
    if (!_kind) return true;
    _kind->take(next, arrival);
    auto found = _kind->found();
    if (found == TimeReading::Auto && isWhole) found = _kind->guess();
    if (found != TimeReading::Auto) decide(found, next, arrival);
    return isWhole || !_kind;
}

// What was heard before had the time of arrival, which need not be the receiver's: its time begins now.
void FrameClock::decide(TimeReading found, std::span<Frame const> last, TimeMs arrival) {
    _reading = found;
    _kind.reset();
    _now = 0;
    _remark = remarkOn(found, _origin, last, arrival);
}

void FrameClock::stamp(Frame& frame, TimeMs arrival, Counts& counts) {
    if (_origin == Origin::Recording && _reading != TimeReading::Arrival) arrival = 0;
    TimeMs time = 0;
    switch (_reading) {
    case TimeReading::Receiver: time = frame.stamp ? ofDay(*frame.stamp, arrival) : std::max(_now, arrival); break;
    case TimeReading::Counter12MHz:
        time = frame.stamp ? ofCounter(*frame.stamp, arrival, counts) : std::max(_now, arrival);
        break;
    case TimeReading::Auto:
    case TimeReading::Arrival: time = arrival != 0 ? arrival : _start; break;
    case TimeReading::Fixed: time = _start; break;
    }
    time = std::max(time, kNoDay);
    advance(time, counts);
    time = std::min(time, _now); // what is far ahead and not believed is heard now
    frame.time = time;
    frame.now = _now;
}

// One damaged time stamp does not turn the clock; a stream that stays where it went does.
void FrameClock::advance(TimeMs time, Counts& counts) {
    bool const isFar = time > _now + kFar || _now > time + kFar;
    counts.timeBackwards += time < _now ? 1U : 0U;
    if (_now == 0 || !isFar) {
        _now = std::max(_now, time);
        _farFrames = 0;
    } else if (++_farFrames >= kFewFrames) {
        ++counts.timeJumps;
        _now = time;
        _farFrames = 0;
    }
}

// The day on which the time of day is nearest to the present time.
TimeMs FrameClock::ofDay(std::uint64_t stamp, TimeMs arrival) const {
    auto const ofDay = timeOfDayMs(stamp);
    auto present = _now;
    if (present == 0) present = _start != 0 ? _start : arrival;
    auto const time = midnightBefore(present) + ofDay;
    bool const isWholeDay = _now == 0 && present % kDayMs == 0; // a date without a time
    if (isWholeDay) return time;
    if (time + kHalfDay < present) return time + kDayMs;
    if (time > present + kHalfDay && time >= kDayMs) return time - kDayMs;
    return time;
}

TimeMs FrameClock::ofCounter(std::uint64_t stamp, TimeMs arrival, Counts& counts) {
    auto const tick = stamp & kCounterMask;
    auto const sinceLast = _lastTick ? ticksBetween(*_lastTick, tick) : 0;
    bool const jumped = _lastTick && (sinceLast < -kLateTicks || sinceLast > kSilenceTicks);
    if (!_lastTick || jumped) {
        if (jumped) ++counts.timeJumps;
        _anchorTick = tick;
        _anchorTime = arrival != 0 ? arrival : std::max({_now, _start, kNoDay});
        _lastTick = tick;
        return _anchorTime;
    }
    if (sinceLast > 0) _lastTick = tick;
    auto const sinceAnchor = ticksBetween(_anchorTick, tick);
    auto const ms = sinceAnchor / kTicksPerMs;
    if (ms < 0 && static_cast<TimeMs>(-ms) > _anchorTime) return kNoDay;
    auto const time = _anchorTime + static_cast<TimeMs>(ms);
    if (sinceAnchor > (std::int64_t{1} << 46)) { // long before the difference to the anchor would wrap
        _anchorTick = tick;
        _anchorTime = time;
    }
    return time;
}

} // namespace quorvel::airspace
