// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

#include "airspace/sky/standard_track.h"
#include "core/address_map.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quorvel::airspace {

/// All tracks of a sky. A track stays where it is while it lives; the memory of one that was dropped is used again.
///
/// The number of tracks is bounded: anyone can send squitters with any address. When all are in use, room is made by
/// dropping those that have been silent for the longest time, and for 10 s at least; an aircraft that is heard stays.
class TrackTable {
public:
    /// Told of each track that is dropped, before it is.
    using Dropped = std::function<void(TrackKey, StandardTrack const&)>;

    explicit TrackTable(std::size_t most = 100'000) : _most(most) {}

    StandardTrack* find(TrackKey key);             ///< null when there is none
    StandardTrack const* find(TrackKey key) const; ///< the same

    /// Fetches from memory where the track of a key is that comes some frames later.
    void expect(TrackKey key) const { _slots.prefetch(key.value); }

    /// Fetches from memory what most messages touch of the track of a key.
    void expectSoon(TrackKey key) const;

    /// The track of a key, made if there is none; null if there is no room for it.
    StandardTrack* findOrMake(TrackKey key, TimeMs now, Dropped const& dropped = {});

    /// Drops the tracks that were last heard before a time; says how many.
    std::size_t dropSilent(TimeMs since, Dropped const& dropped = {});

    /// Drops one, if it is there.
    void drop(TrackKey key, Dropped const& dropped = {});

    std::size_t size() const { return _slots.size(); }
    std::vector<TrackKey> keys() const; ///< of all tracks, those of ICAO addresses first, in ascending order

private:
    static constexpr std::size_t kBlock = 64; // tracks
    using Block = std::array<StandardTrack, kBlock>;

    StandardTrack& at(std::uint32_t slot) { return (*_blocks[slot / kBlock])[slot % kBlock]; }
    StandardTrack const& at(std::uint32_t slot) const { return (*_blocks[slot / kBlock])[slot % kBlock]; }
    std::uint32_t freeSlot();
    bool makeRoom(TimeMs now, Dropped const& dropped);

    std::size_t _most;
    modes::AddressMap<std::uint32_t> _slots; // by the value of their keys
    std::vector<std::unique_ptr<Block>> _blocks;
    std::vector<std::uint32_t> _free;
    TimeMs _roomMade = 0; // when room was last looked for
};

} // namespace quorvel::airspace
