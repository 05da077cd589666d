// SPDX-License-Identifier: MIT
#include <airspace/core_sky.h>

#include <modes/adsb_message.h>
#include <modes/df_message.h>
#include <modes/modes_decoder.h>

#include "airspace/sky/core_items.h"
#include "airspace/sky/position_gate.h"
#include "airspace/sky/reply_reading.h"
#include "airspace/sky/sky_limits.h"
#include "core/wire.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <variant>

namespace quorvel::airspace {

namespace {

using modes::ADSBMessage;
using modes::ADSBTarget;
using modes::DFMessage;
using modes::ModeSMessage;

constexpr unsigned kAltitudeCheckPeriod = 4;       // seconds
constexpr unsigned kAltitudeCheckDifference = 150; // feet

constexpr std::size_t kTrackNumbers = 4095; // from 1
constexpr std::size_t kRoom = 64;           // aircraft dropped at once when all track numbers are in use

bool isSquitter(Reply const& reply) { return reply.format == DFMessage::DF17 || reply.format == DFMessage::DF18; }

// The core reads no messages of traffic information services.
ADSBMessage::ADSBMessageType typeOf(Reply const& reply) {
    auto const* squitter = std::get_if<ExtendedSquitter>(&reply.message);
    bool const isRead = reply.typeCode && squitter->origin != SquitterOrigin::TisB;
    return isRead ? ADSBMessage::typeByCode(*reply.typeCode) : ADSBMessage::RESERVED;
}

// What brings the items that both squitters and replies to interrogations bring.
enum Bringing : unsigned { kAltitude = 1, kGroundStatus = 2 };

unsigned broughtBy(Reply const& reply) {
    switch (*reply.format) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF16:
    case DFMessage::DF20: return kAltitude | kGroundStatus;
    case DFMessage::DF5:
    case DFMessage::DF21: return kGroundStatus;
    case DFMessage::DF17: return typeOf(reply) == ADSBMessage::POS_AIR ? kAltitude | kGroundStatus : 0U;
    default: return 0;
    }
}

struct Sources {
    Source altitude = Source::None;
    Source ground = Source::None;

    void note(ADSBTarget const& target, Reply const& reply, TimeMs time) {
        auto const source = isSquitter(reply) ? Source::AdsB : Source::ModeS;
        auto const brought = broughtBy(reply);
        if ((brought & kAltitude) != 0 && target.altitudeBaroLastUpdate() == time) altitude = source;
        if ((brought & kGroundStatus) != 0 && target.groundStatusLastUpdate() == time) ground = source;
    }

    void put(Aircraft& aircraft) const {
        aircraft.altitudeBaro.source = altitude;
        aircraft.groundStatus.source = ground;
    }
};

// What is kept of an aircraft beside the core's target.
struct Tracked {
    bool isTarget = false;
    TimeMs latest = 0; // that it was heard at
    char categorySet = 0;
    Sources sources;
    PositionGate::Shown judged; // the last position
    PositionGate gate;
};

} // namespace

struct CoreSky::Impl {
    explicit Impl(SkyOptions const& skyOptions) : options(skyOptions), tracked(kTrackNumbers + 1) {
        if (options.altitudeCheck) {
            tracker.setAltituteBaroChecking(true, kAltitudeCheckPeriod, kAltitudeCheckDifference);
        }
    }

    Reply take(Frame const& frame);
    bool isWelcome(Reply const& reply) const;
    bool isLostForLackOfRoom(Reply const& reply) const;
    std::shared_ptr<ADSBTarget> track(Reply const& reply);
    bool makeRoom(TimeMs now);
    void note(ADSBTarget const& target, Reply& reply, TimeMs time);
    bool showsPosition(ADSBTarget const& target);
    void dropAircraftOfTheFuture(TimeMs now);
    void forget(std::vector<std::shared_ptr<ADSBTarget>> const& killed);
    void tellOfDropped();
    std::shared_ptr<modes::ADSBTargetReport> reportOf(ADSBTarget const& target) const;
    Aircraft aircraftOf(ADSBTarget const& target, TimeMs now) const;

    SkyOptions options;
    Dropped dropped;
    std::vector<std::shared_ptr<ADSBTarget>> untold; // dropped, and the handler does not know yet
    modes::ModeSDecoder decoder;
    modes::ADSBTracker tracker;
    std::vector<Tracked> tracked; // by track number
    std::shared_ptr<ModeSMessage> message;
    std::shared_ptr<ModeSMessage const> constMessage;
    std::size_t targets = 0;
    TimeMs latest = 0; // of all
    TimeMs lastRoomMade = 0;
    Counts counts;
};

