// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/address.h>
#include <airspace/airspace_export.h>
#include <airspace/emitter_category.h>
#include <airspace/extended_squitter.h>
#include <airspace/frame.h>
#include <airspace/integrity.h>
#include <airspace/place.h>
#include <airspace/resolution_advisory.h>
#include <airspace/squawk.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// What brought an item.
enum class Source : std::uint8_t {
    None,    ///< never reported, or not known
    AdsB,    ///< an extended squitter of the aircraft itself
    AdsR,    ///< an extended squitter that a ground station repeats
    TisB,    ///< a ground station's own picture
    ModeS,   ///< a surveillance, all-call or air-air reply
    CommB,   ///< a register of the transponder that an interrogator asked for
    Derived, ///< worked out from other items
};

/// One item of what is known about an aircraft. Its times stay when its value is no longer valid.
template <class T> struct Item {
    std::optional<T> value;       ///< none when it was never reported, or is not valid
    Source source = Source::None; ///< of the last report
    TimeMs updated = 0;           ///< when it was last reported; 0 is never
    TimeMs changed = 0;           ///< when it last became different; 0 is never, or not kept for this item
};

/// Modes of the autopilot and the flight management system; none of those that were not reported.
struct SelectedModes {
    std::optional<bool> autopilot;    ///< engaged
    std::optional<bool> vnav;         ///< vertical navigation
    std::optional<bool> altitudeHold; ///< holds its altitude
    std::optional<bool> approach;     ///< approach mode
    std::optional<bool> lnav;         ///< lateral navigation
    std::optional<bool> tcas;         ///< collision avoidance is operational
};

/// What is known about one aircraft at one moment. A value of its own, which may be kept.
///
/// Of `Sky`, values are by the standards, as in RTCA DO-260B and ICAO Doc 9871. Of `CoreSky`, they are the core library's
/// own readings, and what it does not read is empty.
struct Aircraft {
    std::uint32_t address = 0;                   ///< 24 bits
    AddressKind addressKind = AddressKind::Icao; ///< what the address is
    std::uint16_t trackNumber = 0;               ///< of the core's tracker, 1 to 4095; 0 of `Sky`
    TimeMs now = 0;                              ///< the moment
    TimeMs heard = 0;                            ///< time of its last reply of any kind
    std::uint64_t messages = 0;         ///< replies given to it; of `CoreSky`, without squitters that it cannot read
    std::uint64_t positionsRefused = 0; ///< its positions that did not pass the checks

    /// The state that assigned the address, by two letters as in ISO 3166-1 and by name; empty where none did.
    /// Source: ICAO Annex 10 Vol. III, Part I, table 9-1.
    std::string_view stateCode;
    std::string_view state;         ///< its short name in English
    bool isMilitaryAddress = false; ///< the address is of a block that the state has published as that of its forces

    Item<std::string> callsign;            ///< as sent, blanks included
    Item<EmitterCategory> emitterCategory; ///< kind of aircraft
    Item<Squawk> squawk;                   ///< Mode A code
    Item<std::string> registration;        ///< its marks, where the address tells them

    Item<Place> position;               ///< the last that passed the checks
    Item<double> radius;                ///< containment radius Rc of the position, metres
    Item<double> distance;              ///< from the receiver, nautical miles
    Item<double> bearing;               ///< from the receiver, degrees clockwise from true north, [0, 360)
    Item<std::uint8_t> signalAmplitude; ///< in the receiver's own unit
    Item<int> altitudeBaro;             ///< feet, of standard pressure
    Item<int> altitudeGnss;             ///< feet, above the WGS-84 ellipsoid
    Item<double> groundSpeed;           ///< knots
    Item<double> track;                 ///< over ground, degrees clockwise from true north, [0, 360)
    Item<double> trackRate;             ///< degrees per second, positive to the right
    Item<double> roll;                  ///< degrees, positive right wing down
    Item<int> verticalRateBaro;         ///< feet per minute, positive climbing
    Item<int> verticalRateGnss;         ///< the same by GNSS, or inertial

    Item<int> indicatedAirspeed;   ///< knots
    Item<double> trueAirspeed;     ///< knots
    Item<double> mach;             ///< Mach number
    Item<double> magneticHeading;  ///< degrees, [0, 360)
    Item<double> trueHeading;      ///< degrees, [0, 360)
    Item<double> windSpeed;        ///< knots
    Item<double> windDirection;    ///< where it comes from, degrees clockwise from true north, [0, 360)
    Item<double> temperature;      ///< of the air outside, degrees Celsius
    Item<double> totalTemperature; ///< of the air stopped by the aircraft, degrees Celsius

