// SPDX-License-Identifier: MIT
#include "inspect/field_names.h"

#include <algorithm>
#include <array>
#include <iterator>
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

// RTCA DO-260B, 2.2.3.2.3.2.
constexpr std::array<std::string_view, 4> kSurveillanceStatus{
    "no condition", "permanent alert", "temporary alert", "special position identification"};

// RTCA DO-260B, 2.2.3.2.7.8.1.1.
constexpr std::array<std::string_view, 8> kEmergencies{"none", "general", "medical", "minimum fuel",
    "no communications", "unlawful interference", "downed aircraft", "reserved"};

// RTCA DO-260A, 2.2.3.2.7.1.3.
constexpr std::array<std::string_view, 4> kTargetSources{
    "none", "control panel", "holding", "flight management system"};
constexpr std::array<std::string_view, 4> kTargetModes{"unknown", "acquiring", "capturing or holding", "reserved"};
constexpr std::array<std::string_view, 2> kTargetAltitudeTypes{"flight level", "above mean sea level"};

constexpr std::array<std::string_view, 2> kFlags{"no", "yes"};
constexpr std::array<std::string_view, 2> kCprFormats{"even", "odd"};
constexpr std::array<std::string_view, 2> kSilBases{"per hour", "per sample"};
constexpr std::array<std::string_view, 2> kNorths{"true north", "magnetic north"};
constexpr std::array<std::string_view, 4> kThreatTypes{"nothing", "its address", "its position", "reserved"};
constexpr std::array<std::string_view, 4> kHazards{"none", "light", "moderate", "severe"};

