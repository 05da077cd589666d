// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include "core/exact_class.h"
#include "core/log_if_shown.h"
#include "track/adsb_tracker_impl.h"

#include <iterator>

namespace quorvel::modes {

// The tracker's handlers of Mode S replies; those of extended squitters have a file of their own.

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

bool isTrusted(ModeSMessage const& reply) { return reply.confidence() >= ModeSMessage::MEDIUM; }

} // namespace

// The target of a reply that may make one: stamped, given what `copy` takes from the reply, and counted.
template <class Reply, class Copy>
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::trackTrusted(Reply const& reply, Copy const& copy) {
    if (!isTrusted(reply)) return {};
    auto target = createTarget(reply.icaoAddress());
    if (!target) return {};
    auto const time = reply.timeStamp();
    target->setLastUpdate(time);
    copy(*target, time);
    target->increaseStatistic(reply.downlinkFormat(), time);
    return target;
}

template <class Reply> std::shared_ptr<ADSBTarget> ADSBTracker::Impl::trackAirAir(Reply const& reply) {
    return trackTrusted(reply, [&](ADSBTarget& target, auto time) {
        copyVerticalStatus(target, reply.constFieldVS(), time);
        updateAltitude(target, reply.constFieldAC().altitude(), time);
    });
}

template <class Reply> std::shared_ptr<ADSBTarget> ADSBTracker::Impl::trackAltitude(Reply const& reply) {
    return trackTrusted(reply, [&](ADSBTarget& target, auto time) {
        copyFlightStatus(target, reply.constFieldFS(), time);
        updateAltitude(target, reply.constFieldAC().altitude(), time);
    });
}

template <class Reply> std::shared_ptr<ADSBTarget> ADSBTracker::Impl::trackIdentity(Reply const& reply) {
    return trackTrusted(reply, [&](ADSBTarget& target, auto time) {
        copyFlightStatus(target, reply.constFieldFS(), time);
        target.setSquawk(reply.constFieldID().identity(), time);
    });
}

std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF0Message const& reply) { return trackAirAir(reply); }
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF4Message const& reply) { return trackAltitude(reply); }
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF5Message const& reply) { return trackIdentity(reply); }
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF16Message const& reply) { return trackAirAir(reply); }
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF20Message const& reply) { return trackAltitude(reply); }
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF21Message const& reply) { return trackIdentity(reply); }

// An all-call reply makes no target.
std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF11Message const& reply) {
    if (!isTrusted(reply)) return {};
    auto target = findTarget(reply.icaoAddress());
    if (!target) return {};
    auto const time = reply.timeStamp();
    target->setLastUpdate(time);
    target->_transponderCommCapability.report(reply.constFieldCA().capability(), time);
    target->increaseStatistic(reply.downlinkFormat(), time);
    return target;
}

// A reply that is not of the class of its format is ignored.
template <class Reply> std::shared_ptr<ADSBTarget> ADSBTracker::Impl::trackAs(DFMessage const& reply) {
    auto const* known = asClass<Reply>(reply);
    return known ? track(*known) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DFMessage const& reply) {
    switch (reply.downlinkFormat()) {
    case DFMessage::DF0: return trackAs<DF0Message>(reply);
    case DFMessage::DF4: return trackAs<DF4Message>(reply);
    case DFMessage::DF5: return trackAs<DF5Message>(reply);
    case DFMessage::DF11: return trackAs<DF11Message>(reply);
    case DFMessage::DF16: return trackAs<DF16Message>(reply);
    case DFMessage::DF17: return trackAs<DF17Message>(reply);
    case DFMessage::DF20: return trackAs<DF20Message>(reply);
    case DFMessage::DF21: return trackAs<DF21Message>(reply);
    default:
        logIfShown(
            Log::Warning, kTrackerModule, "Unsupported %s message detected.", reply.downlinkFormatName().c_str());
        return {};
    }
}

std::shared_ptr<ADSBTarget> ADSBTracker::procModeSMsg(std::shared_ptr<ModeSMessage> const& message) {
    if (!message || message->modeSMsgType() != ModeSMessage::DOWNLINK) return {};
    auto const* reply = asBaseOf<DFMessage, DF17Message, DF11Message, DF4Message, DF5Message, DF20Message, DF21Message,
        DF0Message, DF16Message>(*message);
    return reply ? _impl->track(*reply) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDFMsg(std::shared_ptr<DFMessage> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF0Msg(std::shared_ptr<DF0Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF4Msg(std::shared_ptr<DF4Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF5Msg(std::shared_ptr<DF5Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF11Msg(std::shared_ptr<DF11Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF16Msg(std::shared_ptr<DF16Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF17Msg(std::shared_ptr<DF17Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF20Msg(std::shared_ptr<DF20Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

std::shared_ptr<ADSBTarget> ADSBTracker::procDF21Msg(std::shared_ptr<DF21Message> const& message) {
    return message ? _impl->track(*message) : nullptr;
}

} // namespace quorvel::modes
