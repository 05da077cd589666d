// SPDX-License-Identifier: MIT
#include "airspace/sky/standard_track.h"

#include "airspace/sky/track_update.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvel::airspace {

namespace {

constexpr double kPlaceUnits = 2147483648.0 / 180.0; // per degree

std::int32_t packedDegrees(double degrees) {
    return static_cast<std::int32_t>(std::clamp(std::round(degrees * kPlaceUnits), -2147483648.0, 2147483647.0));
}

constexpr TimeMs kLongestTrackTime = TimeMs{1} << 31; // 24 days
constexpr TimeMs kAfterRebase = TimeMs{1} << 30;      // what is left of them

} // namespace

TrackKey TrackKey::of(MessageHeader const& header) {
    if (header.addressKind == AddressKind::None || header.addressKind == AddressKind::Reserved) return {};
    return of(header.address, header.addressKind);
}

PackedPlace PackedPlace::of(Place const& place) {
    return {packedDegrees(place.latitude), packedDegrees(place.longitude)};
}

Place PackedPlace::place() const { return {latitude / kPlaceUnits, longitude / kPlaceUnits}; }

TrackOutcome StandardTrack::take(Reply const& reply, TimeMs time, SkyOptions const& options) {
    if (time > _base && time - _base >= kLongestTrackTime) rebase(time);
    auto const now = trackTimeOf(time);
    _heard = std::max(_heard, now);
    ++_messages;
    TrackOutcome outcome;
    TrackUpdate update(*this, reply, time, options, outcome);
    std::visit(update, reply.message);
    return outcome;
}

// Rare: once in 12 days of one aircraft. Times from before the new base become the first, or never.
void StandardTrack::rebase(TimeMs time) {
    auto const step = time - _base - kAfterRebase;
    _base += step;
    auto const moved = static_cast<TrackTime>(std::min<TimeMs>(step, std::numeric_limits<TrackTime>::max()));
    visitPackedItems(_items, [moved](auto& item) { item.rebase(moved); });
    for (auto* each : {&_heard, &_squittered}) *each = *each > moved ? *each - moved : 0;
    _callsign.rebase(moved);
    _squawk.rebase(moved);
    _isOnGround.rebase(moved);
}

KnownState StandardTrack::known(TrackTime now) const {
    constexpr TrackTime moving = 20'000;
    constexpr TrackTime selected = 120'000;
    auto const& rate =
        _items.barometricRateFtMin.isFresh(now, moving) ? _items.barometricRateFtMin : _items.geometricRateFtMin;
    auto const& callsign = _items.callsign;
    auto const& capability = _items.servedRegisters;
    return {
        .altitudeFt = _items.altitudeFt.fresh(now, moving),
        .groundSpeedKt = _items.groundSpeedKt.fresh(now, moving),
        .trackDegrees = _items.trackDegrees.fresh(now, moving),
        .verticalRateFtMin = rate.fresh(now, moving),
        .headingDegrees = _items.magneticHeadingDegrees.fresh(now, moving),
        .indicatedAirspeedKt = _items.indicatedAirspeedKt.fresh(now, moving),
        .trueAirspeedKt = _items.trueAirspeedKt.fresh(now, moving),
        .mach = _items.mach.fresh(now, moving),
        .selectedAltitudeFt = _items.controlPanelAltitudeFt.fresh(now, selected),
        .pressureSettingHpa = _items.pressureSettingHpa.fresh(now, selected),
        .callsign = callsign.isThere() ? std::optional(Callsign{callsign.value}) : std::nullopt,
        .capability = capability.isThere() ? std::optional(CommonUsageCapability{capability.value}) : std::nullopt,
    };
}

} // namespace quorvel::airspace