// In the order of `visitFields`. Those without a title stand above the others, or say what another one says.
constexpr ValueTitle kValueTitles[]{
    // of several formats
    {"df", "", ""},
    {"remainder", "", ""},
    {"icao", "", ""},
    {"crc_ok", "", ""},
    {"bds", "", ""},
    {"bds_candidates", "", ""},
    {"altitude", "Altitude", "feet"},
    {"squawk", "Squawk (Mode A code)", ""},
    {"capability", "Capability", "", kCapabilities},
    {"flight_status", "Flight status", "", kFlightStatus},
    // ICAO Annex 10 Vol. IV, 3.1.2.6.5, 3.1.2.7.3, 3.1.2.8.2
    {"downlink_request", "Downlink request", ""},
    {"utility_message", "Utility message", ""},
    {"vertical_status", "Vertical status", ""},
    {"cross_link_capability", "Cross-link capability", "", kFlags, false},
    {"sensitivity_level", "ACAS sensitivity level", ""},
    {"reply_information", "Reply information", ""},
    {"ii", "Interrogator identifier", ""},
    {"si", "Surveillance identifier", ""},
    {"mv", "MV, as it stands", ""},
    {"ke", "Acknowledges an uplink", "", kFlags, false},
    {"nd", "Segment", ""},
    // extended squitters
    {"cf", "Control field", "", kControls},
    {"typecode", "", ""},
    {"subtype", "Subtype", ""},
    {"nuc_p", "NUCp", ""},
    {"surveillance_status", "Surveillance status", "", kSurveillanceStatus},
    {"altitude_type", "Altitude source", ""},
    {"nic_b", "NIC supplement B", ""},
    {"time_sync", "Time synchronisation", "", kFlags, false},
    {"cpr_format", "CPR format", "", kCprFormats, false},
    {"cpr_lat", "CPR latitude", ""},
    {"cpr_lon", "CPR longitude", ""},
    {"movement", "Movement code", ""},
    {"groundspeed", "Ground speed", "knots"},
    {"groundspeed_upper", "Ground speed, at most", "knots"},
    {"track_status", "", ""},
    {"track", "Track", "degrees"},
    {"category", "", ""},
    {"emitter_category", "Emitter category", ""},
    {"callsign", "Callsign", ""},
    {"intent_change", "Intent changes", "", kFlags, false},
    {"ifr_capability", "IFR capability", "", kFlags, false},
    {"velocity_ew", "Velocity to the east", "knots"},
    {"velocity_ns", "Velocity to the north", "knots"},
    {"heading", "Heading", "degrees"},
    {"airspeed_type", "Kind of airspeed", ""},
    {"airspeed", "Airspeed", "knots"},
    {"vertical_rate", "Vertical rate", "feet per minute"},
    {"vr_source", "Vertical rate source", ""},
    {"geo_minus_baro", "GNSS minus pressure altitude", "feet"},
    {"emergency_state", "Emergency", "", kEmergencies},
    // target state
    {"sil_supplement", "SIL counts", "", kSilBases, false},
    {"selected_altitude", "Selected altitude", "feet"},
    {"selected_altitude_source", "Selected altitude source", ""},
    {"baro_pressure_setting", "Pressure setting", "hPa"},
    {"selected_heading", "Selected heading", "degrees"},
    {"autopilot", "Autopilot", "", kFlags, false},
    {"vnav_mode", "Vertical navigation", "", kFlags, false},
    {"altitude_hold_mode", "Altitude hold", "", kFlags, false},
    {"approach_mode", "Approach", "", kFlags, false},
    {"lnav_mode", "Lateral navigation", "", kFlags, false},
    {"tcas_operational", "TCAS operational", "", kFlags, false},
    {"vertical_data_source", "Vertical data source", "", kTargetSources},
    {"target_altitude_type", "Target altitude type", "", kTargetAltitudeTypes, false},
    {"target_altitude_capability", "Target altitude capability", ""},
    {"vertical_mode", "Vertical mode", "", kTargetModes},
    {"target_altitude", "Target altitude", "feet"},
    {"horizontal_data_source", "Horizontal data source", "", kTargetSources},
    {"target_direction", "Target direction", "degrees"},
    {"target_direction_is_track", "Target direction is a track", "", kFlags, false},
    {"horizontal_mode", "Horizontal mode", "", kTargetModes},
    {"capability_mode", "Capability and mode", ""},
    // operational status, and quality
    {"version", "ADS-B version", ""},
    {"capability_class", "Capability class", ""},
    {"operational_mode", "Operational mode", ""},
    {"cdti", "Traffic display", "", kFlags, false},
    {"es_in", "Receives squitters", "", kFlags, false},
    {"uat_in", "Receives UAT", "", kFlags, false},
    {"arv", "Reports air velocity", "", kFlags, false},
    {"ts", "Reports target state", "", kFlags, false},
    {"tc", "Reports of trajectory changes", ""},
    {"position_offset_applied", "Position offset applied", "", kFlags, false},
    {"b2_low", "Below 70 W", "", kFlags, false},
    {"length_width", "Length and width code", ""},
    {"ra_active", "Advisory active", "", kFlags, false},
    {"ident_active", "Ident", "", kFlags, false},
    {"single_antenna", "Single antenna", "", kFlags, false},
    {"gps_offset", "Antenna offset code", ""},
    {"nic_supplement_a", "NIC supplement A", ""},
    {"nic_c", "NIC supplement C", ""},
    {"nac_p", "NACp", ""},
    {"nac_v", "NACv", ""},
    {"nic_baro", "NICbaro", ""},
    {"sil", "SIL", ""},
    {"sda", "SDA", ""},
    {"gva", "GVA", ""},
    {"baq", "BAQ", ""},
    {"track_is_heading", "Surface track is a heading", "", kFlags, false},
    {"hrd", "Headings are by", "", kNorths, false},
    // resolution advisories, register 3,0
    {"ara", "Active advisories, bits", ""},
    {"rac", "Advisory complements, bits", ""},
    {"ra_terminated", "Advisory has ended", "", kFlags, false},
    {"multiple_threat", "Several threats", "", kFlags, false},
    {"issued_ra", "Advisory", "", kFlags, false},
    {"corrective", "Corrective", "", kFlags, false},
    {"downward_sense", "Downward", "", kFlags, false},
    {"increased_rate", "Increased rate", "", kFlags, false},
    {"sense_reversal", "Reversed sense", "", kFlags, false},
    {"altitude_crossing", "Crosses the altitude", "", kFlags, false},
    {"positive", "Climb or descend", "", kFlags, false},
    {"up_correction", "Corrects upward", "", kFlags, false},
    {"positive_climb", "Climb", "", kFlags, false},
    {"down_correction", "Corrects downward", "", kFlags, false},
    {"positive_descend", "Descend", "", kFlags, false},
    {"no_below", "Do not pass below", "", kFlags, false},
    {"no_above", "Do not pass above", "", kFlags, false},
    {"no_left", "Do not turn left", "", kFlags, false},
    {"no_right", "Do not turn right", "", kFlags, false},
    {"threat_type_indicator", "Threat is told by", "", kThreatTypes},
    {"threat_icao", "Threat address", ""},
    {"threat_altitude", "Threat altitude", "feet"},
    {"threat_range", "Threat range", "nautical miles"},
    {"threat_bearing", "Threat bearing", "degrees"},
    // registers 1,0 to 2,1
    {"config", "Continued in 1,1", "", kFlags, false},
    {"overlay_command_capability", "Overlay command", "", kFlags, false},
    {"acas_operational", "ACAS operational", "", kFlags, false},
    {"mode_s_subnetwork_version", "Subnetwork version", ""},
    {"transponder_level5", "Enhanced protocol", "", kFlags, false},
    {"mode_s_specific_services", "Mode S specific services", "", kFlags, false},
    {"uplink_elm_throughput", "Uplink throughput code", ""},
    {"downlink_elm_throughput", "Downlink throughput code", ""},
    {"aircraft_identification_capability", "Identification", "", kFlags, false},
    {"squitter_capability", "Squitters", "", kFlags, false},
    {"surveillance_identifier_code", "Surveillance identifiers", "", kFlags, false},
    {"common_usage_gicb_capability", "Change of capability", "", kFlags, false},
    {"acas_hybrid_surveillance", "ACAS hybrid surveillance", "", kFlags, false},
    {"acas_resolution_advisory", "ACAS gives advisories", "", kFlags, false},
    {"acas_rtca_version", "ACAS version", ""},
    {"dte_status", "Data terminals, bits", ""},
    {"supported_bds", "Registers served", ""},
    {"registration", "Registration", ""},
    {"airline", "Airline", ""},
    // registers 4,0 to 4,5
    {"selected_altitude_mcp", "Selected altitude, MCP or FCU", "feet"},
    {"selected_altitude_fms", "Selected altitude, FMS", "feet"},
    {"target_altitude_source", "Target altitude source", ""},
    {"figure_of_merit", "Figure of merit", ""},
    {"wind_speed", "Wind speed", "knots"},
    {"wind_direction", "Wind from", "degrees"},
    {"static_air_temperature", "Static air temperature", "degrees Celsius"},
    {"static_pressure", "Static pressure", "hPa"},
    {"turbulence", "Turbulence", "", kHazards},
    {"humidity", "Humidity", "percent"},
    {"wind_shear", "Wind shear", "", kHazards},
    {"microburst", "Microburst", "", kHazards},
    {"icing", "Icing", "", kHazards},
    {"wake_vortex", "Wake vortex", "", kHazards},
    {"radio_height", "Radio height", "feet"},
    // registers 5,0 to 6,0
    {"roll", "Roll", "degrees"},
    {"true_track", "True track", "degrees"},
    {"track_rate", "Track rate", "degrees per second"},
    {"true_airspeed", "True airspeed", "knots"},
    {"magnetic_heading", "Magnetic heading", "degrees"},
    {"indicated_airspeed", "Indicated airspeed", "knots"},
    {"mach", "Mach", ""},
    {"baro_vertical_rate", "Barometric vertical rate", "feet per minute"},
    {"inertial_vertical_rate", "Inertial vertical rate", "feet per minute"},
};