    Item<int> selectedAltitude;           ///< of the control panel (MCP or FCU), feet
    Item<int> selectedAltitudeManagement; ///< of the flight management system, feet
    Item<double> selectedHeading;         ///< degrees
    Item<double> pressureSetting;         ///< of the altimeter, hPa
    Item<SelectedModes> selectedModes;    ///< which are on

    Item<bool> groundStatus;           ///< whether it is on the ground
    Item<bool> spiStatus;              ///< special position identification ("ident")
    Item<bool> alertStatus;            ///< the Mode A code changed, or is one of an emergency
    Item<EmergencyState> emergency;    ///< emergency or priority
    Item<ResolutionAdvisory> advisory; ///< of collision avoidance
    Item<std::uint8_t> mopsVersion;    ///< version of its ADS-B transmitter, 0 to 7
    bool mopsVersionConfirmed = false; ///< false while it is only assumed

    Item<std::uint8_t> nucp; ///< navigation uncertainty category for position, 0 to 9; of `CoreSky`
    Item<std::uint8_t> nucr; ///< the same for velocity; of `CoreSky`, which deliberately gives the NUCp here
    Item<std::uint8_t> nic;  ///< navigation integrity category, 0 to 11
    Item<bool> nicSuppA;     ///< NIC supplement A; of `CoreSky`
    Item<bool> nicSuppB;     ///< NIC supplement B; of `CoreSky`
    Item<bool> nicSuppC;     ///< NIC supplement C; of `CoreSky`
    Item<std::uint8_t> pic;  ///< position integrity category, 0 to 14; of `CoreSky`
    Item<std::uint8_t> nacp; ///< navigation accuracy category for position, 0 to 11
    Item<std::uint8_t> nacv; ///< the same for velocity, 0 to 4; NUCr of version 0
    Item<std::uint8_t> sil;  ///< source integrity level, 0 to 3
    Item<SilBasis> silBasis; ///< what its probability is counted by
    Item<std::uint8_t> sda;  ///< system design assurance, 0 to 3
    Item<std::uint8_t> gva;  ///< geometric vertical accuracy, 0 to 3
    Item<bool> nicBaro;      ///< the barometric altitude is checked against another source

    /// Milliseconds since a time; 0 for a time in the future, so that clocks that go back give no huge ages.
    TimeMs age(TimeMs since) const { return since < now ? now - since : 0; }
};

/// What an item is called, and in what groups lists of them are arranged.
struct ItemText {
    /// Groups in the order of lists.
    enum class Group : std::uint8_t { Identity, Motion, Air, Intent, Status, Quality };

    std::string_view name;  ///< as the member of `Aircraft`: "altitudeBaro"
    std::string_view label; ///< for people: "Altitude"
    std::string_view unit;  ///< "ft"; empty where there is none
    Group group;            ///< where it stands in lists
    bool hasChange;         ///< whether the time of its last change is shown
};

