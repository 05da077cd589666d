// SPDX-License-Identifier: MIT
#include "airspace/stream/clock_kind.h"

#include <modes/adsb_message.h>
#include <modes/df_message.h>

#include "airspace/stream/stream_encoding.h"
#include "core/wire.h"

#include <algorithm>
#include <string>
#include <utility>

// A stamp of 48 bits is a time of day, 18 bits second and 30 bits nanosecond, or a count of 12 MHz. Nothing
// in it says which, and the host's clock does not help: a receiver's may be hours off. But time has one rate. A
// second is 12,000,000 ticks; read as nanoseconds they are 12 ms. So one of the two readings makes time run
// about 83 times too slow (too fast the other way round), and anything that takes a known time distinguishes them:
//
// - An aircraft sends its airborne position every 0.4 to 0.6 s, even and odd in turn (RTCA DO-260B,
//   2.2.3.3.2.2). An even and an odd one at 0x16E360 and 0x7270E0 are 0.5 s apart as ticks, 6 ms as times of
//   day, which no aircraft does: a counter. 0.5 s apart as times of day, they would be 42 s as ticks.
// - What is live arrives as fast as it was stamped, except for a backlog that comes at once. So each tenth of a
//   second of arrival has one vote, and one that neither reading explains within a factor of nine has none.
// - Of 12 MHz ticks one in 15 has "nanoseconds" that no second has; read as times of day, more frames seem to
//   come than the channel holds. These are for what has no positions.
//
// It costs the parity of each position and one entry for each aircraft, and only until it is known: about a
// second of a stream. A few votes that agree are enough, since false ones are rare and point both ways.

