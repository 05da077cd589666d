// SPDX-License-Identifier: MIT
#include "host/receiver.h"

#include <algorithm>
#include <limits>

namespace quorvel::host {

namespace {

using modes::ADSBTarget;
using modes::DFMessage;
using modes::ModeSMessage;

constexpr unsigned kAltitudeCheckPeriod = 4;       // seconds
constexpr unsigned kAltitudeCheckDifference = 150; // feet
constexpr TimeMs kAhead = 60'000;                  // clocks of merged sources may differ so much

constexpr std::size_t kTrackNumbers = 4095; // from 1
constexpr std::size_t kRoom = 64;           // targets dropped at once when all track numbers are in use
constexpr TimeMs kSilent = 10'000;          // what was heard since then is not dropped for others
constexpr TimeMs kRoomMakingPause = 1'000;

// Downlink messages are replies.
DFMessage::DownlinkFormat formatOf(ModeSMessage const& message) {
    return static_cast<DFMessage const&>(message).downlinkFormat();
}

bool isSquitter(ModeSMessage const& message) {
    return formatOf(message) == DFMessage::DF17 || formatOf(message) == DFMessage::DF18;
}

} // namespace

Receiver::Receiver(ReceiverOptions const& options, AircraftFile* database)
    : _options(options), _database(database), _tracked(kTrackNumbers + 1) {
    if (_options.altitudeCheck) {
        _tracker.setAltituteBaroChecking(true, kAltitudeCheckPeriod, kAltitudeCheckDifference);
    }
    if (_database != nullptr) _database->teach(_tracker);
}

Receiver::Result Receiver::take(Frame const& frame) {
    auto const bytes = frame.record->data();
    if (bytes.size() == kModeAcFrameBytes) return {};
    ++_counters.byFormat[static_cast<unsigned char>(bytes[0]) >> 3];
    Result result{_decoder.decode(ModeSMessage::DOWNLINK, frame.record), nullptr};
    if (!result.message) {
        ++_counters.undecoded;
        return result;
    }
    auto& message = *result.message;
    message.setSignalAmplitude(frame.signal);
    ++_counters.byConfidence[message.confidence()];
    if (message.data() != bytes) {
        ++_counters.repaired;
        if (!isWelcome(message)) {
            ++_counters.repairedRefused;
            return result;
        }
    }
    result.target = _tracker.procModeSMsg(result.message);
    if (!result.target && isLostForLackOfRoom(message)) result.target = trackWhenFull(result.message);
    if (!result.target) return result;
    ++_counters.tracked;
    auto& target = *result.target;
    auto& tracked = _tracked[target.trackId()];
    if (!tracked.isTarget) {
        tracked.isTarget = true;
        ++_targets;
        ++_counters.targetsMade;
    }
    tracked.latest = std::max(tracked.latest, message.timeStamp());
    _latest = std::max(_latest, tracked.latest);
    if (isSquitter(message) && target.positionLastUpdate() == message.timeStamp()) judgePosition(target);
    return result;
}

bool Receiver::isWelcome(ModeSMessage const& message) const {
    switch (_options.repaired) {
    case RepairedReplies::Keep: return true;
    case RepairedReplies::Known: return _tracker.findConstTarget(message.icaoAddress()) != nullptr;
    case RepairedReplies::Drop: return false;
    }
    return false;
}

// Replies of trusted addresses make targets, all-call replies excepted.
bool Receiver::isLostForLackOfRoom(ModeSMessage const& message) const {
    if (_targets < kTrackNumbers || message.confidence() < ModeSMessage::MEDIUM) return false;
    switch (formatOf(message)) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF5:
    case DFMessage::DF16:
    case DFMessage::DF17:
    case DFMessage::DF20:
    case DFMessage::DF21: return _tracker.findConstTarget(message.icaoAddress()) == nullptr;
    default: return false;
    }
}

std::shared_ptr<ADSBTarget> Receiver::trackWhenFull(std::shared_ptr<ModeSMessage> const& message) {
    auto target = makeRoom(message->timeStamp()) ? _tracker.procModeSMsg(message) : nullptr;
    if (!target) ++_counters.tableFull;
    return target;
}

// Drops the targets that have been silent for the longest time. That takes a look at all of them, so it is
// not done for each reply of a sky that is too full.
bool Receiver::makeRoom(TimeMs now) {
    if (now >= _lastRoomMade && now - _lastRoomMade < kRoomMakingPause && _lastRoomMade != 0) return false;
    _lastRoomMade = now;
    std::vector<TimeMs> heard;
    for (auto const& target : _tracker.allTargets()) heard.push_back(target->lastUpdate());
    if (heard.size() <= kRoom) return false;
    std::nth_element(heard.begin(), heard.begin() + kRoom, heard.end());
    auto const silentSince = now > kSilent ? now - kSilent : 0;
    auto const killed = _tracker.killTargets(std::min(heard[kRoom], silentSince));
    _counters.targetsMadeRoom += killed.size();
    forget(killed);
    return !killed.empty();
}

void Receiver::dropSilentTargets(TimeMs now) {
    if (_timeout != 0 && _timeout < now) forget(_tracker.killTargets(now - _timeout));
    if (_latest > now + kAhead) dropTargetsOfTheFuture(now);
}

void Receiver::dropTargetsOfTheFuture(TimeMs now) {
    _latest = now + kAhead;
    for (auto const& target : _tracker.allTargets()) {
        if (_tracked[target->trackId()].latest > now + kAhead)
            forget({_tracker.killTarget(target->trackId(), target->icaoAddr())});
    }
}

void Receiver::dropAllTargets() { forget(_tracker.killTargets(std::numeric_limits<TimeMs>::max())); }

void Receiver::forget(std::vector<std::shared_ptr<ADSBTarget>> const& killed) {
    for (auto const& target : killed) {
        _tracked[target->trackId()] = {};
        if (_database != nullptr) _database->learn(target);
    }
    _counters.targetsDropped += killed.size();
    _targets -= killed.size();
}

void Receiver::judgePosition(ADSBTarget const& target) {
    Place const place{target.latitude(), target.longitude()};
    switch (_tracked[target.trackId()].gate.judge(place, target.positionLastUpdate(), _options.positions)) {
    case PositionGate::Verdict::Believed: ++_counters.positionsBelieved; [[fallthrough]];
    case PositionGate::Verdict::Shown: ++_counters.positions; return;
    case PositionGate::Verdict::OutOfRange: ++_counters.positionsOutOfRange; return;
    case PositionGate::Verdict::TooFast: ++_counters.positionsTooFast; return;
    case PositionGate::Verdict::Impossible: ++_counters.positionsImpossible; return;
    }
}

Aircraft Receiver::shown(ADSBTarget const& target, TimeMs now) const {
    Aircraft aircraft;
    aircraft.report = target.report();
    aircraft.now = now;
    aircraft.messages = target.statisticDfMsgCount();
    auto const& gate = _tracked[target.trackId()].gate;
    auto const& shown = gate.shown();
    aircraft.report->setPosition(shown ? shown->place.latitude : 0, shown ? shown->place.longitude : 0);
    aircraft.report->setPositionLastUpdate(shown ? shown->time : 0);
    aircraft.report->setPositionValid(shown.has_value());
    aircraft.positionsRefused = gate.refused();
    return aircraft;
}

std::vector<Aircraft> Receiver::aircraft(TimeMs now) const {
    std::vector<Aircraft> all;
    auto const targets = _tracker.allTargets();
    all.reserve(targets.size());
    for (auto const& target : targets) all.push_back(shown(*target, now));
    return all;
}

} // namespace quorvel::host
