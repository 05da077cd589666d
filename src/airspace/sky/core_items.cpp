// SPDX-License-Identifier: MIT
#include "airspace/sky/core_items.h"

namespace quorvel::airspace {

namespace {

using Report = modes::ADSBTargetReport;

template <class T, class Value>
void fill(Item<T>& item, bool valid, Value const& value, TimeMs updated, TimeMs changed = 0) {
    item.value = valid ? std::optional<T>(value) : std::nullopt;
    item.source = updated != 0 ? Source::AdsB : Source::None;
    item.updated = updated;
    item.changed = changed;
}

// The tracker takes these from replies to interrogations alone.
template <class T> void markAsModeS(Item<T>& item) {
    if (item.updated != 0) item.source = Source::ModeS;
}

void copyIdentity(Report const& r, Aircraft& a) {
    fill(a.callsign, r.callsignValid(), r.callsign(), r.callsignLastUpdate(), r.callsignLastChange());
    fill(a.emitterCategory, r.emitterCategoryValid(), EmitterCategory{0, r.emitterCategory()},
        r.emitterCategoryLastUpdate(), r.emitterCategoryLastChange());
    fill(a.squawk, r.squawkValid(), Squawk{static_cast<std::uint16_t>(r.squawk())}, r.squawkLastUpdate(),
        r.squawkLastChange());
    markAsModeS(a.squawk);
}

void copyMotion(Report const& r, Aircraft& a) {
    fill(a.position, r.positionValid(), Place{r.latitude(), r.longitude()}, r.positionLastUpdate());
    fill(a.signalAmplitude, r.signalAmplitudeValid(), r.signalAmplitude(), r.signalAmplitudeLastUpdate());
    fill(a.altitudeBaro, r.altitudeBaroValid(), r.altitudeBaro(), r.altitudeBaroLastUpdate());
    fill(a.groundSpeed, r.groundSpeedValid(), r.groundSpeed(), r.groundSpeedLastUpdate());
    fill(a.track, r.headingValid(), r.heading(), r.headingLastUpdate());
    fill(a.verticalRateBaro, r.verticalRateBaroValid(), r.verticalRateBaro(), r.verticalRateBaroLastUpdate());
}

void copyStatus(Report const& r, Aircraft& a) {
    fill(a.groundStatus, r.groundStatusValid(), r.groundStatus(), r.groundStatusLastUpdate(),
        r.groundStatusLastChange());
    fill(a.spiStatus, r.spiStatusValid(), r.spiStatus(), r.spiStatusLastUpdate(), r.spiStatusLastChange());
    fill(a.alertStatus, r.alertStatusValid(), r.alertStatus(), r.alertStatusLastUpdate(), r.alertStatusLastChange());
    fill(a.mopsVersion, r.mopsVersion() != modes::MOPS_UNKNOWN, r.mopsVersion(), r.mopsVersionLastUpdate(),
        r.mopsVersionLastChange());
    a.mopsVersionConfirmed = r.mopsVersionConfirmed();
    for (auto* item : {&a.spiStatus, &a.alertStatus}) markAsModeS(*item); // no squitter brings them
}

void copyQuality(Report const& r, Aircraft& a) {
    fill(a.nucp, r.nucpValid(), r.nucp(), r.nucpLastUpdate(), r.nucpLastChange());
    fill(a.nucr, r.nucrValid(), r.nucr(), r.nucrLastUpdate(), r.nucrLastChange());
    fill(a.nic, r.nicValid(), r.nic(), r.nicLastUpdate(), r.nicLastChange());
    fill(a.nicSuppA, r.nicSuppAValid(), r.nicSuppA(), r.nicSuppALastUpdate());
    fill(a.nicSuppB, r.nicSuppBValid(), r.nicSuppB(), r.nicSuppBLastUpdate());
    fill(a.nicSuppC, r.nicSuppCValid(), r.nicSuppC(), r.nicSuppCLastUpdate());
    fill(a.pic, r.picValid(), r.pic(), r.picLastUpdate(), r.picLastChange());
    fill(a.nacp, r.nacpValid(), r.nacp(), r.nacpLastUpdate(), r.nacpLastChange());
    fill(a.sil, r.silValid(), r.sil(), r.silLastUpdate(), r.silLastChange());
}

} // namespace

void copyItems(Report const& report, Aircraft& aircraft) {
    aircraft.address = report.icaoAddress();
    aircraft.trackNumber = static_cast<std::uint16_t>(report.trackId());
    aircraft.heard = report.lastUpdate();
    for (auto* copy : {copyIdentity, copyMotion, copyStatus, copyQuality}) copy(report, aircraft);
}

} // namespace quorvel::airspace
