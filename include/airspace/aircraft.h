// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/emitter_category.h>
#include <airspace/frame.h>
#include <airspace/place.h>
#include <airspace/squawk.h>
#include <modes/mops_version.h>

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

/// An aircraft address as six upper-case hexadecimal digits.
TREVALLO_AIRSPACE_EXPORT std::string addressText(std::uint32_t address);

/// What is known about one aircraft at one moment. A value of its own, which may be kept.
///
/// Values are the core library's readings as of its tracker; the position is the last that passed the checks
/// of plausibility.
struct Aircraft {
    std::uint32_t address = 0; ///< 24 bits
    std::uint16_t track = 0;   ///< number of its track, 1 to 4095
    TimeMs now = 0;            ///< the moment
    TimeMs heard = 0;          ///< time of its last reply of any kind

    /// Replies given to it, except for extended squitters whose ADS-B message could not be decoded.
    std::uint64_t messages = 0;
    std::uint64_t positionsRefused = 0; ///< its positions that did not pass the checks

    Item<std::string> callsign;            ///< as sent, blanks included
    Item<EmitterCategory> emitterCategory; ///< kind of aircraft
    Item<Squawk> squawk;                   ///< Mode A code
    Item<Place> position;                  ///< the last that passed the checks
    Item<std::uint8_t> signalAmplitude;    ///< in the receiver's own unit
    Item<int> altitudeBaro;                ///< feet, of standard pressure
    Item<double> groundSpeed;              ///< knots
    Item<double> heading;                  ///< track over ground, degrees clockwise from true north, [0, 360)
    Item<int> verticalRateBaro;            ///< feet per minute, positive climbing
    Item<bool> groundStatus;               ///< whether it is on the ground
    Item<bool> spiStatus;                  ///< special position identification ("ident")
    Item<bool> alertStatus;                ///< the Mode A code changed, or is one of an emergency
    Item<modes::MOPSVersion> mopsVersion;  ///< version of its ADS-B transmitter
    bool mopsVersionConfirmed = false;     ///< false while it is only assumed

    Item<std::uint8_t> nucp; ///< navigation uncertainty category for position, 0 to 9
    Item<std::uint8_t> nucr; ///< the same for velocity; the core deliberately gives the NUCp here
    Item<std::uint8_t> nic;  ///< navigation integrity category, 0 to 11
    Item<bool> nicSuppA;     ///< NIC supplement A
    Item<bool> nicSuppB;     ///< NIC supplement B
    Item<bool> nicSuppC;     ///< NIC supplement C
    Item<std::uint8_t> pic;  ///< position integrity category, 0 to 14
    Item<std::uint8_t> nacp; ///< navigation accuracy category for position, 0 to 11
    Item<std::uint8_t> sil;  ///< source integrity level, 0 to 3

    /// Milliseconds since a time; 0 for a time in the future, so that clocks that go back give no huge ages.
    TimeMs age(TimeMs since) const { return since < now ? now - since : 0; }
};

/// What an item is called, and in what groups lists of them are arranged.
struct ItemText {
    /// Groups in the order of lists.
    enum class Group : std::uint8_t { Identity, Motion, Status, Quality };

    std::string_view name;  ///< as the member of `Aircraft`: "altitudeBaro"
    std::string_view label; ///< for people: "Altitude"
    std::string_view unit;  ///< "ft"; empty where there is none
    Group group;            ///< where it stands in lists
    bool hasChange;         ///< whether the time of its last change is kept
};

/// Calls `visit(ItemText const&, item)` for each item of an aircraft, in the order of their groups.
template <class AnyAircraft, class Visit> void visitItems(AnyAircraft& aircraft, Visit&& visit) {
    using Group = ItemText::Group;
    visit(ItemText{"callsign", "Callsign", "", Group::Identity, true}, aircraft.callsign);
    visit(ItemText{"emitterCategory", "Emitter category", "", Group::Identity, true}, aircraft.emitterCategory);
    visit(ItemText{"squawk", "Squawk", "", Group::Identity, true}, aircraft.squawk);
    visit(ItemText{"position", "Position", "deg", Group::Motion, false}, aircraft.position);
    visit(ItemText{"signalAmplitude", "Signal amplitude", "", Group::Motion, false}, aircraft.signalAmplitude);
    visit(ItemText{"altitudeBaro", "Altitude", "ft", Group::Motion, false}, aircraft.altitudeBaro);
    visit(ItemText{"groundSpeed", "Ground speed", "kt", Group::Motion, false}, aircraft.groundSpeed);
    visit(ItemText{"heading", "Heading", "deg", Group::Motion, false}, aircraft.heading);
    visit(ItemText{"verticalRateBaro", "Vertical rate", "ft/min", Group::Motion, false}, aircraft.verticalRateBaro);
    visit(ItemText{"groundStatus", "Ground status", "", Group::Status, true}, aircraft.groundStatus);
    visit(ItemText{"spiStatus", "SPI", "", Group::Status, true}, aircraft.spiStatus);
    visit(ItemText{"alertStatus", "Alert", "", Group::Status, true}, aircraft.alertStatus);
    visit(ItemText{"mopsVersion", "MOPS version", "", Group::Status, true}, aircraft.mopsVersion);
    visit(ItemText{"nucp", "NUCp", "", Group::Quality, true}, aircraft.nucp);
    visit(ItemText{"nucr", "NUCr", "", Group::Quality, true}, aircraft.nucr);
    visit(ItemText{"nic", "NIC", "", Group::Quality, true}, aircraft.nic);
    visit(ItemText{"nicSuppA", "NIC supplement A", "", Group::Quality, false}, aircraft.nicSuppA);
    visit(ItemText{"nicSuppB", "NIC supplement B", "", Group::Quality, false}, aircraft.nicSuppB);
    visit(ItemText{"nicSuppC", "NIC supplement C", "", Group::Quality, false}, aircraft.nicSuppC);
    visit(ItemText{"pic", "PIC", "", Group::Quality, true}, aircraft.pic);
    visit(ItemText{"nacp", "NACp", "", Group::Quality, true}, aircraft.nacp);
    visit(ItemText{"sil", "SIL", "", Group::Quality, true}, aircraft.sil);
}

} // namespace quorvel::airspace
