// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include "adsb/message_class.h"
#include "core/exact_class.h"
#include "core/log_if_shown.h"
#include "track/adsb_tracker_impl.h"

#include <cstdint>
#include <cstdlib>

namespace quorvel::modes {

// The tracker's handlers of extended squitters and of the ADS-B messages in them.

namespace {

constexpr long long kPairingWindowMs = 10'000;
constexpr unsigned int kVersion0ConfirmCount = 20; // extended squitters without a status message

// The milliseconds between two times, measured on their low 32 bits: times that differ by a multiple of 2^32
// count as equal. That is required, even where it pairs a frame with a slot that was never filled.
long long distance32(unsigned long long a, unsigned long long b) {
    return std::llabs(static_cast<long long>(static_cast<std::int32_t>(static_cast<std::uint32_t>(a - b))));
}

// Aircraft of version 0 send no operational status. One that has sent enough squitters and no status message
// of any kind is taken for one of them, until it does send a status message.
void inferVersion0(ADSBTarget& target, unsigned long long time) {
    if (target.mopsVersion() != MOPS_V0) return;
    bool const status = target.statisticADSBMsgCount(ADSBMessage::AC_STATUS) != 0 ||
                        target.statisticADSBMsgCount(ADSBMessage::TG_STATUS) != 0;
    bool const operational = target.statisticADSBMsgCount(ADSBMessage::OP_STATUS) != 0;
    if (target.mopsVersionConfirmed()) {
        if (status) target.setMOPSVersionAssumed(time);
    } else if (target.statisticDfMsgCount(DFMessage::DF17) >= kVersion0ConfirmCount && !status && !operational) {
        target.setMOPSVersionConfirmed(time);
        logIfShown(Log::Debug, kTrackerModule, "Track #%u MOPS version 0 confirmed.", target.trackId());
    }
}

// What only one version's messages carry.

void updateOfVersion(ADSBTarget& target, ADSBAirbornePositionMessageV2 const& message) {
    target.setNICSupplementB(message.nicSupplementB(), message.timeStamp());
}

void updateOfVersion(ADSBTarget& target, ADSBAirborneVelocityMessageV0 const& message) {
    target.setNUCr(message.nucr(), message.timeStamp());
}

// The same of a message whose class is not known, if the target is of the version that the class is for.
template <class Message, class From>
void updateIfOfVersion(MOPSVersion version, ADSBTarget& target, From const& message) {
    if (target.mopsVersion() != version) return;
    if (auto const* known = asClass<Message>(message)) updateOfVersion(target, *known);
}

} // namespace

std::shared_ptr<ADSBTarget> ADSBTracker::Impl::track(DF17Message const& reply) {
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

// The payload is decoded on the spot, by the classes and rules of the ADS-B decoder: nobody else sees the message.
// Without a message the reply is not counted.
void ADSBTracker::Impl::trackPayload(ADSBTarget& target, DF17Message const& reply) {
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

MOPSVersion ADSBTracker::Impl::versionFromDatabase(unsigned int icaoAddr) const {
    auto const aircraft = aircraftDb.findAircraft(icaoAddr);
    return aircraft ? aircraft->mopsVersion() : MOPS_UNKNOWN;
}

void ADSBTracker::Impl::confirmVersionFromDatabase(ADSBTarget& target, unsigned long long time) const {
    auto const version = versionFromDatabase(target.icaoAddr());
    if (version == MOPS_UNKNOWN) return;
    target.setMOPSVersion(version, time);
    target.setMOPSVersionConfirmed(time);
    logIfShown(Log::Debug, kTrackerModule, "Track #%u confirms MOPS version %u from aircraft DB.", target.trackId(),
        static_cast<unsigned int>(version));
}

// Messages of all other types are only counted.
void ADSBTracker::Impl::update(ADSBTarget&, ADSBMessage const&) {}

void ADSBTracker::Impl::update(ADSBTarget& target, ADSBIdentityMessage const& message) {
    target.setEmitterCategory(message.emitterCategory(), message.timeStamp());
    target.setCallsign(message.callsign(), message.timeStamp());
}

void ADSBTracker::Impl::update(ADSBTarget& target, ADSBAirbornePositionMessage const& message) {
    auto const time = message.timeStamp();
    target.setGroundStatus(ADSBTarget::AIRBORNE, time);
    updateAltitude(target, message.altitude(), time);
    storeCPRFrame(target, message);
    updateIfOfVersion<ADSBAirbornePositionMessageV2>(MOPS_V2, target, message);
    target.updateQualityIndicators(message.typeCode(), time);
}

void ADSBTracker::Impl::storeCPRFrame(ADSBTarget& target, ADSBAirbornePositionMessage const& message) {
    auto& slot = message.cprFormat() == 1 ? target._evenFrame : target._oddFrame;
    slot = {message.cprLatitude(), message.cprLongitude(), message.timeStamp()};
    if (distance32(target._oddFrame.time, target._evenFrame.time) <= kPairingWindowMs) {
        target.decodeCPRPosition();
    }
}

void ADSBTracker::Impl::update(ADSBTarget& target, ADSBAirborneVelocityMessage const& message) {
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
    updateIfOfVersion<ADSBAirborneVelocityMessageV0>(MOPS_V0, target, message);
}

void ADSBTracker::Impl::update(ADSBTarget& target, ADSBAircraftOperationalStatusMessage const& message) {
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

void ADSBTracker::procADSBIdentificationMsg(
    std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBIdentityMessage> const& message) {
    if (target && message) _impl->update(*target, *message);
}

void ADSBTracker::procADSBAirbornePositionMsg(
    std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirbornePositionMessage> const& message) {
    if (target && message) _impl->update(*target, *message);
}

void ADSBTracker::procADSBAirborneVelocityMsg(
    std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirborneVelocityMessage> const& message) {
    if (target && message) _impl->update(*target, *message);
}

void ADSBTracker::procADSBAircraftOperationalStatusMsg(
    std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAircraftOperationalStatusMessage> const& message) {
    if (target && message) _impl->update(*target, *message);
}

void ADSBTracker::procADSBAirbornePositionMsgV0(
    std::shared_ptr<ADSBTarget> const&, std::shared_ptr<ADSBAirbornePositionMessageV0> const&) {}

void ADSBTracker::procADSBAirbornePositionMsgV1(
    std::shared_ptr<ADSBTarget> const&, std::shared_ptr<ADSBAirbornePositionMessageV1> const&) {}

void ADSBTracker::procADSBAirbornePositionMsgV2(
    std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirbornePositionMessageV2> const& message) {
    if (target && message) updateOfVersion(*target, *message);
}

void ADSBTracker::procADSBAirborneVelocityMsgV0(
    std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirborneVelocityMessageV0> const& message) {
    if (target && message) updateOfVersion(*target, *message);
}

void ADSBTracker::procADSBAirborneVelocityMsgV1(
    std::shared_ptr<ADSBTarget> const&, std::shared_ptr<ADSBAirborneVelocityMessageV1> const&) {}

void ADSBTracker::procADSBAirborneVelocityMsgV2(
    std::shared_ptr<ADSBTarget> const&, std::shared_ptr<ADSBAirborneVelocityMessageV2> const&) {}

std::shared_ptr<ADSBMessage> ADSBTracker::decodeADSBMsg(unsigned int icaoAddr, std::string const& payload) const {
    auto const target = findConstTarget(icaoAddr);
    if (target && target->mopsVersionConfirmed()) return _impl->decoder.decode(target->mopsVersion(), payload);
    auto const version = _impl->versionFromDatabase(icaoAddr);
    return _impl->decoder.decode(version == MOPS_UNKNOWN ? MOPS_V0 : version, payload);
}

} // namespace quorvel::modes
