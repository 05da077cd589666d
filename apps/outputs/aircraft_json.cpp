// SPDX-License-Identifier: MIT
#include "outputs/aircraft_json.h"

#include "files/host_error.h"
#include "files/replaced_file.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <modes/trevallo.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <filesystem>
#include <utility>

namespace quorvel::outputs {

namespace {

using Json = nlohmann::ordered_json;

double rounded(double number, double steps) { return std::round(number * steps) / steps; }

std::string dumped(Json const& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"; }

char const* textOf(airspace::Emergency emergency) {
    switch (emergency) {
    case airspace::Emergency::Unlawful: return "unlawful";
    case airspace::Emergency::Radio: return "nordo";
    case airspace::Emergency::General: return "general";
    case airspace::Emergency::None: break;
    }
    return "none";
}

// Level of a signal, full scale being 255, in decibels of power.
double decibels(unsigned char amplitude) {
    constexpr double kFullScale = 255;
    return rounded(20 * std::log10(amplitude / kFullScale), 10);
}

void addIdentity(Json& to, Aircraft const& a) {
    if (a.callsign.value) to["flight"] = files::printable(*a.callsign.value);
    if (a.squawk.value) {
        to["squawk"] = airspace::textOf(*a.squawk.value);
        to["emergency"] = textOf(a.squawk.value->emergency());
    }
    if (auto const& category = a.emitterCategory.value; category && category->set != 0) {
        to["category"] = std::string(1, category->set) + std::to_string(category->number);
    }
    if (a.alertStatus.value) to["alert"] = *a.alertStatus.value ? 1 : 0;
    if (a.spiStatus.value) to["spi"] = *a.spiStatus.value ? 1 : 0;
}

// What moves is left out when it is old: the format has no ages for it.
void addMotion(Json& to, Aircraft const& a) {
    auto const fresh = [&](auto const& item) {
        return a.age(item.updated) <= kPositionShown ? item.value : std::nullopt;
    };
    if (fresh(a.groundStatus).value_or(false)) {
        to["alt_baro"] = "ground";
    } else if (auto const altitude = fresh(a.altitudeBaro)) {
        to["alt_baro"] = *altitude;
    }
    if (auto const speed = fresh(a.groundSpeed)) to["gs"] = rounded(*speed, 10);
    if (auto const heading = fresh(a.heading)) to["track"] = rounded(*heading, 100);
    if (auto const rate = fresh(a.verticalRateBaro)) to["baro_rate"] = *rate;
    if (!showsPosition(a)) return;
    to["lat"] = rounded(a.position.value->latitude, 1e6);
    to["lon"] = rounded(a.position.value->longitude, 1e6);
    to["seen_pos"] = seconds(a.age(a.position.updated));
}

void addQuality(Json& to, Aircraft const& a) {
    if (a.mopsVersionConfirmed && a.mopsVersion.value) {
        to["version"] = static_cast<unsigned int>(*a.mopsVersion.value);
    }
    if (a.nucp.value) to["nucp"] = *a.nucp.value;
    if (a.nic.value) to["nic"] = *a.nic.value;
    if (a.nacp.value) to["nac_p"] = *a.nacp.value;
    if (a.sil.value) to["sil"] = *a.sil.value;
}

Json entry(Aircraft const& aircraft) {
    auto hex = airspace::addressText(aircraft.address);
    for (char& digit : hex) {
        if (digit >= 'A') digit = static_cast<char>(digit - 'A' + 'a');
    }
    Json object;
    object["hex"] = hex;
    addIdentity(object, aircraft);
    addMotion(object, aircraft);
    addQuality(object, aircraft);
    // none of the values comes from multilateration or a traffic information service
    object["mlat"] = Json::array();
    object["tisb"] = Json::array();
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
