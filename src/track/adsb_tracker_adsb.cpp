// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/log.h>

#include "adsb/message_class.h"
#include "core/exact_class.h"
#include "track/tracker_module.h"

#include <cstdint>
#include <cstdlib>

namespace quorvel::modes {

// The tracker's handlers of extended squitters and of the ADS-B messages in them.

namespace {

constexpr long long kPairingWindowMs = 10'000;

// The milliseconds between two times, measured on their low 32 bits: times that differ by a multiple of 2^32
// are as good as equal. That is required, also where it pairs a frame with a slot that was never filled.
long long distance32(unsigned long long a, unsigned long long b) {
    return std::llabs(static_cast<long long>(static_cast<std::int32_t>(static_cast<std::uint32_t>(a - b))));
}

} // namespace

std::shared_ptr<ADSBTarget> ADSBTracker::track(DF17Message const& reply) {
    if (reply.confidence() != ModeSMessage::HIGH) return {};
    auto target = createTarget(reply.icaoAddress());
    if (!target) return {};
    auto const time = reply.timeStamp();
    target->setLastUpdate(time);
    target->setSignalAmplitude(reply.signalAmplitude(), time);
    if (target->mopsVersionAssumed()) confirmVersionFromDatabase(*target, time);
    trackPayload(*target, reply);
    return target;
}

// The payload is decoded on the spot, by the classes and rules of the ADS-B decoder: nobody else gets to see
// the message. Without a message the reply is not counted.
void ADSBTracker::trackPayload(ADSBTarget& target, DF17Message const& reply) {
    auto const& payload = reply.constFieldME().data();
    auto const type = decodableType(payload);
    withMessageClass(type, target.mopsVersion(), [this, &target, &reply, &payload]<class Message>() {
        Message message;
        if (!message.decode(payload)) return false;
        auto const time = reply.timeStamp();
        message.setTimeStamp(time);
        message.setSignalAmplitude(reply.signalAmplitude());
        update(target, message);
        inferVersion0(target, time); // with the counts before this reply
        target.increaseStatistic(reply.downlinkFormat(), time);
        target.increaseStatistic(message.type(), time);
        return true;
    });
}

MOPSVersion ADSBTracker::versionFromDatabase(unsigned int icaoAddr) const {
    auto const aircraft = _aircraftDb.findAircraft(icaoAddr);
    return aircraft ? aircraft->mopsVersion() : MOPS_UNKNOWN;
}

void ADSBTracker::confirmVersionFromDatabase(ADSBTarget& target, unsigned long long time) const {
    auto const version = versionFromDatabase(target.icaoAddr());
    if (version == MOPS_UNKNOWN) return;
    target.setMOPSVersion(version, time);
    target.setMOPSVersionConfirmed(time);
    Log::log(Log::Debug, kTrackerModule, "Track #%u confirms MOPS version %u from aircraft DB.",
             target.trackId(), static_cast<unsigned int>(version));
}

// Aircraft of version 0 send no operational status. One that has sent enough squitters and no status message
// of any kind is taken for one of them, until it does send a status message.
void ADSBTracker::inferVersion0(ADSBTarget& target, unsigned long long time) const {
    if (target.mopsVersion() != MOPS_V0) return;
    bool const status = target.statisticADSBMsgCount(ADSBMessage::AC_STATUS) != 0 ||
                        target.statisticADSBMsgCount(ADSBMessage::TG_STATUS) != 0;
    bool const operational = target.statisticADSBMsgCount(ADSBMessage::OP_STATUS) != 0;
    if (target.mopsVersionConfirmed()) {
        if (status) target.setMOPSVersionAssumed(time);
    } else if (target.statisticDfMsgCount(DFMessage::DF17) >= _version0ConfirmCount && !status &&
               !operational) {
        target.setMOPSVersionConfirmed(time);
        Log::log(Log::Debug, kTrackerModule, "Track #%u MOPS version 0 confirmed.", target.trackId());
    }
}

// Messages of all other types are only counted.
void ADSBTracker::update(ADSBTarget&, ADSBMessage const&) {}

void ADSBTracker::update(ADSBTarget& target, ADSBIdentityMessage const& message) {
    target.setEmitterCategory(message.emitterCategory(), message.timeStamp());
    target.setCallsign(message.callsign(), message.timeStamp());
}

void ADSBTracker::update(ADSBTarget& target, ADSBAirbornePositionMessage const& message) {
    auto const time = message.timeStamp();
    target.setGroundStatus(ADSBTarget::AIRBORNE, time);
    updateAltitude(target, message.altitude(), time);
    storeCPRFrame(target, message);
    if (target.mopsVersion() == MOPS_V2) {
        auto const* version2 = asClass<ADSBAirbornePositionMessageV2>(message);
        if (version2) target.setNICSupplementB(version2->nicSupplementB(), time);
    }
    target.updateQualityIndicators(message.typeCode(), time);
}

void ADSBTracker::storeCPRFrame(ADSBTarget& target, ADSBAirbornePositionMessage const& message) const {
    auto& slot = message.cprFormat() == 1 ? target._evenFrame : target._oddFrame;
    slot = {message.cprLatitude(), message.cprLongitude(), message.timeStamp()};
    if (distance32(target._oddFrame.time, target._evenFrame.time) <= kPairingWindowMs) {
        target.decodeCPRPosition();
    }
}

void ADSBTracker::update(ADSBTarget& target, ADSBAirborneVelocityMessage const& message) {
    auto const time = message.timeStamp();
    auto const kind = message.velocityType();
    if (kind == ADSBAirborneVelocityMessage::GROUND_SPEED ||
        kind == ADSBAirborneVelocityMessage::GROUND_SPEED_SUPER_SONIC) {
        target.setGroundSpeed(message.groundSpeed(), time);
        target.setHeading(message.heading(), time);
    }
    if (message.verticalRateSource() == ADSBAirborneVelocityMessage::BARO) {
        target.setVerticalRateBaro(message.verticalRate(), time);
    }
    if (target.mopsVersion() == MOPS_V0) {
        auto const* version0 = asClass<ADSBAirborneVelocityMessageV0>(message);
        if (version0) target.setNUCr(version0->nucr(), time);
    }
}

void ADSBTracker::update(ADSBTarget& target, ADSBAircraftOperationalStatusMessage const& message) {
    auto const time = message.timeStamp();
    if (message.version() == MOPS_UNKNOWN) {
        // newer than those known: taken for the newest known, without trust
        target.setMOPSVersion(MOPS_V2, time);
        target.setMOPSVersionAssumed(time);
    } else {
        target.setMOPSVersion(message.version(), time);
        target.setMOPSVersionConfirmed(time);
    }
    target.setNICSupplementA(message.nicSupplementA(), time);
}

void ADSBTracker::procADSBIdentificationMsg(std::shared_ptr<ADSBTarget> const& target,
                                            std::shared_ptr<ADSBIdentityMessage> const& message) {
    if (target && message) update(*target, *message);
}

void ADSBTracker::procADSBAirbornePositionMsg(std::shared_ptr<ADSBTarget> const& target,
                                              std::shared_ptr<ADSBAirbornePositionMessage> const& message) {
    if (target && message) update(*target, *message);
}

void ADSBTracker::procADSBAirborneVelocityMsg(std::shared_ptr<ADSBTarget> const& target,
                                              std::shared_ptr<ADSBAirborneVelocityMessage> const& message) {
    if (target && message) update(*target, *message);
}

void ADSBTracker::procADSBAircraftOperationalStatusMsg(
    std::shared_ptr<ADSBTarget> const& target,
    std::shared_ptr<ADSBAircraftOperationalStatusMessage> const& message) {
    if (target && message) update(*target, *message);
}

// What each version adds to a position or a velocity. The handlers above do the same with the message at
// hand.

void ADSBTracker::procADSBAirbornePositionMsgV0(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirbornePositionMessageV0> const&) {}

void ADSBTracker::procADSBAirbornePositionMsgV1(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirbornePositionMessageV1> const&) {}

void ADSBTracker::procADSBAirbornePositionMsgV2(
    std::shared_ptr<ADSBTarget> const& target,
    std::shared_ptr<ADSBAirbornePositionMessageV2> const& message) {
    if (target && message) target->setNICSupplementB(message->nicSupplementB(), message->timeStamp());
}

void ADSBTracker::procADSBAirborneVelocityMsgV0(
    std::shared_ptr<ADSBTarget> const& target,
    std::shared_ptr<ADSBAirborneVelocityMessageV0> const& message) {
    if (target && message) target->setNUCr(message->nucr(), message->timeStamp());
}

void ADSBTracker::procADSBAirborneVelocityMsgV1(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirborneVelocityMessageV1> const&) {}

void ADSBTracker::procADSBAirborneVelocityMsgV2(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirborneVelocityMessageV2> const&) {}

std::shared_ptr<ADSBMessage> ADSBTracker::decodeADSBMsg(unsigned int icaoAddr,
                                                        std::string const& payload) const {
    auto const target = findConstTarget(icaoAddr);
    if (target && target->mopsVersionConfirmed()) return _decoder.decode(target->mopsVersion(), payload);
    auto const version = versionFromDatabase(icaoAddr);
    return _decoder.decode(version == MOPS_UNKNOWN ? MOPS_V0 : version, payload);
}

} // namespace quorvel::modes
