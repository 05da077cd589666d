// SPDX-License-Identifier: MIT
// Readings by the standards, of any bytes: each value lies in its documented range and has a name of its own, what
// follows a frame changes nothing, registers are read and chosen, positions lie on the globe.
//
// Input: version, what is known of the aircraft, two compact positions and a reference, the frame.
#include <airspace/compact_position.h>
#include <airspace/message_fields.h>
#include <airspace/register_choice.h>

#include "harness/any_number.h"
#include "harness/require.h"
#include "harness/target.h"

#include <cmath>
#include <map>
#include <string>
#include <variant>

namespace quorvel::fuzz {

namespace {

using namespace airspace;

// The bounds of numbers by name, both included; directions do not reach 360.
struct Range {
    double low, high;
};

constexpr Range kDirection{0.0, 359.9999};
constexpr Range kFlag{0, 1};

std::map<std::string_view, Range> const kRanges{
    {"df", {0, 24}},
    {"remainder", {0, 0xFFFFFF}},
    {"flight_status", {0, 7}},
    {"downlink_request", {0, 31}},
    {"utility_message", {0, 63}},
    {"sensitivity_level", {0, 7}},
    {"reply_information", {0, 15}},
    {"cross_link_capability", kFlag},
    {"capability", {0, 7}},
    {"cf", {0, 7}},
    {"ii", {0, 15}},
    {"si", {0, 63}},
    {"altitude", {-1000, 126'700}},
    {"threat_altitude", {-1000, 126'700}},
    {"threat_range", {0, 12.5}},
    {"threat_bearing", {3, 357}},
    {"ara", {0, 0x3FFF}},
    {"rac", {0, 15}},
    {"typecode", {0, 31}},
    {"subtype", {0, 7}},
    {"category", {0, 7}},
    {"nuc_p", {0, 9}},
    {"nac_p", {0, 15}},
    {"nac_v", {0, 7}},
    {"sil", {0, 3}},
    {"sda", {0, 3}},
    {"gva", {0, 3}},
    {"baq", {0, 3}},
    {"version", {0, 7}},
    {"cpr_format", kFlag},
    {"cpr_lat", {0, 131'071}},
    {"cpr_lon", {0, 131'071}},
    {"movement", {0, 127}},
    {"groundspeed", {0, 5'782}}, // 4,088 kt each to the north and to the east
    {"groundspeed_upper", {0, 2'000}},
    {"velocity_ew", {-4'088, 4'088}},
    {"velocity_ns", {-4'088, 4'088}},
    {"airspeed", {0, 4'088}},
    {"vertical_rate", {-32'640, 32'640}},
    {"geo_minus_baro", {-3'137.5, 3'137.5}},
    {"track", kDirection},
    {"heading", kDirection},
    {"selected_heading", kDirection},
    {"target_direction", kDirection},
    {"selected_altitude", {0, 65'472}},
    {"target_altitude", {-1'000, 100'000}},
    {"baro_pressure_setting", {800, 1'209.5}},
    {"selected_altitude_mcp", {0, 65'520}},
    {"selected_altitude_fms", {0, 65'520}},
    {"roll", {-90, 90}},
    {"true_track", kDirection},
    {"track_rate", {-16, 16}},
    {"true_airspeed", {0, 2'047.5}},
    {"magnetic_heading", kDirection},
    {"indicated_airspeed", {0, 1'023}},
    {"mach", {0, 4.096}},
    {"baro_vertical_rate", {-16'384, 16'352}},
    {"inertial_vertical_rate", {-16'384, 16'352}},
    {"wind_speed", {0, 511}},
    {"wind_direction", kDirection},
    {"static_air_temperature", {-256, 255.75}},
    {"static_pressure", {0, 2'047}},
    {"humidity", {0, 100}},
    {"radio_height", {0, 65'520}},
    {"turbulence", {0, 3}},
    {"emergency_state", {0, 7}},
    {"length_width", {0, 15}},
    {"gps_offset", {0, 255}},
};

// Takes the values of one message, and judges each of them.
struct Values {
    using Value = std::variant<double, std::string>;
    std::map<std::string, Value> values;

    void add(std::string_view name, Value value) {
        require(values.emplace(name, std::move(value)).second, "a name stands once in a message");
    }

    void operator()(std::string_view name, double value) {
        require(std::isfinite(value), "values are numbers");
        auto const range = kRanges.find(name);
        if (range != kRanges.end()) requireWithin(value, range->second.low, range->second.high, range->first.data());
        add(name, value);
    }
    void operator()(std::string_view name, int value) { operator()(name, static_cast<double>(value)); }
    void operator()(std::string_view name, bool value) { add(name, value ? 1.0 : 0.0); }
    void operator()(std::string_view name, std::string_view text) { add(name, std::string(text)); }
    void operator()(std::string_view name, RegisterNumbers const& numbers) {
        require(numbers.size() <= 32, "an aircraft serves at most 32 registers here");
        add(name, static_cast<double>(numbers.size()));
    }
};

template <class Content> Values valuesOf(Content const& content) {
    Values values;
    visitFields(values, content);
    return values;
}

std::optional<double> maybe(Input& input) {
    return input.byte() % 2 == 0 ? std::nullopt : std::optional(anyNumber(input));
}

// Whatever a host believes to know.
KnownState anyKnown(Input& input) {
    KnownState known;
    if (input.byte() % 2 != 0) known.altitudeFt = anyInteger(input) % 1'000'000;
    if (input.byte() % 2 != 0) known.verticalRateFtMin = anyInteger(input) % 100'000;
    for (auto* const value : {&known.groundSpeedKt, &known.trackDegrees, &known.headingDegrees,
             &known.indicatedAirspeedKt, &known.trueAirspeedKt, &known.mach, &known.pressureSettingHpa}) {
        *value = maybe(input);
        if (*value && !std::isfinite(**value)) value->reset(); // numbers are promised
    }
    return known;
}

void checkRegisters(std::string_view mb, KnownState const& known) {
    for (auto const number : kRegisters) valuesOf(readRegister(mb, number));
    auto const fitting = fittingRegisters(mb);
    auto const choice = chooseRegister(mb, known);
    requireWithin(choice.score, 0.0, 1.0, "score of a choice");
    require(choice.best || (choice.isUnsure && fitting.isEmpty()), "what fits is chosen from, and nothing else");
    auto const only = fitting.only();
    require(!only || choice.best, "the only register that fits is a candidate");
}

void checkPlace(std::optional<Place> const& place) {
    if (!place) return;
    requireWithin(place->latitude, -90.0, 90.0, "latitude");
    requireWithin(place->longitude, -180.0, 180.0, "longitude");
    require(place->longitude < 180.0, "180 degrees east are 180 degrees west");
}

CompactPosition anyPosition(Input& input) {
    auto const flags = input.byte();
    auto const latitude = input.number<std::uint32_t>() & 0x1FFFF;
    auto const longitude = input.number<std::uint32_t>() & 0x1FFFF;
    return {latitude, longitude, (flags & 1) != 0, (flags & 2) != 0};
}

void checkPositions(Input& input) {
    auto const older = anyPosition(input);
    auto const newer = anyPosition(input);
    auto const latitude = anyNumber(input);
    Place const reference{latitude, anyNumber(input)};
    checkPlace(globalPosition(older, newer));
    checkPlace(globalPosition(older, newer, reference));
    auto const place = localPosition(newer, reference);
    checkPlace(place);
    double const halfZone = newer.isOnSurface ? 0.77 : 3.06;
    require(!place || std::abs(place->latitude - reference.latitude) <= halfZone, "a local position is near");
    auto const zones = longitudeZones(latitude);
    requireWithin(zones, 1, 59, "longitude zones");
}

void checkMessage(std::string const& frame, Reading const& how) {
    auto const message = read(frame, how);
    auto const values = valuesOf(message).values;
    auto const size = frame.empty() ? 0 : modeSFrameBytes(frame.front());
    bool const isFrame = size != 0 && frame.size() >= size;
    require(std::holds_alternative<std::monostate>(message) == !isFrame, "frames are read, and nothing else");
    require((headerOf(message) != nullptr) == isFrame, "each message has a header");
    if (!isFrame) return;
    require(valuesOf(read(frame.substr(0, size), how)).values == values, "what follows a frame changes nothing");
    require(valuesOf(read(frame + "more", how)).values == values, "nor does what is added");
}

} // namespace

void runTarget(Input input) {
    Reading how;
    if (auto const version = input.byte(); version < 8) how.version = version;
    auto const known = anyKnown(input);
    checkPositions(input);
    auto const frame = input.rest();
    checkMessage(frame, how);
    checkRegisters(frame.size() >= 11 ? std::string_view(frame).substr(4, 7) : std::string_view(frame), known);
}

} // namespace quorvel::fuzz
