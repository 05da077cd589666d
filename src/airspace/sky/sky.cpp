// SPDX-License-Identifier: MIT
#include <airspace/sky.h>

#include "airspace/readings/read_into.h"
#include "airspace/sky/frame_receiver.h"
#include "airspace/sky/sky_limits.h"
#include "airspace/sky/track_aircraft.h"
#include "airspace/sky/track_table.h"
#include "core/wire.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

namespace quorvel::airspace {

namespace {

using Verdict = PositionTracker::Verdict;

// A message of a ground station of a type without the flag that tells whose address it is.
bool leavesAddressKindOpen(Reply const& reply) {
    auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message);
    return squitter && !squitter->tellsAddressKind;
}

// An all-call reply is answered to anybody, and says too little to make an aircraft of it.
bool makesAircraft(Reply const& reply) {
    return !std::holds_alternative<AllCallReply>(reply.message) && !leavesAddressKindOpen(reply);
}

// What counts a verdict; null of those that are nothing to count.
Counts::Count Counts::*counterOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::Given:
    case Verdict::Believed: return &Counts::positions;
    case Verdict::OutOfRange: return &Counts::positionsOutOfRange;
    case Verdict::TooFast: return &Counts::positionsTooFast;
    case Verdict::Ambiguous: return &Counts::positionsAmbiguous;
    case Verdict::Repaired: return &Counts::positionsRepaired;
    case Verdict::Incomplete: break;
    }
    return nullptr;
}

} // namespace

struct Sky::Impl {
    explicit Impl(SkyOptions const& skyOptions) : options(skyOptions) {}

    Reply take(Frame const& frame);
    TrackKey keyOf(Reply const& reply) const;
    void expect(Frame const& frame);
    bool isWelcome(Reply const& reply) const;
    StandardTrack* trackOf(Reply const& reply, TimeMs time);
    void give(StandardTrack& track, Frame const& frame, Reply& reply);
    void countDropped(std::size_t number) { counts.targetsDropped += number; }
    void dropAircraftOfTheFuture(TimeMs now);
    std::optional<Aircraft> find(TrackKey key, TimeMs now) const;

    SkyOptions options;
    FrameReceiver receiver;
    TrackTable tracks;
    std::array<TrackKey, 8> expected; // in turn: where their tracks are is on its way from memory
    std::size_t nextExpected = 0;
    TimeMs latest = 0; // of all
    Counts counts;
};

Reply Sky::Impl::take(Frame const& frame) {
    auto reply = receiver.receive(frame.view(), frame.time);
    if (!reply.format) return reply;
    ++counts.byFormat[modes::wire::formatCode(frame.view())];
    if (!reply.isDecoded) {
        ++counts.undecoded;
        return reply;
    }
    ++counts.byConfidence[reply.confidence];
    if (reply.repairs > 0) {
        ++counts.repaired;
        if (!isWelcome(reply)) {
            ++counts.repairedRefused;
            return reply;
        }
    }
    if (auto* const found = trackOf(reply, frame.time)) give(*found, frame, reply);
    return reply;
}

// Where a message leaves the kind of its address open, that of the aircraft which has it.
TrackKey Sky::Impl::keyOf(Reply const& reply) const {
    auto const* header = headerOf(reply.message);
    if (!header) return {};
    auto const told = TrackKey::of(*header);
    if (!leavesAddressKindOpen(reply) || tracks.find(told)) return told;
    for (auto const kind : {AddressKind::NonIcao, AddressKind::TrackFile}) {
        auto const key = TrackKey::of(header->address, kind);
        if (tracks.find(key)) return key;
    }
    return told;
}

// Fetches where the track is, and once that has come, the track itself. Few aircraft stay in the processor's caches.
void Sky::Impl::expect(Frame const& frame) {
    constexpr std::size_t few = 1'000;
    if (tracks.size() < few) return;
    auto const address = likelyAddress(frame.view());
    auto const key = TrackKey::of(address, AddressKind::Icao);
    receiver.expect(address);
    tracks.expect(key);
    tracks.expectSoon(std::exchange(expected[nextExpected++ % expected.size()], key));
}

