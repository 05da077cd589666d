// SPDX-License-Identifier: MIT
#include <modes/adsb_target.h>

#include <modes/adsb_target_report.h>

namespace quorvel::modes {

// The snapshot of a target. Setters of the report judge the validity of what they are given; the target's own verdict
// is written after each of them and prevails.

namespace {

void copyIdentity(ADSBTarget const& target, ADSBTargetReport& report) {
    report.setTrackId(target.trackId());
    report.setTrackIdValid(target.trackIdValid());
    report.setLastUpdate(target.lastUpdate());
    report.setIcaoAddress(target.icaoAddr());
    report.setIcaoAddressValid(target.icaoAddrValid());

    auto const callsign = target.callsign();
    report.setCallsign(callsign);
    report.setCallsignValid(!callsign.empty()); // deliberate: not the target's own verdict
    report.setCallsignLastUpdate(target.callsignLastUpdate());
    report.setCallsignLastChange(target.callsignLastChange());

    report.setEmitterCategory(target.emitterCategory());
    report.setEmitterCategoryValid(target.emitterCategoryValid());
    report.setEmitterCategoryLastUpdate(target.emitterCategoryLastUpdate());
    report.setEmitterCategoryLastChange(target.emitterCategoryLastChange());

    report.setSquawk(target.squawk());
    report.setSquawkValid(target.squawkValid());
    report.setSquawkLastUpdate(target.squawkLastUpdate());
    report.setSquawkLastChange(target.squawkLastChange());
}

void copyMotion(ADSBTarget const& target, ADSBTargetReport& report) {
    report.setPosition(target.latitude(), target.longitude());
    report.setPositionValid(target.positionValid());
    report.setPositionLastUpdate(target.positionLastUpdate());

    report.setSignalAmplitude(target.signalAmplitude());
    report.setSignalAmplitudeValid(target.signalAmplitudeValid());
    report.setSignalAmplitudeLastUpdate(target.signalAmplitudeLastUpdate());

    report.setAltitudeBaro(target.altitudeBaro());
    report.setAltitudeBaroValid(target.altitudeBaroValid());
    report.setAltitudeBaroLastUpdate(target.altitudeBaroLastUpdate());

    report.setGroundSpeed(target.groundSpeed());
    report.setGroundSpeedValid(target.groundSpeedValid());
    report.setGroundSpeedLastUpdate(target.groundSpeedLastUpdate());

    report.setHeading(target.heading());
    report.setHeadingValid(target.headingValid());
    report.setHeadingLastUpdate(target.headingLastUpdate());

    report.setVerticalRateBaro(target.verticalRateBaro());
    report.setVerticalRateBaroValid(target.verticalRateBaroValid());
    report.setVerticalRateBaroLastUpdate(target.verticalRateBaroLastUpdate());
}

void copyStatus(ADSBTarget const& target, ADSBTargetReport& report) {
    report.setGroundStatus(target.groundStatus() == ADSBTarget::ON_GROUND);
    report.setGroundStatusValid(target.groundStatusValid());
    report.setGroundStatusLastUpdate(target.groundStatusLastUpdate());
    report.setGroundStatusLastChange(target.groundStatusLastChange());

    report.setSpiStatus(target.spiStatus());
    report.setSpiStatusValid(target.spiStatusValid());
    report.setSpiStatusLastUpdate(target.spiStatusLastUpdate());
    report.setSpiStatusLastChange(target.spiStatusLastChange());

    report.setAlertStatus(target.alertStatus());
    report.setAlertStatusValid(target.alertStatusValid());
    report.setAlertStatusLastUpdate(target.alertStatusLastUpdate());
    report.setAlertStatusLastChange(target.alertStatusLastChange());

    report.setMopsVersion(target.mopsVersion());
    report.setMopsVersionConfirmed(target.mopsVersionConfirmed());
    report.setMopsVersionLastUpdate(target.mopsVersionLastUpdate());
    report.setMopsVersionLastChange(target.mopsVersionLastChange());
}

void copyUncertainty(ADSBTarget const& target, ADSBTargetReport& report) {
    report.setNUCp(target.nucp());
    report.setNUCpValid(target.nucpValid());
    report.setNUCpLastUpdate(target.nucpLastUpdate());
    report.setNUCpLastChange(target.nucpLastChange());

    // Deliberate and visible to hosts: the value of NUCp with the validity and times of NUCr.
    report.setNUCr(target.nucp());
    report.setNUCrValid(target.nucrValid());
    report.setNUCrLastUpdate(target.nucrLastUpdate());
    report.setNUCrLastChange(target.nucrLastChange());
}

void copyIntegrity(ADSBTarget const& target, ADSBTargetReport& report) {
    report.setNIC(target.nic());
    report.setNICValid(target.nicValid());
    report.setNICLastUpdate(target.nicLastUpdate());
    report.setNICLastChange(target.nicLastChange());

    report.setNICSuppA(target.nicSupplementA());
    report.setNICSuppAValid(target.nicSupplementAValid());
    report.setNICSuppALastUpdate(target.nicSuppALastUpdate());
    report.setNICSuppB(target.nicSupplementB());
    report.setNICSuppBValid(target.nicSupplementBValid());
    report.setNICSuppBLastUpdate(target.nicSuppBLastUpdate());
    report.setNICSuppC(target.nicSupplementC());
    report.setNICSuppCValid(target.nicSupplementCValid());
    report.setNICSuppCLastUpdate(target.nicSuppCLastUpdate());

    report.setPIC(target.pic());
    report.setPICValid(target.picValid());
    report.setPICLastUpdate(target.picLastUpdate());
    report.setPICLastChange(target.picLastChange());
}

void copyAccuracy(ADSBTarget const& target, ADSBTargetReport& report) {
    report.setNACp(target.nacp());
    report.setNACpValid(target.nacpValid());
    report.setNACpLastUpdate(target.nacpLastUpdate());
    report.setNACpLastChange(target.nacpLastChange());

    report.setSIL(target.sil());
    report.setSILValid(target.silValid());
    report.setSILLastUpdate(target.silLastUpdate());
    report.setSILLastChange(target.silLastChange());
}

} // namespace

std::shared_ptr<ADSBTargetReport> ADSBTarget::report() const {
    auto report = std::make_shared<ADSBTargetReport>();
    for (auto* copy : {copyIdentity, copyMotion, copyStatus, copyUncertainty, copyIntegrity, copyAccuracy}) {
        copy(*this, *report);
    }
    return report;
}

} // namespace quorvel::modes
