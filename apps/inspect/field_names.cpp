// SPDX-License-Identifier: MIT
#include "inspect/field_names.h"

#include <array>
#include <utility>

namespace quorvel::inspect {

namespace {

using modes::ADSBMessageField;
using modes::ModeSMessageField;

template <std::size_t Size>
std::string_view entry(std::array<std::string_view, Size> const& table, unsigned long long index) {
    return index < Size ? table[index] : "reserved";
}

// By designator, in the order of the enumeration.
constexpr std::array<std::string_view, ADSBMessageField::UNKNOWN> kTitles{
    "Message type", "Type code", "Emitter category set", "Emitter category",                      // all, identification
    "Character 1", "Character 2", "Character 3", "Character 4",                                   // identification
    "Character 5", "Character 6", "Character 7", "Character 8",                                   // identification
    "Movement code", "Ground speed", "Heading status", "Heading",                                 // surface position
    "Single antenna flag", "NIC supplement B",                                                    // airborne position
    "Altitude source", "Altitude resolution", "Altitude",                                         // airborne position
    "Time synchronisation", "CPR format", "CPR latitude", "CPR longitude",                        // both positions
    "Velocity subtype", "NUCr",                                                                   // airborne velocity
    "East-west direction", "North-south direction", "East-west velocity", "North-south velocity", // airborne velocity
    "Vertical rate source", "Vertical rate sign", "Vertical rate",                                // airborne velocity
    "Test subtype", "Test data",                                                                  // test
    "Aircraft status subtype", "Emergency state", "Mode A code",                                  // aircraft status
    "Target status subtype", "NACp", "NICbaro", "SIL", "SIL supplement",                          // target state
    "Operational status subtype", "Version number", "NIC supplement A",                           // operational status
};
static_assert(!kTitles.back().empty(), "a field has no title");

// ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.1.
constexpr std::array<std::string_view, 8> kCapabilities{
    "level 1 transponder",
    "reserved",
    "reserved",
    "reserved",
    "level 2 or above, on the ground",
    "level 2 or above, airborne",
    "level 2 or above, airborne or on the ground",
    "alert, SPI, or something to send by Comm-B",
};

// ICAO Annex 10 Vol. IV, 3.1.2.6.5.1.
constexpr std::array<std::string_view, 8> kFlightStatus{
    "airborne",
    "on the ground",
    "airborne, alert",
    "on the ground, alert",
    "airborne or on the ground, alert and SPI",
    "airborne or on the ground, SPI",
    "reserved",
    "not assigned",
};

// ICAO Annex 10 Vol. IV, 3.1.2.8.7.2.
constexpr std::array<std::string_view, 8> kControls{
    "ADS-B with an ICAO address",
    "ADS-B with another address",
    "fine TIS-B with an ICAO address",
    "coarse TIS-B",
    "management of TIS-B and ADS-R",
    "fine TIS-B with another address",
    "rebroadcast ADS-B",
    "reserved",
};

// RTCA DO-260B, 2.2.3.2.5.2, sets D, C, B and A by type code.
constexpr std::array<std::array<std::string_view, 8>, 4> kCategories{{
    {"no information", "reserved", "reserved", "reserved", "reserved", "reserved", "reserved", "reserved"},
    {"no information", "emergency vehicle", "service vehicle", "point obstacle", "cluster obstacle", "line obstacle",
        "reserved", "reserved"},
    {"no information", "glider", "lighter than air", "parachutist", "ultralight", "reserved", "unmanned aerial vehicle",
        "space vehicle"},
    {"no information", "light", "small", "large", "high vortex large", "heavy", "high performance", "rotorcraft"},
}};

constexpr std::array<std::string_view, 25> kFormats{
    "short air-air surveillance",                                 // 0
    "reserved", "reserved", "reserved",                           // 1 to 3
    "surveillance altitude reply", "surveillance identity reply", // 4, 5
    "reserved", "reserved", "reserved", "reserved", "reserved",   // 6 to 10
    "all-call reply",                                             // 11
    "reserved", "reserved", "reserved", "reserved",               // 12 to 15
    "long air-air surveillance",                                  // 16
    "extended squitter",                                          // 17
    "extended squitter of a device that is not a transponder",    // 18
    "military extended squitter",                                 // 19
    "Comm-B altitude reply", "Comm-B identity reply",             // 20, 21
    "reserved for military use",                                  // 22
    "reserved",                                                   // 23
    "Comm-D extended length message",                             // 24
};

constexpr SpareField kShortAirAir[]{
    {"CC", "Crosslink capability", 7, 1},
    {"-", "not used", 8, 1},
    {"SL", "Sensitivity level", 9, 3},
    {"-", "not used", 12, 2},
    {"RI", "Reply information", 14, 4},
    {"-", "not used", 18, 2},
};
constexpr SpareField kLongAirAir[]{
    {"-", "not used", 7, 2},
    {"SL", "Sensitivity level", 9, 3},
    {"-", "not used", 12, 2},
    {"RI", "Reply information", 14, 4},
    {"-", "not used", 18, 2},
};
constexpr SpareField kSurveillance[]{{"DR", "Downlink request", 9, 5}, {"UM", "Utility message", 14, 6}};

std::string altitudeMeaning(modes::ModeSMessageFieldAC const& field) {
    if (field.altitudeUnit() != 0) return "in metric units, not to be trusted";
    return "feet, in steps of " + std::to_string(field.altitudeResolution());
}

std::string interrogatorMeaning(modes::ModeSMessageFieldPI const& field) {
    return field.interrogatorIdValid() ? "interrogator identifier " + std::to_string(field.interrogatorId())
                                       : "no interrogator identifier";
}

} // namespace

std::string_view titleOf(ADSBMessageField::Designator designator) { return entry(kTitles, designator); }

std::string meaningOf(ModeSMessageField const& field, unsigned long long raw) {
    switch (field.designator()) {
    case ModeSMessageField::CA: return std::string(entry(kCapabilities, raw));
    case ModeSMessageField::CF: return std::string(entry(kControls, raw));
    case ModeSMessageField::FS: return std::string(entry(kFlightStatus, raw));
    case ModeSMessageField::AF: return raw == 0 ? "civil use" : "reserved for military use";
    case ModeSMessageField::VS: return raw == 0 ? "airborne" : "on the ground";
    case ModeSMessageField::AC: return altitudeMeaning(static_cast<modes::ModeSMessageFieldAC const&>(field));
    case ModeSMessageField::PI: return interrogatorMeaning(static_cast<modes::ModeSMessageFieldPI const&>(field));
    default: return "";
    }
}

std::string meaningOf(ADSBMessageField const& field, unsigned typeCode) {
    bool const isIdentification = typeCode >= 1 && typeCode <= kCategories.size();
    if (field.designator() != ADSBMessageField::EMTCAT || !isIdentification) return "";
    auto const category = static_cast<std::size_t>(field.description().front() - '0');
    return std::string(1, "DCBA"[typeCode - 1]) + field.description() + ", " +
           std::string(entry(kCategories[typeCode - 1], category));
}

std::span<SpareField const> spareFieldsOf(unsigned format) {
    switch (format) {
    case 0: return kShortAirAir;
    case 16: return kLongAirAir;
    case 4:
    case 5:
    case 20:
    case 21: return kSurveillance;
    default: return {};
    }
}

std::string_view titleOfFormat(unsigned format) { return entry(kFormats, format); }

} // namespace quorvel::inspect