// By the order of `kRegisters`. ICAO Doc 9871, tables A-2-16 to A-2-96.
constexpr std::array<std::string_view, airspace::kRegisters.size()> kRegisterTitles{"data link capability",
    "common usage capability", "aircraft identification", "aircraft registration", "resolution advisory",
    "selected vertical intention", "routine meteorology", "meteorological hazards", "track and turn",
    "air-referenced state", "heading and speed"};

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
    return emitterCategoryText("DCBA"[typeCode - 1] + field.description());
}

ValueTitle const* titleOfValue(std::string_view name) {
    auto const* const found = std::ranges::find(kValueTitles, name, &ValueTitle::name);
    return found != std::end(kValueTitles) ? found : nullptr;
}

std::string_view titleOf(airspace::Register number) {
    auto const* const found = std::ranges::find(airspace::kRegisters, number);
    return kRegisterTitles[static_cast<std::size_t>(found - airspace::kRegisters.begin())];
}

std::string emitterCategoryText(std::string_view category) {
    constexpr std::string_view kSets = "DCBA"; // by type code
    if (category.size() != 2 || kSets.find(category[0]) == std::string_view::npos) return std::string(category);
    auto const number = static_cast<unsigned>(category[1] - '0');
    return std::string(category) + ", " + std::string(entry(kCategories[kSets.find(category[0])], number));
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