/// Calls `visit(ItemText const&, item)` for each item of an aircraft, in the order of their groups.
template <class AnyAircraft, class Visit> void visitItems(AnyAircraft& aircraft, Visit&& visit) {
    using Group = ItemText::Group;
    visit(ItemText{"callsign", "Callsign", "", Group::Identity, true}, aircraft.callsign);
    visit(ItemText{"emitterCategory", "Emitter category", "", Group::Identity, true}, aircraft.emitterCategory);
    visit(ItemText{"squawk", "Squawk", "", Group::Identity, true}, aircraft.squawk);
    visit(ItemText{"registration", "Registration", "", Group::Identity, false}, aircraft.registration);
    visit(ItemText{"position", "Position", "deg", Group::Motion, false}, aircraft.position);
    visit(ItemText{"radius", "Containment radius", "m", Group::Motion, false}, aircraft.radius);
    visit(ItemText{"distance", "Distance", "NM", Group::Motion, false}, aircraft.distance);
    visit(ItemText{"bearing", "Bearing", "deg", Group::Motion, false}, aircraft.bearing);
    visit(ItemText{"signalAmplitude", "Signal amplitude", "", Group::Motion, false}, aircraft.signalAmplitude);
    visit(ItemText{"altitudeBaro", "Altitude", "ft", Group::Motion, false}, aircraft.altitudeBaro);
    visit(ItemText{"altitudeGnss", "GNSS altitude", "ft", Group::Motion, false}, aircraft.altitudeGnss);
    visit(ItemText{"groundSpeed", "Ground speed", "kt", Group::Motion, false}, aircraft.groundSpeed);
    visit(ItemText{"track", "Track", "deg", Group::Motion, false}, aircraft.track);
    visit(ItemText{"trackRate", "Track rate", "deg/s", Group::Motion, false}, aircraft.trackRate);
    visit(ItemText{"roll", "Roll", "deg", Group::Motion, false}, aircraft.roll);
    visit(ItemText{"verticalRateBaro", "Vertical rate", "ft/min", Group::Motion, false}, aircraft.verticalRateBaro);
    visit(
        ItemText{"verticalRateGnss", "GNSS vertical rate", "ft/min", Group::Motion, false}, aircraft.verticalRateGnss);
    visit(ItemText{"indicatedAirspeed", "Indicated airspeed", "kt", Group::Air, false}, aircraft.indicatedAirspeed);
    visit(ItemText{"trueAirspeed", "True airspeed", "kt", Group::Air, false}, aircraft.trueAirspeed);
    visit(ItemText{"mach", "Mach", "", Group::Air, false}, aircraft.mach);
    visit(ItemText{"magneticHeading", "Magnetic heading", "deg", Group::Air, false}, aircraft.magneticHeading);
    visit(ItemText{"trueHeading", "True heading", "deg", Group::Air, false}, aircraft.trueHeading);
    visit(ItemText{"windSpeed", "Wind speed", "kt", Group::Air, false}, aircraft.windSpeed);
    visit(ItemText{"windDirection", "Wind from", "deg", Group::Air, false}, aircraft.windDirection);
    visit(ItemText{"temperature", "Temperature", "C", Group::Air, false}, aircraft.temperature);
    visit(ItemText{"totalTemperature", "Total temperature", "C", Group::Air, false}, aircraft.totalTemperature);
    visit(ItemText{"selectedAltitude", "Selected altitude", "ft", Group::Intent, true}, aircraft.selectedAltitude);
    visit(ItemText{"selectedAltitudeManagement", "FMS altitude", "ft", Group::Intent, true},
        aircraft.selectedAltitudeManagement);
    visit(ItemText{"selectedHeading", "Selected heading", "deg", Group::Intent, true}, aircraft.selectedHeading);
    visit(ItemText{"pressureSetting", "Pressure setting", "hPa", Group::Intent, true}, aircraft.pressureSetting);
    visit(ItemText{"selectedModes", "Selected modes", "", Group::Intent, true}, aircraft.selectedModes);
    visit(ItemText{"groundStatus", "Ground status", "", Group::Status, true}, aircraft.groundStatus);
    visit(ItemText{"spiStatus", "SPI", "", Group::Status, true}, aircraft.spiStatus);
    visit(ItemText{"alertStatus", "Alert", "", Group::Status, true}, aircraft.alertStatus);
    visit(ItemText{"emergency", "Emergency", "", Group::Status, true}, aircraft.emergency);
    visit(ItemText{"advisory", "Resolution advisory", "", Group::Status, true}, aircraft.advisory);
    visit(ItemText{"mopsVersion", "MOPS version", "", Group::Status, true}, aircraft.mopsVersion);
    visit(ItemText{"nucp", "NUCp", "", Group::Quality, true}, aircraft.nucp);
    visit(ItemText{"nucr", "NUCr", "", Group::Quality, true}, aircraft.nucr);
    visit(ItemText{"nic", "NIC", "", Group::Quality, true}, aircraft.nic);
    visit(ItemText{"nicSuppA", "NIC supplement A", "", Group::Quality, false}, aircraft.nicSuppA);
    visit(ItemText{"nicSuppB", "NIC supplement B", "", Group::Quality, false}, aircraft.nicSuppB);
    visit(ItemText{"nicSuppC", "NIC supplement C", "", Group::Quality, false}, aircraft.nicSuppC);
    visit(ItemText{"pic", "PIC", "", Group::Quality, true}, aircraft.pic);
    visit(ItemText{"nacp", "NACp", "", Group::Quality, true}, aircraft.nacp);
    visit(ItemText{"nacv", "NACv", "", Group::Quality, true}, aircraft.nacv);
    visit(ItemText{"sil", "SIL", "", Group::Quality, true}, aircraft.sil);
    visit(ItemText{"silBasis", "SIL counted by", "", Group::Quality, false}, aircraft.silBasis);
    visit(ItemText{"sda", "SDA", "", Group::Quality, true}, aircraft.sda);
    visit(ItemText{"gva", "GVA", "", Group::Quality, true}, aircraft.gva);
    visit(ItemText{"nicBaro", "NICbaro", "", Group::Quality, true}, aircraft.nicBaro);
}

} // namespace quorvel::airspace
