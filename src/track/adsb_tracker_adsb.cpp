// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/log.h>

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

// The message as another class; empty, and thus ignored, when it is none.
template <class Message, class From> std::shared_ptr<Message> as(std::shared_ptr<From> const& message) {
    return std::dynamic_pointer_cast<Message>(message);
}

} // namespace

std::shared_ptr<ADSBTarget> ADSBTracker::procDF17Msg(std::shared_ptr<DF17Message> const& message) {
    if (!message || message->confidence() != ModeSMessage::HIGH) return {};
    auto target = createTarget(message->icaoAddress());
    if (!target) return {};
    auto const time = message->timeStamp();
    target->setLastUpdate(time);
    target->setSignalAmplitude(message->signalAmplitude(), time);
    if (target->mopsVersionAssumed()) confirmVersionFromDatabase(*target, time);

    auto const adsb = _decoder.decode(target->mopsVersion(), message->constFieldME().data());
    if (!adsb) return target;
    adsb->setTimeStamp(time);
    adsb->setSignalAmplitude(message->signalAmplitude());
    procADSBMsg(target, adsb);
    inferVersion0(*target, time); // with the counts before this reply
    target->increaseStatistic(message->downlinkFormat(), time);
    target->increaseStatistic(adsb->type(), adsb->timeStamp());
    return target;
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

// All other types are only counted.
void ADSBTracker::procADSBMsg(std::shared_ptr<ADSBTarget> const& target,
                              std::shared_ptr<ADSBMessage> const& message) {
    switch (message->type()) {
    case ADSBMessage::ACID: return procADSBIdentificationMsg(target, as<ADSBIdentityMessage>(message));
    case ADSBMessage::POS_AIR:
        return procADSBAirbornePositionMsg(target, as<ADSBAirbornePositionMessage>(message));
    case ADSBMessage::AIR_VEL:
        return procADSBAirborneVelocityMsg(target, as<ADSBAirborneVelocityMessage>(message));
    case ADSBMessage::OP_STATUS:
        return procADSBAircraftOperationalStatusMsg(target,
                                                    as<ADSBAircraftOperationalStatusMessage>(message));
    default: return;
    }
}

void ADSBTracker::procADSBIdentificationMsg(std::shared_ptr<ADSBTarget> const& target,
                                            std::shared_ptr<ADSBIdentityMessage> const& message) {
    if (!target || !message) return;
    target->setEmitterCategory(message->emitterCategory(), message->timeStamp());
    target->setCallsign(message->callsign(), message->timeStamp());
}

void ADSBTracker::procADSBAirbornePositionMsg(std::shared_ptr<ADSBTarget> const& target,
                                              std::shared_ptr<ADSBAirbornePositionMessage> const& message) {
    if (!target || !message) return;
    auto const time = message->timeStamp();
    target->setGroundStatus(ADSBTarget::AIRBORNE, time);
    updateTargetAltituteBaro(target, message->altitude(), time);
    storeCPRFrame(*target, *message);
    switch (target->mopsVersion()) {
    case MOPS_V0: procADSBAirbornePositionMsgV0(target, as<ADSBAirbornePositionMessageV0>(message)); break;
    case MOPS_V1: procADSBAirbornePositionMsgV1(target, as<ADSBAirbornePositionMessageV1>(message)); break;
    case MOPS_V2: procADSBAirbornePositionMsgV2(target, as<ADSBAirbornePositionMessageV2>(message)); break;
    default: break;
    }
    target->updateQualityIndicators(message->typeCode(), time);
}

void ADSBTracker::storeCPRFrame(ADSBTarget& target, ADSBAirbornePositionMessage const& message) const {
    auto& slot = message.cprFormat() == 1 ? target._evenFrame : target._oddFrame;
    slot = {message.cprLatitude(), message.cprLongitude(), message.timeStamp()};
    if (distance32(target._oddFrame.time, target._evenFrame.time) <= kPairingWindowMs) {
        target.decodeCPRPosition();
    }
}

void ADSBTracker::procADSBAirbornePositionMsgV0(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirbornePositionMessageV0> const&) {}

void ADSBTracker::procADSBAirbornePositionMsgV1(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirbornePositionMessageV1> const&) {}

void ADSBTracker::procADSBAirbornePositionMsgV2(
    std::shared_ptr<ADSBTarget> const& target,
    std::shared_ptr<ADSBAirbornePositionMessageV2> const& message) {
    if (!target || !message) return;
    target->setNICSupplementB(message->nicSupplementB(), message->timeStamp());
}

void ADSBTracker::procADSBAirborneVelocityMsg(std::shared_ptr<ADSBTarget> const& target,
                                              std::shared_ptr<ADSBAirborneVelocityMessage> const& message) {
    if (!target || !message) return;
    auto const time = message->timeStamp();
    auto const kind = message->velocityType();
    if (kind == ADSBAirborneVelocityMessage::GROUND_SPEED ||
        kind == ADSBAirborneVelocityMessage::GROUND_SPEED_SUPER_SONIC) {
        target->setGroundSpeed(message->groundSpeed(), time);
        target->setHeading(message->heading(), time);
    }
    if (message->verticalRateSource() == ADSBAirborneVelocityMessage::BARO) {
        target->setVerticalRateBaro(message->verticalRate(), time);
    }
    switch (target->mopsVersion()) {
    case MOPS_V0: procADSBAirborneVelocityMsgV0(target, as<ADSBAirborneVelocityMessageV0>(message)); break;
    case MOPS_V1: procADSBAirborneVelocityMsgV1(target, as<ADSBAirborneVelocityMessageV1>(message)); break;
    case MOPS_V2: procADSBAirborneVelocityMsgV2(target, as<ADSBAirborneVelocityMessageV2>(message)); break;
    default: break;
    }
}

void ADSBTracker::procADSBAirborneVelocityMsgV0(
    std::shared_ptr<ADSBTarget> const& target,
    std::shared_ptr<ADSBAirborneVelocityMessageV0> const& message) {
    if (!target || !message) return;
    target->setNUCr(message->nucr(), message->timeStamp());
}

void ADSBTracker::procADSBAirborneVelocityMsgV1(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirborneVelocityMessageV1> const&) {}

void ADSBTracker::procADSBAirborneVelocityMsgV2(std::shared_ptr<ADSBTarget> const&,
                                                std::shared_ptr<ADSBAirborneVelocityMessageV2> const&) {}

void ADSBTracker::procADSBAircraftOperationalStatusMsg(
    std::shared_ptr<ADSBTarget> const& target,
    std::shared_ptr<ADSBAircraftOperationalStatusMessage> const& message) {
    if (!target || !message) return;
    auto const time = message->timeStamp();
    if (message->version() ==
        MOPS_UNKNOWN) { // newer than those known: taken for the newest known, without trust
        target->setMOPSVersion(MOPS_V2, time);
        target->setMOPSVersionAssumed(time);
    } else {
        target->setMOPSVersion(message->version(), time);
        target->setMOPSVersionConfirmed(time);
    }
    target->setNICSupplementA(message->nicSupplementA(), time);
}

std::shared_ptr<ADSBMessage> ADSBTracker::decodeADSBMsg(unsigned int icaoAddr,
                                                        std::string const& payload) const {
    auto const target = findConstTarget(icaoAddr);
    if (target && target->mopsVersionConfirmed()) return _decoder.decode(target->mopsVersion(), payload);
    auto const version = versionFromDatabase(icaoAddr);
    return _decoder.decode(version == MOPS_UNKNOWN ? MOPS_V0 : version, payload);
}

} // namespace quorvel::modes
