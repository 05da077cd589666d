// SPDX-License-Identifier: MIT
#include "inspect/position_finder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>

namespace quorvel::inspect {

namespace {

using airspace::Place;

constexpr double kFastestNmPerSecond = 1500.0 / 3600.0; // over ground, with wind
constexpr double kSlackNm = 2.0;                        // times may be whole seconds, or intervals
constexpr double kNearSeconds = 30.0;

// A message whose place is known.
struct Fix {
    std::size_t message;
    double seconds;
    Place place;
    bool isOfPair = true;
};

// Two messages, and the places that they give each other.
struct Pair {
    Fix older;
    Fix newer;
};

// Pairs that one aircraft can have sent one after the other.
using Track = std::vector<Pair>;

bool isReachable(Fix const& from, Fix const& to) {
    return airspace::distanceNm(from.place, to.place) <=
           kSlackNm + kFastestNmPerSecond * std::abs(to.seconds - from.seconds);
}

double windowOf(PositionMessage const& a, PositionMessage const& b) {
    std::optional<double> fastest;
    if (a.groundSpeedKt && b.groundSpeedKt) fastest = std::max(*a.groundSpeedKt, *b.groundSpeedKt);
    return airspace::pairWindowSeconds(b.position.isOnSurface, fastest);
}

class Finder {
public:
    Finder(std::vector<PositionMessage> const& messages, std::optional<Place> const& reference)
        : _messages(messages), _reference(reference) {}

    std::vector<std::optional<FoundPlace>> find() {
        follow();
        choose();
        extend();
        std::vector<std::optional<FoundPlace>> found(_messages.size());
        for (auto const& [message, fix] : _fixes) found[message] = FoundPlace{fix.place, fix.isOfPair};
        return found;
    }

private:
    // Each message makes a pair with the last one of the other format, and goes on where a track ends.
    void follow() {
        std::map<std::pair<bool, bool>, std::size_t> last; // by surface and format
        for (std::size_t i = 0; i < _messages.size(); ++i) {
            auto const& position = _messages[i].position;
            auto const other = last.find({position.isOnSurface, !position.isOdd});
            last[{position.isOnSurface, position.isOdd}] = i;
            if (other == last.end()) continue;
            if (auto const pair = pairOf(other->second, i)) append(*pair);
        }
    }

    std::optional<Pair> pairOf(std::size_t older, std::size_t newer) const {
        auto const& first = _messages[older];
        auto const& second = _messages[newer];
        if (second.seconds - first.seconds > windowOf(first, second)) return std::nullopt;
        auto const place = airspace::globalPosition(first.position, second.position, _reference);
        if (!place) return std::nullopt;
        auto const before = airspace::localPosition(first.position, *place);
        if (!before) return std::nullopt;
        Pair const pair{{older, first.seconds, *before}, {newer, second.seconds, *place}};
        return isReachable(pair.older, pair.newer) ? std::optional(pair) : std::nullopt;
    }

    void append(Pair const& pair) {
        auto const track = std::find_if(_tracks.begin(), _tracks.end(),
            [&](Track const& each) { return isReachable(each.back().newer, pair.newer); });
        if (track == _tracks.end())
            _tracks.push_back({pair});
        else
            track->push_back(pair);
    }

    // The longest track is right, and what it does not contradict.
    void choose() {
        std::stable_sort(
            _tracks.begin(), _tracks.end(), [](Track const& a, Track const& b) { return a.size() > b.size(); });
        for (auto const& track : _tracks) {
            if (!isPossible(track)) continue;
            for (auto const& pair : track) {
                _fixes.emplace(pair.older.message, pair.older);
                _fixes.insert_or_assign(pair.newer.message, pair.newer);
            }
        }
    }

    bool isPossible(Track const& track) const {
        return std::all_of(track.begin(), track.end(), [&](Pair const& pair) {
            auto const* const near = nearest(pair.newer.message);
            return near == nullptr || isReachable(*near, pair.newer);
        });
    }

    // The known place nearest in time to a message; null if there is none.
    Fix const* nearest(std::size_t message) const {
        auto const after = _fixes.lower_bound(message);
        auto const before = after == _fixes.begin() ? _fixes.end() : std::prev(after);
        if (after == _fixes.end()) return before == _fixes.end() ? nullptr : &before->second;
        if (before == _fixes.end()) return &after->second;
        auto const seconds = _messages[message].seconds;
        return after->second.seconds - seconds < seconds - before->second.seconds ? &after->second : &before->second;
    }

    // The messages before the first pair are reached from behind.
    void extend() {
        for (std::size_t i = 0; i < _messages.size(); ++i) place(i);
        for (std::size_t i = _messages.size(); i-- > 0;) place(i);
    }

    void place(std::size_t message) {
        auto const* const near = nearest(message);
        if (near != nullptr && near->message == message) return;
        auto const seconds = _messages[message].seconds;
        bool const isNear = near != nullptr && std::abs(near->seconds - seconds) <= kNearSeconds;
        auto const place =
            isNear ? airspace::localPosition(_messages[message].position, near->place) : besideReference(message);
        if (!place) return;
        Fix const fix{message, seconds, *place, false};
        if (near == nullptr || isReachable(*near, fix)) _fixes.emplace(message, fix);
    }

    // An aircraft on the surface that no pair tells of is near the receiver.
    std::optional<Place> besideReference(std::size_t message) const {
        auto const& position = _messages[message].position;
        if (!_reference || !position.isOnSurface) return std::nullopt;
        return airspace::localPosition(position, *_reference);
    }

    std::vector<PositionMessage> const& _messages;
    std::optional<Place> const& _reference;
    std::vector<Track> _tracks;
    std::map<std::size_t, Fix> _fixes; // by message
};

} // namespace

std::vector<std::optional<FoundPlace>> findPlaces(
    std::vector<PositionMessage> const& messages, std::optional<Place> const& reference) {
    return Finder(messages, reference).find();
}

} // namespace quorvel::inspect