bool Sky::Impl::isWelcome(Reply const& reply) const {
    switch (options.repaired) {
    case RepairedReplies::Keep: return true;
    case RepairedReplies::Known: return tracks.find(keyOf(reply)) != nullptr;
    case RepairedReplies::Drop: return false;
    }
    return false;
}

// The track that a reply belongs to; null of what is not trusted, and where there is no room.
StandardTrack* Sky::Impl::trackOf(Reply const& reply, TimeMs time) {
    auto const key = keyOf(reply);
    if (reply.confidence < modes::ModeSMessage::MEDIUM || key == TrackKey{}) return nullptr;
    if (auto* const known = tracks.find(key); known || !makesAircraft(reply)) return known;
    auto const before = tracks.size();
    auto* const made = tracks.findOrMake(key, time);
    if (!made) {
        ++counts.tableFull;
        return nullptr;
    }
    ++counts.targetsMade;
    auto const dropped = before + 1 - tracks.size();
    counts.targetsMadeRoom += dropped;
    countDropped(dropped);
    return made;
}

void Sky::Impl::give(StandardTrack& track, Frame const& frame, Reply& reply) {
    auto const outcome = track.take(reply, frame.time, options);
    track.setSignal(frame.signal);
    reply.isTracked = true;
    if (outcome.choice) reply.registerChoice = outcome.choice;
    ++counts.tracked;
    latest = std::max(latest, frame.time);
    if (!outcome.position) return;
    if (auto const counter = counterOf(*outcome.position)) ++(counts.*counter);
    if (*outcome.position == Verdict::Believed) ++counts.positionsBelieved;
    reply.isPositionShown = *outcome.position == Verdict::Given || *outcome.position == Verdict::Believed;
}

void Sky::Impl::dropAircraftOfTheFuture(TimeMs now) {
    latest = now + kAhead;
    for (auto const key : tracks.keys()) {
        if (tracks.find(key)->heard() <= now + kAhead) continue;
        tracks.drop(key);
        countDropped(1);
    }
}

std::optional<Aircraft> Sky::Impl::find(TrackKey key, TimeMs now) const {
    auto const* track = tracks.find(key);
    return track ? std::optional(aircraftOf(key, *track, now, options.positions.receiver)) : std::nullopt;
}

Sky::Sky(SkyOptions const& options) : _impl(std::make_unique<Impl>(options)) {}
Sky::~Sky() = default;
Sky::Sky(Sky&&) noexcept = default;
Sky& Sky::operator=(Sky&&) noexcept = default;

Reply Sky::take(Frame const& frame) { return _impl->take(frame); }

void Sky::expect(Frame const& frame) { _impl->expect(frame); }

void Sky::setTimeout(TimeMs timeout) { _impl->options.timeout = timeout; }
void Sky::ignoreSpeeds() { _impl->options.positions.checksSpeed = false; }

void Sky::dropSilent(TimeMs now) {
    auto const timeout = _impl->options.timeout;
    if (timeout != 0 && timeout < now) _impl->countDropped(_impl->tracks.dropSilent(now - timeout + 1));
    if (_impl->latest > now + kAhead) _impl->dropAircraftOfTheFuture(now);
}

void Sky::dropAll() {
    _impl->countDropped(_impl->tracks.size());
    _impl->tracks = TrackTable();
}

std::vector<Aircraft> Sky::aircraft(TimeMs now) const {
    std::vector<Aircraft> all;
    all.reserve(size());
    for (auto const key : _impl->tracks.keys()) all.push_back(*_impl->find(key, now));
    return all;
}

std::optional<Aircraft> Sky::find(std::uint32_t address, TimeMs now, AddressKind kind) const {
    return _impl->find(TrackKey::of(address, kind), now);
}

std::optional<Aircraft> Sky::find(Reply const& reply, TimeMs now) const {
    return reply.isTracked ? _impl->find(_impl->keyOf(reply), now) : std::nullopt;
}

std::size_t Sky::size() const { return _impl->tracks.size(); }
Counts const& Sky::counts() const { return _impl->counts; }

} // namespace quorvel::airspace
