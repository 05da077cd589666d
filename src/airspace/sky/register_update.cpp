// SPDX-License-Identifier: MIT
// Brings registers of Comm-B replies into the items of a track.
#include "airspace/sky/track_update.h"

#include <airspace/comm_b.h>
#include <airspace/register_choice.h>

#include <string_view>
#include <variant>

namespace quorvel::airspace {

void TrackUpdate::commB(std::array<std::uint8_t, 7> const& mb) {
    std::string_view const bytes(reinterpret_cast<char const*>(mb.data()), mb.size());
    auto const choice = chooseRegister(bytes, _track.known(_now));
    _outcome.choice = choice;
    if (choice.isUnsure || !choice.best) return;
    _source = Source::CommB;
    std::visit(*this, readRegister(bytes, *choice.best));
}

void TrackUpdate::operator()(CommonUsageCapability const& content) {
    _items.servedRegisters.offer(content.flags, _source, _now);
}

void TrackUpdate::operator()(AircraftIdentification const& content) { callsignByReply(content.callsign); }

void TrackUpdate::operator()(ActiveAdvisory const& content) { advisory(content.advisory); }

void TrackUpdate::operator()(SelectedIntention const& content) {
    _items.controlPanelAltitudeFt.offer(content.controlPanelAltitudeFt, _source, _now);
    _items.flightManagementAltitudeFt.offer(content.flightManagementAltitudeFt, _source, _now);
    _items.pressureSettingHpa.offer(content.pressureSettingHpa, _source, _now);
    if (!content.modes) return;
    PackedModes modes;
    modes.set(PackedModes::Vnav, content.modes->isVnav);
    modes.set(PackedModes::AltitudeHold, content.modes->isAltitudeHold);
    modes.set(PackedModes::Approach, content.modes->isApproach);
    _items.modes.offer(modes, _source, _now);
}

void TrackUpdate::operator()(RoutineMeteorology const& content) {
    _items.windSpeedKt.offer(content.windSpeedKt, _source, _now);
    _items.windDirectionDegrees.offer(content.windDirectionDegrees, _source, _now);
    _items.temperatureCelsius.offer(content.staticAirTemperatureCelsius, _source, _now);
}

void TrackUpdate::operator()(HazardMeteorology const& content) {
    _items.temperatureCelsius.offer(content.staticAirTemperatureCelsius, _source, _now);
}

void TrackUpdate::operator()(TrackAndTurn const& content) {
    _items.rollDegrees.offer(content.rollDegrees, _source, _now);
    _items.trackDegrees.offer(content.trueTrackDegrees, _source, _now);
    _items.groundSpeedKt.offer(content.groundSpeedKt, _source, _now);
    _items.trackRateDegreesPerSecond.offer(content.trackRateDegreesPerSecond, _source, _now);
    _items.trueAirspeedKt.offer(content.trueAirspeedKt, _source, _now);
}

void TrackUpdate::operator()(AirReferencedState const& content) {
    _items.magneticHeadingDegrees.offer(content.magneticHeadingDegrees, _source, _now);
    _items.indicatedAirspeedKt.offer(content.indicatedAirspeedKt, _source, _now);
    _items.mach.offer(content.mach, _source, _now);
    _items.trueAirspeedKt.offer(content.trueAirspeedKt, _source, _now);
    _items.barometricRateFtMin.offer(content.verticalRateFtMin, _source, _now);
}

void TrackUpdate::operator()(HeadingAndSpeed const& content) {
    _items.magneticHeadingDegrees.offer(content.magneticHeadingDegrees, _source, _now);
    _items.indicatedAirspeedKt.offer(content.indicatedAirspeedKt, _source, _now);
    _items.mach.offer(content.mach, _source, _now);
    _items.barometricRateFtMin.offer(content.barometricVerticalRateFtMin, _source, _now);
    _items.geometricRateFtMin.offer(content.inertialVerticalRateFtMin, _source, _now);
}

} // namespace quorvel::airspace
