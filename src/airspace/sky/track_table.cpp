// SPDX-License-Identifier: MIT
#include "airspace/sky/track_table.h"

#include "airspace/sky/sky_limits.h"

#include <algorithm>

namespace quorvel::airspace {

namespace {

constexpr std::size_t kRoomShare = 64; // of all tracks, dropped at once

} // namespace

StandardTrack const* TrackTable::find(TrackKey key) const {
    auto const* slot = _slots.find(key.value);
    return slot ? &at(*slot) : nullptr;
}

StandardTrack* TrackTable::find(TrackKey key) {
    auto const* slot = _slots.find(key.value);
    return slot ? &at(*slot) : nullptr;
}

void TrackTable::expectSoon(TrackKey key) const {
    if (auto const* track = find(key)) track->prefetch();
}

std::uint32_t TrackTable::freeSlot() {
    if (_free.empty()) {
        auto const first = static_cast<std::uint32_t>(_blocks.size() * kBlock);
        _blocks.push_back(std::make_unique_for_overwrite<Block>());
        for (auto slot = first + kBlock; slot-- > first;) _free.push_back(static_cast<std::uint32_t>(slot));
    }
    auto const slot = _free.back();
    _free.pop_back();
    return slot;
}

StandardTrack* TrackTable::findOrMake(TrackKey key, TimeMs now, Dropped const& dropped) {
    if (auto* track = find(key)) return track;
    if (size() >= _most && !makeRoom(now, dropped)) return nullptr;
    auto const slot = freeSlot();
    _slots[key.value] = slot;
    return std::construct_at(&at(slot), now);
}

bool TrackTable::makeRoom(TimeMs now, Dropped const& dropped) {
    auto const sinceLast = now > _roomMade ? now - _roomMade : _roomMade - now;
    if (sinceLast < kRoomMakingPause || now < kSilent) return false;
    _roomMade = now;
    std::vector<TimeMs> heard;
    heard.reserve(size());
    for (auto const key : _slots.addresses()) heard.push_back(find({key})->heard());
    auto const nth = heard.begin() + static_cast<std::ptrdiff_t>(heard.size() / kRoomShare);
    std::nth_element(heard.begin(), nth, heard.end());
    return dropSilent(std::min(*nth + 1, now - kSilent), dropped) > 0;
}

std::size_t TrackTable::dropSilent(TimeMs since, Dropped const& dropped) {
    std::size_t count = 0;
    for (auto const key : _slots.addresses()) {
        if (find({key})->heard() >= since) continue;
        drop({key}, dropped);
        ++count;
    }
    return count;
}

void TrackTable::drop(TrackKey key, Dropped const& dropped) {
    auto const* slot = _slots.find(key.value);
    if (!slot) return;
    if (dropped) dropped(key, at(*slot));
    _free.push_back(*slot);
    _slots.erase(key.value);
}

std::vector<TrackKey> TrackTable::keys() const {
    std::vector<TrackKey> keys;
    keys.reserve(size());
    for (auto const value : _slots.addresses()) keys.push_back({value});
    return keys;
}

} // namespace quorvel::airspace