Reply CoreSky::Impl::take(Frame const& frame) {
    message.reset();
    if (frame.length > kModeAcFrameBytes && frame.length <= frame.bytes.size()) {
        ++counts.byFormat[modes::wire::formatCode(frame.view())];
        message = decoder.decode(
            ModeSMessage::DOWNLINK, reinterpret_cast<char const*>(frame.bytes.data()), frame.length, frame.time);
    }
    constMessage = message;
    auto reply = readReply(frame, message.get());
    if (frame.length <= kModeAcFrameBytes) return reply;
    if (!message) {
        ++counts.undecoded;
        return reply;
    }
    message->setSignalAmplitude(frame.signal);
    ++counts.byConfidence[reply.confidence];
    if (reply.repairs > 0) {
        ++counts.repaired;
        if (!isWelcome(reply)) {
            ++counts.repairedRefused;
            return reply;
        }
    }
    if (auto const target = track(reply)) {
        reply.isTracked = true;
        note(*target, reply, message->timeStamp());
    }
    return reply;
}

bool CoreSky::Impl::isWelcome(Reply const& reply) const {
    switch (options.repaired) {
    case RepairedReplies::Keep: return true;
    case RepairedReplies::Known: return tracker.findConstTarget(reply.address) != nullptr;
    case RepairedReplies::Drop: return false;
    }
    return false;
}

// Replies of trusted addresses make targets, all-call replies excepted.
bool CoreSky::Impl::isLostForLackOfRoom(Reply const& reply) const {
    if (targets < kTrackNumbers || reply.confidence < ModeSMessage::MEDIUM) return false;
    switch (*reply.format) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF5:
    case DFMessage::DF16:
    case DFMessage::DF17:
    case DFMessage::DF20:
    case DFMessage::DF21: return tracker.findConstTarget(reply.address) == nullptr;
    default: return false;
    }
}

std::shared_ptr<ADSBTarget> CoreSky::Impl::track(Reply const& reply) {
    auto target = tracker.procModeSMsg(message);
    if (target || !isLostForLackOfRoom(reply)) return target;
    if (makeRoom(message->timeStamp())) target = tracker.procModeSMsg(message);
    if (!target) ++counts.tableFull;
    return target;
}

// Drops the aircraft that have been silent for the longest time. That takes a look at all of them, so it is
// not done for each reply of a sky that is too full.
bool CoreSky::Impl::makeRoom(TimeMs now) {
    if (now >= lastRoomMade && now - lastRoomMade < kRoomMakingPause && lastRoomMade != 0) return false;
    lastRoomMade = now;
    std::vector<TimeMs> heard;
    for (auto const& target : tracker.allTargets()) heard.push_back(target->lastUpdate());
    if (heard.size() <= kRoom) return false;
    std::nth_element(heard.begin(), heard.begin() + kRoom, heard.end());
    auto const silentSince = now > kSilent ? now - kSilent : 0;
    auto const killed = tracker.killTargets(std::min(heard[kRoom], silentSince));
    counts.targetsMadeRoom += killed.size();
    forget(killed);
    return !killed.empty();
}

void CoreSky::Impl::note(ADSBTarget const& target, Reply& reply, TimeMs time) {
    ++counts.tracked;
    auto& own = tracked[target.trackId()];
    if (!own.isTarget) {
        own.isTarget = true;
        ++targets;
        ++counts.targetsMade;
    }
    own.latest = std::max(own.latest, time);
    latest = std::max(latest, own.latest);
    own.sources.note(target, reply, time);
    if (!isSquitter(reply)) return;
    auto const type = typeOf(reply);
    if (type == ADSBMessage::ACID) own.categorySet = categorySetOf(*reply.typeCode);
    if (type == ADSBMessage::POS_AIR && target.positionLastUpdate() == time)
        reply.isPositionShown = showsPosition(target);
}

// Judges the position of a target, and whether it is shown from now on.
bool CoreSky::Impl::showsPosition(ADSBTarget const& target) {
    auto& own = tracked[target.trackId()];
    PositionGate::Shown const reported{{target.latitude(), target.longitude()}, target.positionLastUpdate()};
    bool const isJudged = own.judged.time == reported.time && own.judged.place == reported.place;
    if (isJudged) return false; // another message of the same time has made no pair
    own.judged = reported;
    switch (own.gate.judge(reported.place, reported.time, options.positions)) {
    case PositionGate::Verdict::Believed: ++counts.positionsBelieved; [[fallthrough]];
    case PositionGate::Verdict::Shown: ++counts.positions; return true;
    case PositionGate::Verdict::OutOfRange: ++counts.positionsOutOfRange; return false;
    case PositionGate::Verdict::TooFast: ++counts.positionsTooFast; return false;
    case PositionGate::Verdict::Impossible: ++counts.positionsImpossible; return false;
    }
    return false;
}

