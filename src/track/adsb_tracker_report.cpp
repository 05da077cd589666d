// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/adsb_target_report.h>

#include "track/adsb_tracker_impl.h"

namespace quorvel::modes {

// Taking over a report that was made elsewhere.

namespace {

void importIdentity(ADSBTarget& target, ADSBTargetReport const& report) {
    if (report.callsignValid()) {
        target.setCallsign(report.callsign(), report.callsignLastUpdate(), report.callsignLastChange());
    }
    if (report.emitterCategoryValid()) {
        target.setEmitterCategory(
            report.emitterCategory(), report.emitterCategoryLastUpdate(), report.emitterCategoryLastChange());
    }
    if (report.squawkValid()) target.setSquawk(report.squawk(), report.squawkLastUpdate());
}

void importMotion(ADSBTarget& target, ADSBTargetReport const& report) {
    if (report.groundSpeedValid()) {
        target.setGroundSpeed(report.groundSpeed(), report.groundSpeedLastUpdate());
    }
    // Deliberate and visible to hosts: the report's own time, not the heading's.
    if (report.headingValid()) target.setHeading(report.heading(), report.lastUpdate());
    if (report.verticalRateBaroValid()) {
        target.setVerticalRateBaro(report.verticalRateBaro(), report.verticalRateBaroLastUpdate());
    }
    if (report.groundStatusValid()) {
        target.setGroundStatus(
            report.groundStatus() ? ADSBTarget::ON_GROUND : ADSBTarget::AIRBORNE, report.groundStatusLastUpdate());
    }
}

} // namespace

std::shared_ptr<ADSBTarget> ADSBTracker::procTargetReport(std::shared_ptr<ADSBTargetReport> const& report) {
    if (!report || !report->valid()) return {};
    auto target = _impl->createTarget(report->icaoAddress());
    if (!target) return {};
    _impl->renumber(*target, report->trackIdValid() ? report->trackId() : 0);
    target->setLastUpdate(report->lastUpdate());
    importIdentity(*target, *report);
    if (report->positionValid()) {
        target->setPosition(report->latitude(), report->longitude(), report->positionLastUpdate());
    }
    if (report->signalAmplitudeValid()) {
        target->setSignalAmplitude(report->signalAmplitude(), report->signalAmplitudeLastUpdate());
    }
    if (report->altitudeBaroValid()) {
        _impl->updateAltitude(*target, report->altitudeBaro(), report->altitudeBaroLastUpdate());
    }
    importMotion(*target, *report);
    return target;
}

} // namespace quorvel::modes
