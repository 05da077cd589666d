// SPDX-License-Identifier: MIT
#include "outputs/aircraft_json.h"

#include "files/host_error.h"
#include "files/replaced_file.h"
#include "outputs/item_text.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <modes/trevallo.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <filesystem>
#include <initializer_list>
#include <utility>

namespace quorvel::outputs {

namespace {

using Json = nlohmann::ordered_json;

double rounded(double number, double steps) { return std::round(number * steps) / steps; }

std::string dumped(Json const& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"; }

airspace::EmergencyState stateOf(airspace::Emergency emergency) {
    switch (emergency) {
    case airspace::Emergency::Unlawful: return airspace::EmergencyState::UnlawfulInterference;
    case airspace::Emergency::Radio: return airspace::EmergencyState::NoCommunications;
    case airspace::Emergency::General: return airspace::EmergencyState::General;
    case airspace::Emergency::None: break;
    }
    return airspace::EmergencyState::None;
}

// Level of a signal, full scale being 255, in decibels of power.
double decibels(unsigned char amplitude) {
    constexpr double kFullScale = 255;
    return rounded(20 * std::log10(amplitude / kFullScale), 10);
}

// What the format calls an aircraft of this kind of address whose best items are of this source.
struct TypeName {
    airspace::AddressKind address;
    airspace::Source source;
    char const* name;
};
constexpr TypeName kTypeNames[] = {
    {airspace::AddressKind::Icao, airspace::Source::AdsB, "adsb_icao"},
    {airspace::AddressKind::Icao, airspace::Source::AdsR, "adsr_icao"},
    {airspace::AddressKind::Icao, airspace::Source::TisB, "tisb_icao"},
    {airspace::AddressKind::NonIcao, airspace::Source::AdsB, "adsb_other"},
    {airspace::AddressKind::NonIcao, airspace::Source::AdsR, "adsr_other"},
    {airspace::AddressKind::TrackFile, airspace::Source::TisB, "tisb_trackfile"},
    {airspace::AddressKind::TisB, airspace::Source::TisB, "tisb_other"},
};

// The best source of the items that are not old.
airspace::Source bestSource(Aircraft const& a) {
    auto best = airspace::Source::ModeS;
    airspace::visitItems(a, [&](airspace::ItemText const&, auto const& item) {
        bool const isFresh = item.updated != 0 && a.age(item.updated) <= kPositionShown;
        if (isFresh && item.source != airspace::Source::None && item.source < best) best = item.source;
    });
    return best;
}

char const* typeOf(Aircraft const& a) {
    auto const source = bestSource(a);
    for (auto const& each : kTypeNames) {
        if (each.address == a.addressKind && each.source == source) return each.name;
    }
    return a.addressKind == airspace::AddressKind::Icao ? "mode_s" : "other";
}

void addIdentity(Json& to, Aircraft const& a) {
    if (a.callsign.value) to["flight"] = files::printable(*a.callsign.value);
    if (a.registration.value) to["r"] = files::printable(*a.registration.value);
    if (!a.type.empty()) to["t"] = files::printable(a.type);
    if (!a.operatorName.empty()) to["ownOp"] = files::printable(a.operatorName);
    if (a.squawk.value) to["squawk"] = airspace::textOf(*a.squawk.value);
    if (a.squawk.value || a.emergency.value) {
        bool const isSent =
            a.emergency.value.value_or(airspace::EmergencyState::None) != airspace::EmergencyState::None &&
            a.age(a.emergency.updated) <= kPositionShown;
        auto const bySquawk = stateOf(a.squawk.value.value_or(airspace::Squawk{}).emergency());
        to["emergency"] = nameOf(isSent ? *a.emergency.value : bySquawk);
    }
    if (auto const& category = a.emitterCategory.value; category && category->set != 0) {
        to["category"] = std::string(1, category->set) + std::to_string(category->number);
    }
    if (a.alertStatus.value) to["alert"] = *a.alertStatus.value ? 1 : 0;
    if (a.spiStatus.value) to["spi"] = *a.spiStatus.value ? 1 : 0;
    if (a.isMilitaryAddress) to["dbFlags"] = 1;
}

// Numbers that are left out when they are old: the format has no ages for them.
struct FreshNumber {
    char const* key;
    double (*number)(Aircraft const&, bool& isThere);
    double steps; // of 1, to which it is rounded
};

template <auto Item> double numberOf(Aircraft const& a, bool& isThere) {
    auto const& item = a.*Item;
    isThere = item.value && a.age(item.updated) <= kPositionShown;
    return isThere ? static_cast<double>(*item.value) : 0.0;
}

using A = airspace::Aircraft;
constexpr FreshNumber kNumbers[] = {
    {"alt_geom", numberOf<&A::altitudeGnss>, 1},
    {"gs", numberOf<&A::groundSpeed>, 10},
    {"ias", numberOf<&A::indicatedAirspeed>, 1},
    {"tas", numberOf<&A::trueAirspeed>, 1},
    {"mach", numberOf<&A::mach>, 1000},
    {"wd", numberOf<&A::windDirection>, 1},
    {"ws", numberOf<&A::windSpeed>, 1},
    {"oat", numberOf<&A::temperature>, 1},
    {"tat", numberOf<&A::totalTemperature>, 1},
    {"track", numberOf<&A::track>, 100},
    {"track_rate", numberOf<&A::trackRate>, 100},
    {"roll", numberOf<&A::roll>, 100},
    {"mag_heading", numberOf<&A::magneticHeading>, 100},
    {"true_heading", numberOf<&A::trueHeading>, 100},
    {"baro_rate", numberOf<&A::verticalRateBaro>, 1},
    {"geom_rate", numberOf<&A::verticalRateGnss>, 1},
    {"nav_qnh", numberOf<&A::pressureSetting>, 10},
    {"nav_altitude_mcp", numberOf<&A::selectedAltitude>, 1},
    {"nav_altitude_fms", numberOf<&A::selectedAltitudeManagement>, 1},
    {"nav_heading", numberOf<&A::selectedHeading>, 100},
};

void addNumber(Json& to, FreshNumber const& number, Aircraft const& a) {
    bool isThere = false;
    auto const value = number.number(a, isThere);
    if (!isThere) return;
    if (number.steps == 1) {
        to[number.key] = std::lround(value);
    } else {
        to[number.key] = rounded(value, number.steps);
    }
}

void addAltitude(Json& to, Aircraft const& a) {
    auto const fresh = [&](auto const& item) {
        return a.age(item.updated) <= kPositionShown ? item.value : std::nullopt;
    };
    if (fresh(a.groundStatus).value_or(false)) {
        to["alt_baro"] = "ground";
    } else if (auto const altitude = fresh(a.altitudeBaro)) {
        to["alt_baro"] = *altitude;
    }
}

void addModes(Json& to, Aircraft const& a) {
    if (!a.selectedModes.value || a.age(a.selectedModes.updated) > kPositionShown) return;
    to["nav_modes"] = namesOf(*a.selectedModes.value);
}

void addPosition(Json& to, Aircraft const& a) {
    if (!showsPosition(a)) return;
    to["lat"] = rounded(a.position.value->latitude, 1e6);
    to["lon"] = rounded(a.position.value->longitude, 1e6);
    if (a.nic.value) to["nic"] = *a.nic.value;
    if (a.radius.value) to["rc"] = std::lround(*a.radius.value);
    to["seen_pos"] = seconds(a.age(a.position.updated));
    if (a.distance.value) to["r_dst"] = rounded(*a.distance.value, 1000);
    if (a.bearing.value) to["r_dir"] = rounded(*a.bearing.value, 10);
}

void addQuality(Json& to, Aircraft const& a) {
    if (a.mopsVersionConfirmed && a.mopsVersion.value) to["version"] = *a.mopsVersion.value;
    if (a.nucp.value) to["nucp"] = *a.nucp.value;
    if (a.nicBaro.value) to["nic_baro"] = *a.nicBaro.value ? 1 : 0;
    if (a.nacp.value) to["nac_p"] = *a.nacp.value;
    if (a.nacv.value) to["nac_v"] = *a.nacv.value;
    if (a.sil.value) to["sil"] = *a.sil.value;
    if (a.silBasis.value) to["sil_type"] = nameOf(*a.silBasis.value);
    if (a.gva.value) to["gva"] = *a.gva.value;
    if (a.sda.value) to["sda"] = *a.sda.value;
}

// What a ground station brought, by the names of the format.
void addTisB(Json& to, Aircraft const& a) {
    auto& list = to["tisb"] = Json::array();
    auto const add = [&](airspace::Source source, std::initializer_list<char const*> names) {
        if (source != airspace::Source::TisB) return;
        for (auto const* name : names) {
            if (to.contains(name)) list.push_back(name);
        }
    };
    add(a.callsign.source, {"flight"});
    add(a.altitudeBaro.source, {"alt_baro"});
    add(a.groundSpeed.source, {"gs"});
    add(a.track.source, {"track"});
    add(a.verticalRateGnss.source, {"geom_rate"});
    add(a.position.source, {"lat", "lon", "nic", "rc"});
}

Json entry(Aircraft const& aircraft) {
    auto hex = airspace::addressText(aircraft.address, aircraft.addressKind);
    for (char& digit : hex) {
        if (digit >= 'A' && digit <= 'F') digit = static_cast<char>(digit - 'A' + 'a');
    }
    Json object;
    object["hex"] = hex;
    object["type"] = typeOf(aircraft);
    addIdentity(object, aircraft);
    addAltitude(object, aircraft);
    for (auto const& number : kNumbers) addNumber(object, number, aircraft);
    addModes(object, aircraft);
    addPosition(object, aircraft);
    addQuality(object, aircraft);
    object["mlat"] = Json::array(); // none of the values comes from multilateration
    addTisB(object, aircraft);
    object["messages"] = aircraft.messages;
    object["seen"] = seconds(aircraft.age(aircraft.heard));
    // 0 is what encodings without a signal level give, and has no logarithm
    if (aircraft.signalAmplitude.value.value_or(0) > 0) {
        object["rssi"] = decibels(*aircraft.signalAmplitude.value);
    }
    return object;
}

bool isListed(Aircraft const& aircraft) { return aircraft.age(aircraft.heard) <= kAircraftListed; }

std::string receiverText(std::optional<airspace::Place> const& location) {
    Json receiver;
    receiver["version"] = modes::Trevallo().version();
    receiver["refresh"] = 1000;
    receiver["history"] = 0;
    if (location) {
        receiver["lat"] = location->latitude;
        receiver["lon"] = location->longitude;
    }
    return dumped(receiver);
}

} // namespace

std::string aircraftDocument(Picture const& picture) {
    Json json;
    json["now"] = seconds(picture.now);
    if (!timeKnown(picture)) json["time_known"] = false;
    json["format_version"] = kJsonFormatVersion;
    json["messages"] = picture.counters.frames - picture.counters.undecoded;
    auto& list = json["aircraft"] = Json::array();
    for (auto const* aircraft : newestByAddress(picture)) {
        if (isListed(*aircraft)) list.push_back(entry(*aircraft));
    }
    return dumped(json);
}

AircraftJson::AircraftJson(std::string file, std::optional<airspace::Place> const& location) : _file(std::move(file)) {
    files::makeFolderOf(_file);
    auto const beside = std::filesystem::path(_file).replace_filename("receiver.json");
    try {
        files::writeWhole(beside.string(), receiverText(location));
    } catch (files::HostError const& error) {
        throw files::HostError("cannot write " + _file + ": " + error.what(), error.code());
    }
}

void AircraftJson::picture(Picture const& picture) { files::writeMomentary(_file, aircraftDocument(picture)); }

} // namespace quorvel::outputs
