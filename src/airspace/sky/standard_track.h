// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <airspace/extended_squitter.h>
#include <airspace/integrity.h>
#include <airspace/message.h>
#include <airspace/place.h>
#include <airspace/register_choice.h>
#include <airspace/reply.h>
#include <airspace/resolution_advisory.h>
#include <airspace/sky_options.h>

#include "airspace/sky/packed_item.h"
#include "airspace/sky/position_tracker.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

namespace quorvel::airspace {

/// Which aircraft a message is of: addresses that a state assigned are apart from all others. ADS-B, ADS-R and TIS-B of
/// one ICAO address are of one aircraft.
struct TrackKey {
    std::uint32_t value = 0; ///< the address, and its kind above it; 0 of messages of no aircraft

    static TrackKey of(MessageHeader const& header);
    static TrackKey of(std::uint32_t address, AddressKind kind) {
        return {(address & 0xFFFFFF) | static_cast<std::uint32_t>(kind) << 24};
    }
    std::uint32_t address() const { return value & 0xFFFFFF; }
    AddressKind kind() const { return static_cast<AddressKind>(value >> 24); }
    friend bool operator==(TrackKey a, TrackKey b) { return a.value == b.value; }
};

/// Modes of the autopilot that are on, and those that are known, one bit each.
struct PackedModes {
    enum Mode : std::uint8_t { Autopilot = 1, Vnav = 2, AltitudeHold = 4, Approach = 8, Lnav = 16, Tcas = 32 };
    std::uint8_t on = 0;
    std::uint8_t known = 0;

    void set(Mode mode, bool isOn) {
        known = static_cast<std::uint8_t>(known | mode);
        on = static_cast<std::uint8_t>(isOn ? on | mode : on & ~mode);
    }
    std::optional<bool> get(Mode mode) const {
        return (known & mode) != 0 ? std::optional((on & mode) != 0) : std::nullopt;
    }
    friend bool operator==(PackedModes a, PackedModes b) { return a.on == b.on && a.known == b.known; }
};

/// A place to 1 cm.
struct PackedPlace {
    std::int32_t latitude = 0;
    std::int32_t longitude = 0;

    static PackedPlace of(Place const& place);
    Place place() const;
    friend bool operator==(PackedPlace a, PackedPlace b) {
        return a.latitude == b.latitude && a.longitude == b.longitude;
    }
};

/// Source integrity level and what its probability is counted by.
struct PackedSil {
    std::uint8_t level = 0;
    SilBasis basis = SilBasis::Unknown;
    friend bool operator==(PackedSil a, PackedSil b) { return a.level == b.level && a.basis == b.basis; }
};

/// Set and number of an emitter category.
struct PackedCategory {
    char set = 0;
    std::uint8_t number = 0;
    friend bool operator==(PackedCategory a, PackedCategory b) { return a.set == b.set && a.number == b.number; }
};

/// An advisory of collision avoidance that can be compared.
struct HeldAdvisory {
    ResolutionAdvisory advisory;
    friend bool operator==(HeldAdvisory const& one, HeldAdvisory const& other) {
        auto const& a = one.advisory;
        auto const& b = other.advisory;
        return a.ara == b.ara && a.rac == b.rac && a.isTerminated == b.isTerminated &&
               a.hasMultipleThreats == b.hasMultipleThreats && a.threatType == b.threatType &&
               a.threatAddress == b.threatAddress && a.threatAltitudeFt == b.threatAltitudeFt &&
               a.threatRangeNm == b.threatRangeNm && a.threatBearingDegrees == b.threatBearingDegrees;
    }
};

/// What is known of one aircraft, by the standards: values as they were sent, in the units of the messages. No memory is
/// allocated.
struct TrackItems {
    template <class T> using Identity = PackedItem<T, ItemClass::Identity>;
    template <class T> using Status = PackedItem<T, ItemClass::Status>;
    template <class T> using Altitude = PackedItem<T, ItemClass::Altitude>;
    template <class T> using Motion = PackedItem<T, ItemClass::Motion>;
    template <class T> using Air = PackedItem<T, ItemClass::Air>;
    template <class T> using Intent = PackedItem<T, ItemClass::Intent>;
    template <class T> using Integrity = PackedItem<T, ItemClass::Integrity>;
    template <class T> using Weather = PackedItem<T, ItemClass::Weather>;

    // Those of the messages that come every second, in front.
    PackedItem<bool, ItemClass::Ground> isOnGround;
    Status<bool> alert;
    Status<bool> ident;
    Altitude<std::int32_t> altitudeFt; ///< pressure altitude
    PackedItem<PackedPlace, ItemClass::Place> position;
    PackedItem<std::uint8_t, ItemClass::Place> nic;   ///< of the last position; none in version 0
    PackedItem<float, ItemClass::Place> radiusMetres; ///< Rc, of the last position; 0 if unknown
    Identity<std::uint8_t> version;                   ///< of its ADS-B transmitter, 0 to 7
    Motion<float> groundSpeedKt;                      ///< kt
    Motion<float> trackDegrees;                       ///< true
    Motion<std::int16_t> barometricRateFtMin;         ///< up positive
    Motion<std::int16_t> geometricRateFtMin;          ///< GNSS, or inertial of 6,0
    Altitude<std::int16_t> gnssMinusBarometricFt;     ///< ft
    Integrity<std::uint8_t> nacV;                     ///< NUCr in version 0

    Identity<std::array<char, 8>> callsign; ///< with blanks
    Identity<PackedCategory> category;
    PackedItem<std::uint16_t, ItemClass::Squawk> squawk;
    Status<EmergencyState> emergency;
    Status<HeldAdvisory> advisory;

