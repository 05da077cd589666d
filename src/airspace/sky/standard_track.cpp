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
    return {header.address | static_cast<std::uint32_t>(header.addressKind) << 24};
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
    KnownState known;
    auto const copy = [now](auto& to, auto const& item, TrackTime within) {
        if (item.isFresh(now, within)) to = item.value;
    };
    copy(known.altitudeFt, _items.altitudeFt, moving);
    copy(known.groundSpeedKt, _items.groundSpeedKt, moving);
    copy(known.trackDegrees, _items.trackDegrees, moving);
    copy(known.verticalRateFtMin, _items.geometricRateFtMin, moving);
    copy(known.verticalRateFtMin, _items.barometricRateFtMin, moving);
    copy(known.headingDegrees, _items.magneticHeadingDegrees, moving);
    copy(known.indicatedAirspeedKt, _items.indicatedAirspeedKt, moving);
    copy(known.trueAirspeedKt, _items.trueAirspeedKt, moving);
    copy(known.mach, _items.mach, moving);
    copy(known.selectedAltitudeFt, _items.controlPanelAltitudeFt, selected);
    copy(known.pressureSettingHpa, _items.pressureSettingHpa, selected);
    if (_items.callsign.isThere()) known.callsign = Callsign{_items.callsign.value};
    if (_items.servedRegisters.isThere()) known.capability = CommonUsageCapability{_items.servedRegisters.value};
    return known;
}

} // namespace quorvel::airspace