namespace quorvel::airspace {

namespace {

using namespace modes::wire;

constexpr std::size_t kClear = 4; // times as many votes as against it
constexpr std::size_t kEnoughPositions = 3;
constexpr std::size_t kEnoughArrivals = 5;

constexpr std::int64_t kShortestUs = 350'000; // between positions, with some tolerance
constexpr std::int64_t kLongestUs = 650'000;
constexpr std::size_t kMostAircraft = 4096;
constexpr unsigned kCprFormatAt = kPayloadAt + 21; // set in odd positions

constexpr TimeMs kArrivalStep = 100;
constexpr std::int64_t kTolerance = 9; // both readings cannot be within it of one rate: 9 x 9 < 83

constexpr std::size_t kDamagedShare = 50; // one in so many stamps may be damaged
constexpr TimeMs kTellingSpan = 1100;
constexpr std::size_t kFewStamps = 100;
constexpr std::size_t kFewStampsForARate = 1000;
constexpr std::size_t kManyFrames = 200'000;
constexpr std::size_t kChannelFramesPerSecond = 9000; // 112 us each

std::int64_t microsecondsOfDay(std::uint64_t stamp) {
    return static_cast<std::int64_t>(secondOf(stamp) * 1'000'000 + nanosecondOf(stamp) / 1000);
}

// Airborne positions with barometric or geometric altitude.
bool isPosition(Frame const& frame) {
    auto const bytes = frame.view();
    if (bytes.size() != kLongFrameBytes || formatCode(bytes) != modes::DFMessage::DF17) return false;
    return modes::ADSBMessage::typeByCode(typeCode(bytes)) == modes::ADSBMessage::POS_AIR &&
           isIntactSquitter(std::string(bytes));
}

std::uint32_t addressOf(Frame const& frame) { return modes::bits(frame.view(), kAddressAt, kAddressBits); }

bool isAbout(std::int64_t ms, std::int64_t expected) {
    return ms * kTolerance > expected && ms < expected * kTolerance;
}

} // namespace

TimeReading ClockVotes::winner(std::size_t enough) const {
    if (timeOfDay >= enough && timeOfDay >= kClear * (counter + neither)) return TimeReading::Receiver;
    if (counter >= enough && counter >= kClear * (timeOfDay + neither)) return TimeReading::Counter12MHz;
    return TimeReading::Auto;
}

void SquitterRate::take(Frame const& frame) {
    if (!isPosition(frame)) return;
    Position const position{*frame.stamp, modes::bit(frame.view(), kCprFormatAt)};
    if (_last.size() >= kMostAircraft) _last.clear();
    auto const [place, isNew] = _last.try_emplace(addressOf(frame), position);
    auto const before = std::exchange(place->second, position);
    if (isNew || before.isOdd == position.isOdd) return;
    auto const ticks = ticksBetween(before.stamp, position.stamp);
    auto const asTimeOfDay = microsecondsOfDay(position.stamp) - microsecondsOfDay(before.stamp);
    if (ticks <= 0 || asTimeOfDay > kLongestUs) return; // late, or some were not heard
    bool const areTimesOfDay = canBeTimeOfDay(before.stamp) && canBeTimeOfDay(position.stamp);
    if (areTimesOfDay && asTimeOfDay >= kShortestUs) {
        ++_votes.timeOfDay;
    } else {
        ++(ticks * 1000 / kTicksPerMs >= kShortestUs ? _votes.counter : _votes.neither);
    }
}

void ArrivalRate::take(std::uint64_t stamp, TimeMs arrival) {
    bool const isAnchor = !_stamp || arrival < _arrival;
    if (!isAnchor && arrival - _arrival < kArrivalStep) return;
    auto const before = std::exchange(_stamp, stamp).value_or(stamp);
    auto const passed = static_cast<std::int64_t>(arrival - std::exchange(_arrival, arrival));
    if (isAnchor) return;
    if (isAbout(ticksBetween(before, stamp) / kTicksPerMs, passed)) {
        ++_votes.counter;
    } else if (isAbout(msBetweenTimesOfDay(timeOfDayMs(before), timeOfDayMs(stamp)), passed)) {
        ++_votes.timeOfDay;
    }
}

// One that is repeated is a constant that aggregators set where they have no time.
void StampRange::take(std::uint64_t stamp) {
    if (!canBeTimeOfDay(stamp)) _impossible += std::exchange(_lastImpossible, stamp) == stamp ? 0U : 1U;
    TimeMs const time = timeOfDayMs(stamp);
    if (_stamps++ == 0) _beginning = time;
    auto const fromBeginning = time > _beginning ? time - _beginning : _beginning - time;
    _farFromFirst += fromBeginning > kTellingSpan ? 1U : 0U;
    _first = std::min(_first, time);
    _last = std::max(_last, time);
}

bool StampRange::areNotTimesOfDay() const { return _impossible * kDamagedShare > _stamps; }

bool StampRange::areMany() const { return _stamps >= kFewStamps; }

bool StampRange::areLong() const { return _farFromFirst * kDamagedShare > _stamps; }

bool StampRange::areTooFast() const {
    auto const span = _last - _first;
    return span <= kTellingSpan && _stamps >= kFewStampsForARate &&
           _stamps * 1000 > kChannelFramesPerSecond * std::max<TimeMs>(span, 1);
}

void ClockKind::take(std::span<Frame const> frames, TimeMs arrival) {
    std::optional<std::uint64_t> last;
    _frames += frames.size();
    for (auto const& frame : frames) {
        if (frame.stamp.value_or(0) == 0) continue; // a receiver without a clock
        last = frame.stamp;
        _range.take(*last);
        _squitters.take(frame);
    }
    if (last && _origin == Origin::Connection) _arrivals.take(*last, arrival);
}

TimeReading ClockKind::found() const {
    if (_range.stamps() == 0) return _frames >= kFewStampsForARate ? withoutStamps() : TimeReading::Auto;
    auto const bySquitters = _squitters.votes().winner(kEnoughPositions);
    if (bySquitters != TimeReading::Auto) return bySquitters;
    auto const byArrival = _arrivals.votes().winner(kEnoughArrivals);
    if (byArrival != TimeReading::Auto) return byArrival;
    if (_range.areMany() && _range.areNotTimesOfDay()) return TimeReading::Counter12MHz;
    if (_range.areMany() && _range.areLong()) return TimeReading::Receiver;
    if (_frames < kManyFrames) return TimeReading::Auto;
    return _origin == Origin::Connection ? TimeReading::Arrival : guess();
}

TimeReading ClockKind::guess() const {
    if (_range.stamps() == 0) return withoutStamps();
    auto const bySquitters = _squitters.votes().winner(1);
    if (bySquitters != TimeReading::Auto) return bySquitters;
    if (_range.areNotTimesOfDay() || _range.areTooFast()) return TimeReading::Counter12MHz;
    return _origin == Origin::Connection ? _arrivals.votes().winner(1) : TimeReading::Receiver;
}

TimeReading ClockKind::withoutStamps() const {
    return _origin == Origin::Recording ? TimeReading::Fixed : TimeReading::Arrival;
}

} // namespace quorvel::airspace