    Altitude<std::int32_t> gnssHeightFt;   ///< above the ellipsoid, of type codes 20 to 22
    Air<std::int16_t> indicatedAirspeedKt; ///< kt
    Air<float> trueAirspeedKt;             ///< kt
    Air<float> mach;
    Air<float> magneticHeadingDegrees;
    Air<float> trueHeadingDegrees;
    Air<float> rollDegrees;               ///< right wing down positive
    Air<float> trackRateDegreesPerSecond; ///< right positive

    Intent<std::int32_t> controlPanelAltitudeFt;     ///< MCP or FCU
    Intent<std::int32_t> flightManagementAltitudeFt; ///< FMS
    Intent<float> selectedHeadingDegrees;
    Intent<float> pressureSettingHpa;
    Intent<PackedModes> modes;

    Integrity<std::uint8_t> nacP;
    Integrity<PackedSil> sil;
    Integrity<std::uint8_t> sda;
    Integrity<std::uint8_t> gva;
    Integrity<bool> isNicBaroChecked;
    Integrity<bool> isMagneticNorth; ///< of headings (HRD)
    Integrity<bool> isTrackHeading;  ///< surface positions tell the heading

    Weather<float> windSpeedKt;
    Weather<float> windDirectionDegrees; ///< where it comes from
    Weather<float> temperatureCelsius;   ///< static

    Identity<std::uint32_t> servedRegisters; ///< flags of register 1,7
};

/// Calls `visit(item)` for each item.
template <class Items, class Visit> void visitPackedItems(Items& items, Visit&& visit) {
    auto const each = [&visit](auto&... all) { (visit(all), ...); };
    each(items.callsign, items.category, items.version, items.squawk, items.isOnGround, items.emergency, items.alert,
        items.ident, items.advisory, items.position, items.nic, items.radiusMetres, items.altitudeFt,
        items.gnssHeightFt, items.gnssMinusBarometricFt, items.groundSpeedKt, items.trackDegrees,
        items.barometricRateFtMin, items.geometricRateFtMin, items.indicatedAirspeedKt, items.trueAirspeedKt);
    each(items.mach, items.magneticHeadingDegrees, items.trueHeadingDegrees, items.rollDegrees,
        items.trackRateDegreesPerSecond, items.controlPanelAltitudeFt, items.flightManagementAltitudeFt,
        items.selectedHeadingDegrees, items.pressureSettingHpa, items.modes, items.nacP, items.nacV, items.sil,
        items.sda, items.gva, items.isNicBaroChecked, items.isMagneticNorth, items.isTrackHeading, items.windSpeedKt,
        items.windDirectionDegrees, items.temperatureCelsius, items.servedRegisters);
}

/// What became of a message that a track has taken.
struct TrackOutcome {
    /// Of its position; none without one, or while that of a better source is fresh.
    std::optional<PositionTracker::Verdict> position;
    /// Of its register; none without one.
    std::optional<RegisterChoice> choice;
};

/// One aircraft by its messages.
///
/// Each item ages by its own time. A better source is not overwritten by a worse one while it is fresh (`kPrecedences`).
/// What replies say of ground state, squawk and callsign is taken from an aircraft that squitters, or against what is
/// known, only when two agree within 15 s: the address of a reply hides in its parity, so that a damaged one may have
/// any. A register of a Comm-B reply is taken when it is sure which it is.
class alignas(64) StandardTrack {
public:
    /// A track whose first message comes at this time.
    explicit StandardTrack(TimeMs first = 0) : _base(first) {}

    /// Takes a message of this aircraft: decoded, of a trusted address.
    TrackOutcome take(Reply const& reply, TimeMs time, SkyOptions const& options = {});

    TrackItems const& items() const { return _items; }
    PositionTracker const& positions() const { return _positions; }
    std::uint32_t messages() const { return _messages; } ///< taken
    TimeMs heard() const { return timeOf(_heard); }      ///< when the last was taken; 0 before the first
    Source heardFrom() const { return _heardFrom; }      ///< what that was; none before the first
    std::uint8_t signal() const { return _signal; }      ///< level of the last, in the receiver's unit; 0 is none
    void setSignal(std::uint8_t signal) { _signal = signal; }

    /// A time of an item; 0 is never.
    TimeMs timeOf(TrackTime time) const { return time == 0 ? 0 : _base + time - 1; }
    /// The same the other way: times before the first message become that of the first.
    /// and those too late for a track time the last that there is.
    TrackTime trackTimeOf(TimeMs time) const {
        constexpr TimeMs last = std::numeric_limits<TrackTime>::max() - 1;
        return time < _base ? 1 : static_cast<TrackTime>(std::min(time - _base, last)) + 1;
    }

    /// Fetches from memory what most messages touch.
    void prefetch() const {
        constexpr std::size_t touched = 384;
        auto const* bytes = reinterpret_cast<char const*>(this);
        for (std::size_t at = 0; at < touched; at += alignof(StandardTrack)) __builtin_prefetch(bytes + at, 1);
    }

    /// What is known for the choice of a register at a time.
    KnownState known(TrackTime now) const;

private:
    friend class TrackUpdate;

    void rebase(TimeMs time);

    // What most messages touch is in front, up to the end of the first of these items.
    TimeMs _base;
    TrackTime _heard = 0;
    TrackTime _squittered = 0; // when the last squitter came
    std::uint32_t _messages = 0;
    Source _heardFrom = Source::None;
    std::uint8_t _signal = 0;
    NicSupplements _supplements; // A and C, of the last operational status
    PositionTracker _positions;
    TrackItems _items;
    Corroboration<std::array<char, 8>> _callsign;
    Corroboration<std::uint16_t> _squawk;
    Corroboration<bool> _isOnGround;
};
static_assert(sizeof(StandardTrack) < 1024, "100,000 aircraft take less than 100 MB");

} // namespace quorvel::airspace
