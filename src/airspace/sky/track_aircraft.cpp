// SPDX-License-Identifier: MIT
#include "airspace/sky/track_aircraft.h"

#include "airspace/sky/address_block.h"
#include "airspace/sky/derived_items.h"
#include "airspace/sky/registration_of_address.h"

#include <string>

namespace quorvel::airspace {

namespace {

std::string valueOf(std::array<char, 8> const& characters) { return {characters.data(), characters.size()}; }
EmitterCategory valueOf(PackedCategory category) { return {category.set, category.number}; }
Place valueOf(PackedPlace const& place) { return place.place(); }
ResolutionAdvisory valueOf(HeldAdvisory const& held) { return held.advisory; }
template <class T> T valueOf(T const& value) { return value; }

SelectedModes valueOf(PackedModes modes) {
    return {modes.get(PackedModes::Autopilot), modes.get(PackedModes::Vnav), modes.get(PackedModes::AltitudeHold),
        modes.get(PackedModes::Approach), modes.get(PackedModes::Lnav), modes.get(PackedModes::Tcas)};
}

// Unpacks the items of one track.
class Unpacking {
public:
    Unpacking(StandardTrack const& track, Aircraft& aircraft) : _track(track), _aircraft(aircraft) {}

    void identity() {
        auto const& items = _track.items();
        copy(items.callsign, _aircraft.callsign);
        copy(items.category, _aircraft.emitterCategory);
        copyTimes(items.squawk, _aircraft.squawk);
        if (items.squawk.isThere()) _aircraft.squawk.value = Squawk{items.squawk.value};
    }

    void motion() {
        auto const& items = _track.items();
        copy(items.position, _aircraft.position);
        copy(items.radiusMetres, _aircraft.radius);
        if (_aircraft.radius.value == 0.0) _aircraft.radius.value.reset();
        copy(items.altitudeFt, _aircraft.altitudeBaro);
        copy(items.gnssHeightFt, _aircraft.altitudeGnss);
        copy(items.groundSpeedKt, _aircraft.groundSpeed);
        copy(items.trackDegrees, _aircraft.track);
        copy(items.trackRateDegreesPerSecond, _aircraft.trackRate);
        copy(items.rollDegrees, _aircraft.roll);
        copy(items.barometricRateFtMin, _aircraft.verticalRateBaro);
        copy(items.geometricRateFtMin, _aircraft.verticalRateGnss);
        if (_track.signal() != 0) _aircraft.signalAmplitude = {_track.signal(), _track.heardFrom(), _track.heard(), 0};
    }

    void air() {
        auto const& items = _track.items();
        copy(items.indicatedAirspeedKt, _aircraft.indicatedAirspeed);
        copy(items.trueAirspeedKt, _aircraft.trueAirspeed);
        copy(items.mach, _aircraft.mach);
        copy(items.magneticHeadingDegrees, _aircraft.magneticHeading);
        copy(items.trueHeadingDegrees, _aircraft.trueHeading);
        copy(items.windSpeedKt, _aircraft.windSpeed);
        copy(items.windDirectionDegrees, _aircraft.windDirection);
        copy(items.temperatureCelsius, _aircraft.temperature);
    }

    void intent() {
        auto const& items = _track.items();
        copy(items.controlPanelAltitudeFt, _aircraft.selectedAltitude);
        copy(items.flightManagementAltitudeFt, _aircraft.selectedAltitudeManagement);
        copy(items.selectedHeadingDegrees, _aircraft.selectedHeading);
        copy(items.pressureSettingHpa, _aircraft.pressureSetting);
        copy(items.modes, _aircraft.selectedModes);
    }

    void status() {
        auto const& items = _track.items();
        copy(items.isOnGround, _aircraft.groundStatus);
        copy(items.ident, _aircraft.spiStatus);
        copy(items.alert, _aircraft.alertStatus);
        copy(items.emergency, _aircraft.emergency);
        copy(items.advisory, _aircraft.advisory);
        copy(items.version, _aircraft.mopsVersion);
        _aircraft.mopsVersionConfirmed = items.version.isThere();
    }

    void quality() {
        auto const& items = _track.items();
        copy(items.nic, _aircraft.nic);
        copy(items.nacP, _aircraft.nacp);
        copy(items.nacV, _aircraft.nacv);
        copyTimes(items.sil, _aircraft.sil);
        copyTimes(items.sil, _aircraft.silBasis);
        if (items.sil.isThere()) {
            _aircraft.sil.value = items.sil.value.level;
            _aircraft.silBasis.value = items.sil.value.basis;
        }
        copy(items.sda, _aircraft.sda);
        copy(items.gva, _aircraft.gva);
        copy(items.isNicBaroChecked, _aircraft.nicBaro);
    }

    void derived(TimeMs now, std::optional<Place> const& receiver) {
        auto const values = deriveItems(_track.items(), _track.trackTimeOf(now), receiver);
        put(values.mach, _aircraft.mach);
        put(values.trueAirspeedKt, _aircraft.trueAirspeed);
        put(values.temperatureCelsius, _aircraft.temperature);
        put(values.totalTemperatureCelsius, _aircraft.totalTemperature);
        put(values.windSpeedKt, _aircraft.windSpeed);
        put(values.windDirectionDegrees, _aircraft.windDirection);
        put(values.gnssHeightFt, _aircraft.altitudeGnss);
        put(values.distanceNm, _aircraft.distance);
        put(values.bearingDegrees, _aircraft.bearing);
    }

private:
    template <class Packed, class T> void copyTimes(Packed const& packed, Item<T>& item) const {
        item.source = packed.source;
        item.updated = _track.timeOf(packed.updated);
        item.changed = _track.timeOf(packed.changed);
    }

    template <class Packed, class T> void copy(Packed const& packed, Item<T>& item) const {
        copyTimes(packed, item);
        if (packed.isThere()) item.value = static_cast<T>(valueOf(packed.value));
    }

    template <class T> void put(std::optional<DerivedValue> const& derived, Item<T>& item) const {
        if (derived) item = {static_cast<T>(derived->value), Source::Derived, _track.timeOf(derived->updated), 0};
    }

    StandardTrack const& _track;
    Aircraft& _aircraft;
};

// What the address tells. It was never reported: its time is that of the last reply, in which the address is.
void addOrigin(Aircraft& aircraft) {
    if (aircraft.addressKind != AddressKind::Icao) return;
    if (auto const* block = addressBlockOf(aircraft.address)) {
        aircraft.stateCode = block->code;
        aircraft.state = block->state;
    }
    aircraft.isMilitaryAddress = isMilitaryAddress(aircraft.address);
    auto const registration = registrationOfAddress(aircraft.address);
    if (!registration.isEmpty())
        aircraft.registration = {std::string(registration.text()), Source::Derived, aircraft.heard, 0};
}

} // namespace

Aircraft aircraftOf(TrackKey key, StandardTrack const& track, TimeMs now, std::optional<Place> const& receiver) {
    Aircraft aircraft;
    aircraft.address = key.address();
    aircraft.addressKind = key.kind();
    aircraft.now = now;
    aircraft.heard = track.heard();
    aircraft.messages = track.messages();
    aircraft.positionsRefused = track.positions().refused();
    Unpacking unpacking(track, aircraft);
    unpacking.identity();
    unpacking.motion();
    unpacking.air();
    unpacking.intent();
    unpacking.status();
    unpacking.quality();
    unpacking.derived(now, receiver);
    addOrigin(aircraft);
    return aircraft;
}

} // namespace quorvel::airspace
