// SPDX-License-Identifier: MIT
#include "airspace/sky/position_tracker.h"

#include <airspace/integrity.h>

#include <algorithm>

namespace quorvel::airspace {

namespace {

constexpr int kRivalsBelieved = 3;
constexpr double kRivalSeconds = 60.0;
constexpr double kSameNm = 0.05;           // two ways to one place
constexpr double kAirborneReachNm = 120.0; // half a zone is 180 NM
constexpr double kSurfaceReachNm = 30.0;   // half a zone is 45 NM
constexpr double kAirbornePairNm = 2.5;    // an aircraft that flies 3 NM between the halves of a pair seems a zone away
constexpr double kSurfacePairNm = 0.6;     // the same, of zones of a quarter of the size
constexpr double kSecondsPerHour = 3600.0;

double secondsApart(TimeMs a, TimeMs b) { return static_cast<double>(a > b ? a - b : b - a) / 1000.0; }

// How far from a place the aircraft can be after a time: what it flies by then, and what both places may be wrong by.
double reachNm(PositionReport const& report, TimeMs since) {
    constexpr double fastestKt = 1500.0; // over ground, with wind
    constexpr double slackKt = 50.0;
    constexpr double accelerationKt = 5.0; // per second
    constexpr double slackSeconds = 1.0;   // times may be whole seconds
    constexpr double usualRadiusNm = 0.6;
    constexpr double largestRadiusNm = 20.0;
    auto const seconds = secondsApart(report.time, since) + slackSeconds;
    auto const limitKt = report.groundSpeedKt.value_or(fastestKt) + slackKt + accelerationKt * seconds;
    auto const radiusNm = report.radiusMetres ? *report.radiusMetres / kMetresPerNauticalMile : usualRadiusNm;
    return std::min(radiusNm, largestRadiusNm) + std::min(limitKt, fastestKt) * seconds / kSecondsPerHour;
}

// Degrees of longitude are longest at the equator: as if both places were there. Enough for almost all.
bool isWithinNm(double reach, Place const& from, Place const& to) {
    constexpr double degreeNm = 60.041;
    auto const north = degreeNm * (to.latitude - from.latitude);
    auto const east = degreeNm * (to.longitude - from.longitude);
    return north * north + east * east <= reach * reach || distanceNm(from, to) <= reach;
}

bool isInRange(Place const& place, PositionLimits const& limits) {
    return !limits.receiver || isWithinNm(limits.rangeNm, *limits.receiver, place);
}

} // namespace

std::optional<Place> PositionTracker::fromPair(
    PositionReport const& report, std::optional<Place> const& reference) const {
    auto const& other = _halves[report.position.isOdd ? 0 : 1];
    if (other.time == 0 || other.source != report.source) return std::nullopt;
    auto const isOnSurface = report.position.isOnSurface;
    auto const seconds = secondsApart(report.time, other.time);
    if (seconds > pairWindowSeconds(isOnSurface, report.groundSpeedKt)) return std::nullopt;
    auto const flownNm = report.groundSpeedKt.value_or(0.0) * seconds / kSecondsPerHour;
    if (flownNm > (isOnSurface ? kSurfacePairNm : kAirbornePairNm)) return std::nullopt;
    return globalPosition(other.position, report.position, reference);
}

// Only while the aircraft cannot have left the zone of its last place.
std::optional<Place> PositionTracker::nearLast(PositionReport const& report) const {
    auto const limit = report.position.isOnSurface ? kSurfaceReachNm : kAirborneReachNm;
    if (!_isPlaced || reachNm(report, _last.time) > limit) return std::nullopt;
    return localPosition(report.position, _last.place);
}

PositionTracker::Verdict PositionTracker::judge(PositionReport const& report, Place const& place,
    std::optional<Place> const& paired, PositionLimits const& limits) const {
    if (!isInRange(place, limits) || (paired && !isInRange(*paired, limits))) return Verdict::OutOfRange;
    if (paired && !isWithinNm(kSameNm, *paired, place)) return Verdict::Ambiguous;
    if (!_isPlaced || !limits.checksSpeed) return Verdict::Given;
    return isWithinNm(reachNm(report, _last.time), _last.place, place) ? Verdict::Given : Verdict::TooFast;
}

PositionTracker::Verdict PositionTracker::refuse(
    PositionReport const& report, std::optional<Place> const& paired, Verdict verdict) {
    ++_refused;
    if (!paired) return verdict;
    bool const goesOn = _rivalsInARow > 0 && secondsApart(report.time, _rival.time) <= kRivalSeconds &&
                        isWithinNm(reachNm(report, _rival.time), _rival.place, *paired);
    auto const inARow = goesOn ? std::min(_rivalsInARow + 1, kRivalsBelieved) : 1;
    _rivalsInARow = static_cast<std::uint8_t>(inARow);
    _rival = {*paired, report.time};
    if (_rivalsInARow < kRivalsBelieved || verdict == Verdict::OutOfRange) return verdict;
    --_refused;
    return give(_rival, Verdict::Believed);
}

PositionTracker::Verdict PositionTracker::give(Fix const& fix, Verdict verdict) {
    _last = fix;
    _isPlaced = true;
    _rivalsInARow = 0;
    return verdict;
}

PositionTracker::Verdict PositionTracker::take(PositionReport const& report, PositionLimits const& limits) {
    if (report.isRepaired) return Verdict::Repaired;
    auto const near = nearLast(report);
    // the side of a pair on the surface
    auto const reference = near ? std::optional(_last.place) : limits.receiver;
    auto const paired = fromPair(report, reference);
    _halves[report.position.isOdd ? 1 : 0] = {report.position, report.time, report.source};
    auto const found = near ? near : paired;
    if (!found || (!paired && _rivalsInARow > 0)) return Verdict::Incomplete;
    auto const verdict = judge(report, *found, paired, limits);
    if (verdict != Verdict::Given) return refuse(report, paired, verdict);
    return give({*found, report.time}, verdict);
}

} // namespace quorvel::airspace
