// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/log.h>

#include "track/tracker_module.h"

#include <iterator>

namespace quorvel::modes {

// The tracker's handlers of Mode S replies other than extended squitters.

namespace {

// What a flight status says (ICAO Annex 10 Vol. IV, 3.1.2.6.5.1). Codes from 6 on say nothing.
struct FlightStatus {
    ADSBTarget::GroundStatus ground;
    bool spi;
    bool alert;
};

constexpr FlightStatus kFlightStatus[] = {
    {ADSBTarget::AIRBORNE, false, false},  // 0
    {ADSBTarget::ON_GROUND, false, false}, // 1
    {ADSBTarget::AIRBORNE, false, true},   // 2
    {ADSBTarget::ON_GROUND, false, true},  // 3
    {ADSBTarget::UNKNOWN, true, true},     // 4
    {ADSBTarget::UNKNOWN, true, false},    // 5
};

void copyFlightStatus(ADSBTarget& target, ModeSMessageFieldFS const& field, unsigned long long time) {
    if (field.flightStatus() >= std::size(kFlightStatus)) return;
    auto const& status = kFlightStatus[field.flightStatus()];
    target.setGroundStatus(status.ground, time);
    target.setSpi(status.spi, time);
    target.setAlert(status.alert, time);
}

void copyVerticalStatus(ADSBTarget& target, ModeSMessageFieldVS const& field, unsigned long long time) {
    target.setGroundStatus(field.verticalStatus() == 1 ? ADSBTarget::ON_GROUND : ADSBTarget::AIRBORNE, time);
}

template <class Reply> bool isTrusted(std::shared_ptr<Reply> const& reply) {
    return reply && reply->confidence() >= ModeSMessage::MEDIUM;
}

// The target of a reply that may make one: stamped, given what `copy` takes from the reply, and counted.
template <class Reply, class Copy>
std::shared_ptr<ADSBTarget> updated(ADSBTracker& tracker, std::shared_ptr<Reply> const& reply, Copy copy) {
    if (!isTrusted(reply)) return {};
    auto target = tracker.createTarget(reply->icaoAddress());
    if (!target) return {};
    auto const time = reply->timeStamp();
    target->setLastUpdate(time);
    copy(target, time);
    target->increaseStatistic(reply->downlinkFormat(), time);
    return target;
}

template <class Reply>
std::shared_ptr<ADSBTarget> procAirAir(ADSBTracker& tracker, std::shared_ptr<Reply> const& reply) {
    return updated(tracker, reply, [&](auto const& target, auto time) {
        copyVerticalStatus(*target, reply->constFieldVS(), time);
        tracker.updateTargetAltituteBaro(target, reply->constFieldAC().altitude(), time);
    });
}

template <class Reply>
std::shared_ptr<ADSBTarget> procAltitude(ADSBTracker& tracker, std::shared_ptr<Reply> const& reply) {
    return updated(tracker, reply, [&](auto const& target, auto time) {
        copyFlightStatus(*target, reply->constFieldFS(), time);
        tracker.updateTargetAltituteBaro(target, reply->constFieldAC().altitude(), time);
    });
}

template <class Reply>
std::shared_ptr<ADSBTarget> procIdentity(ADSBTracker& tracker, std::shared_ptr<Reply> const& reply) {
    return updated(tracker, reply, [&](auto const& target, auto time) {
        copyFlightStatus(*target, reply->constFieldFS(), time);
        target->setSquawk(reply->constFieldID().identity(), time);
    });
}

// The message as the class of its format; empty, and thus ignored, when it is of another class.
template <class Reply> std::shared_ptr<Reply> as(std::shared_ptr<DFMessage> const& message) {
    return std::dynamic_pointer_cast<Reply>(message);
}

} // namespace

std::shared_ptr<ADSBTarget> ADSBTracker::procModeSMsg(std::shared_ptr<ModeSMessage> const& message) {
    if (!message || message->modeSMsgType() != ModeSMessage::DOWNLINK) return {};
    return procDFMsg(std::dynamic_pointer_cast<DFMessage>(message));
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDFMsg(std::shared_ptr<DFMessage> const& message) {
    if (!message) return {};
    switch (message->downlinkFormat()) {
    case DFMessage::DF0: return procDF0Msg(as<DF0Message>(message));
    case DFMessage::DF4: return procDF4Msg(as<DF4Message>(message));
    case DFMessage::DF5: return procDF5Msg(as<DF5Message>(message));
    case DFMessage::DF11: return procDF11Msg(as<DF11Message>(message));
    case DFMessage::DF16: return procDF16Msg(as<DF16Message>(message));
    case DFMessage::DF17: return procDF17Msg(as<DF17Message>(message));
    case DFMessage::DF20: return procDF20Msg(as<DF20Message>(message));
    case DFMessage::DF21: return procDF21Msg(as<DF21Message>(message));
    default:
        Log::log(Log::Warning, kTrackerModule, "Unsupported %s message detected.",
                 message->downlinkFormatName().c_str());
        return {};
    }
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF0Msg(std::shared_ptr<DF0Message> const& message) {
    return procAirAir(*this, message);
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF16Msg(std::shared_ptr<DF16Message> const& message) {
    return procAirAir(*this, message);
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF4Msg(std::shared_ptr<DF4Message> const& message) {
    return procAltitude(*this, message);
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF20Msg(std::shared_ptr<DF20Message> const& message) {
    return procAltitude(*this, message);
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF5Msg(std::shared_ptr<DF5Message> const& message) {
    return procIdentity(*this, message);
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF21Msg(std::shared_ptr<DF21Message> const& message) {
    return procIdentity(*this, message);
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF11Msg(std::shared_ptr<DF11Message> const& message) {
    if (!isTrusted(message)) return {};
    auto target = findTarget(message->icaoAddress());
    if (!target) return {};
    auto const time = message->timeStamp();
    target->setLastUpdate(time);
    target->_transponderCommCapability.report(message->constFieldCA().capability(), time);
    target->increaseStatistic(message->downlinkFormat(), time);
    return target;
}

} // namespace quorvel::modes