void CoreSky::Impl::dropAircraftOfTheFuture(TimeMs now) {
    latest = now + kAhead;
    for (auto const& target : tracker.allTargets()) {
        if (tracked[target->trackId()].latest > now + kAhead)
            forget({tracker.killTarget(target->trackId(), target->icaoAddr())});
    }
}

void CoreSky::Impl::forget(std::vector<std::shared_ptr<ADSBTarget>> const& killed) {
    for (auto const& target : killed) tracked[target->trackId()] = {};
    counts.targetsDropped += killed.size();
    targets -= killed.size();
    if (dropped) untold.insert(untold.end(), killed.begin(), killed.end());
}

// Comes last in whatever drops aircraft, with nothing left to do: the handler may use the sky, and replace itself.
void CoreSky::Impl::tellOfDropped() {
    if (untold.empty()) return;
    auto const handler = dropped;
    for (auto const& target : std::exchange(untold, {})) handler(target);
}

std::shared_ptr<modes::ADSBTargetReport> CoreSky::Impl::reportOf(ADSBTarget const& target) const {
    auto report = target.report();
    auto const& shown = tracked[target.trackId()].gate.shown();
    report->setPosition(shown ? shown->place.latitude : 0, shown ? shown->place.longitude : 0);
    report->setPositionLastUpdate(shown ? shown->time : 0);
    report->setPositionValid(shown.has_value());
    return report;
}

Aircraft CoreSky::Impl::aircraftOf(ADSBTarget const& target, TimeMs now) const {
    Aircraft aircraft;
    auto const& own = tracked[target.trackId()];
    copyItems(*reportOf(target), aircraft);
    own.sources.put(aircraft);
    if (aircraft.emitterCategory.value) aircraft.emitterCategory.value->set = own.categorySet;
    aircraft.now = now;
    aircraft.messages = target.statisticDfMsgCount();
    aircraft.positionsRefused = own.gate.refused();
    return aircraft;
}

CoreSky::CoreSky(SkyOptions const& options) : _impl(std::make_unique<Impl>(options)) {}
CoreSky::~CoreSky() = default;
CoreSky::CoreSky(CoreSky&&) noexcept = default;
CoreSky& CoreSky::operator=(CoreSky&&) noexcept = default;

Reply CoreSky::take(Frame const& frame) {
    auto const reply = _impl->take(frame);
    _impl->tellOfDropped();
    return reply;
}

void CoreSky::setTimeout(TimeMs timeout) { _impl->options.timeout = timeout; }
void CoreSky::ignoreSpeeds() { _impl->options.positions.checksSpeed = false; }

void CoreSky::dropSilent(TimeMs now) {
    auto const timeout = _impl->options.timeout;
    if (timeout != 0 && timeout < now) _impl->forget(_impl->tracker.killTargets(now - timeout));
    if (_impl->latest > now + kAhead) _impl->dropAircraftOfTheFuture(now);
    _impl->tellOfDropped();
}

void CoreSky::dropAll() {
    _impl->forget(_impl->tracker.killTargets(std::numeric_limits<TimeMs>::max()));
    _impl->tellOfDropped();
}

std::vector<Aircraft> CoreSky::aircraft(TimeMs now) const {
    std::vector<Aircraft> all;
    auto const targets = _impl->tracker.allTargets();
    all.reserve(targets.size());
    for (auto const& target : targets) all.push_back(_impl->aircraftOf(*target, now));
    return all;
}

std::optional<Aircraft> CoreSky::find(std::uint32_t address, TimeMs now) const {
    auto const target = _impl->tracker.findConstTarget(address);
    return target ? std::optional(_impl->aircraftOf(*target, now)) : std::nullopt;
}

std::size_t CoreSky::size() const { return _impl->targets; }
Counts const& CoreSky::counts() const { return _impl->counts; }
std::shared_ptr<ModeSMessage const> const& CoreSky::message() const { return _impl->constMessage; }

std::shared_ptr<modes::ADSBTargetReport> CoreSky::report(std::uint32_t address) const {
    auto const target = _impl->tracker.findConstTarget(address);
    return target ? _impl->reportOf(*target) : nullptr;
}

modes::ADSBTracker& CoreSky::tracker() { return _impl->tracker; }
void CoreSky::onDropped(Dropped dropped) { _impl->dropped = std::move(dropped); }

} // namespace quorvel::airspace
