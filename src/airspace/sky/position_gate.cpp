// SPDX-License-Identifier: MIT
#include "airspace/sky/position_gate.h"

#include "airspace/sky/earth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvel::airspace {

namespace {

constexpr double kDegreeNm = kEarthRadiusNm * std::numbers::pi / 180.0;
constexpr double kFastestKnots = 1500.0; // over ground, with wind
constexpr double kSlackNm = 1.0;         // rounding of positions, and of times to whole seconds
constexpr double kMsPerHour = 3'600'000.0;

bool isOnTheGlobe(Place const& place) {
    return std::abs(place.latitude) <= 90.0 && std::abs(place.longitude) <= 180.0; // false for what is not a number
}

// Degrees of longitude are longest at the equator: as if both places were there. Enough for almost all
// positions.
double distanceAtMostNm(Place const& from, Place const& to) {
    auto const north = to.latitude - from.latitude;
    auto const east = to.longitude - from.longitude;
    return kDegreeNm * std::sqrt(north * north + east * east);
}

bool isReachable(PositionGate::Shown const& from, PositionGate::Shown const& to) {
    auto const apart = to.time > from.time ? to.time - from.time : from.time - to.time;
    auto const reach = kSlackNm + kFastestKnots * static_cast<double>(apart) / kMsPerHour;
    return distanceAtMostNm(from.place, to.place) <= reach || distanceNm(from.place, to.place) <= reach;
}

bool isInRange(Place const& place, PositionLimits const& limits) {
    return !limits.receiver || distanceNm(*limits.receiver, place) <= limits.rangeNm;
}

} // namespace

PositionGate::Verdict PositionGate::judge(Place const& place, TimeMs time, PositionLimits const& limits) {
    Shown const candidate{place, time};
    if (!isOnTheGlobe(place)) {
        ++_refused;
        return Verdict::Impossible;
    }
    bool const isFlownTo = _shown && isReachable(*_shown, candidate);
    bool const isHeard = isInRange(place, limits) || (isFlownTo && !isInRange(_shown->place, limits));
    auto verdict = Verdict::Shown;
    if (!isHeard) {
        verdict = Verdict::OutOfRange;
    } else if (limits.checksSpeed && _shown && !isFlownTo) {
        verdict = Verdict::TooFast;
    }
    if (verdict != Verdict::Shown) {
        bool const goesOn = _refusedInARow > 0 && isReachable(_lastRefused, candidate);
        if (!goesOn) _refusedInARow = 0;
        if (_refusedInARow < kRefusalsInARow) {
            ++_refusedInARow;
            _lastRefused = candidate;
            ++_refused;
            return verdict;
        }
        verdict = Verdict::Believed;
    }
    _refusedInARow = 0;
    _shown = candidate;
    return verdict;
}

} // namespace quorvel::airspace
