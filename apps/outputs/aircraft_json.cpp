// SPDX-License-Identifier: MIT
#include "outputs/aircraft_json.h"

#include "outputs/shown_aircraft.h"
#include "outputs/text.h"
#include "outputs/whole_file.h"

#include <modes/adsb_message.h>
#include <modes/df_message.h>
#include <modes/trevallo.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

namespace quorvel::host {

namespace {

using Json = nlohmann::ordered_json;
using Report = modes::ADSBTargetReport;

double rounded(double number, double steps) { return std::round(number * steps) / steps; }

std::string dumped(Json const& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

// What the Mode A code says (ICAO Annex 10 Vol. IV, 2.1.4.2).
char const* emergency(unsigned int squawk) {
    switch (squawk) {
    case 07500: return "unlawful";
    case 07600: return "nordo";
    case 07700: return "general";
    default: return "none";
    }
}

// Level of a signal of which 255 is full scale, in decibels of power.
double decibels(unsigned char amplitude) {
    constexpr double kFullScale = 255;
    return rounded(20 * std::log10(amplitude / kFullScale), 10);
}

// "A0" to "D7": the sets are numbered downwards by the type code of the identification.
char categorySet(modes::ADSBMessage::ADSBMessageType type, unsigned int typeCode) {
    return type == modes::ADSBMessage::ACID ? static_cast<char>('A' + (4 - typeCode)) : '\0';
}

void addIdentity(Json& to, Report const& r, char set) {
    if (r.callsignValid()) to["flight"] = printable(r.callsign());
    if (r.squawkValid()) {
        to["squawk"] = squawkText(r.squawk());
        to["emergency"] = emergency(r.squawk());
    }
    if (set != 0 && r.emitterCategoryValid()) {
        to["category"] = std::string(1, set) + std::to_string(r.emitterCategory());
    }
    if (r.alertStatusValid()) to["alert"] = r.alertStatus() ? 1 : 0;
    if (r.spiStatusValid()) to["spi"] = r.spiStatus() ? 1 : 0;
}

// What moves is left out when it is old: the format has no ages for it.
void addMotion(Json& to, Aircraft const& aircraft) {
    auto const& r = *aircraft.report;
    auto const isFresh = [&](bool valid, TimeMs lastUpdate) {
        return valid && aircraft.age(lastUpdate) <= kPositionShown;
    };
    if (isFresh(r.groundStatusValid(), r.groundStatusLastUpdate()) && r.groundStatus()) {
        to["alt_baro"] = "ground";
    } else if (isFresh(r.altitudeBaroValid(), r.altitudeBaroLastUpdate())) {
        to["alt_baro"] = r.altitudeBaro();
    }
    if (isFresh(r.groundSpeedValid(), r.groundSpeedLastUpdate())) to["gs"] = rounded(r.groundSpeed(), 10);
    if (isFresh(r.headingValid(), r.headingLastUpdate())) to["track"] = rounded(r.heading(), 100);
    if (isFresh(r.verticalRateBaroValid(), r.verticalRateBaroLastUpdate())) {
        to["baro_rate"] = r.verticalRateBaro();
    }
    if (!showsPosition(aircraft)) return;
    to["lat"] = rounded(r.latitude(), 1e6);
    to["lon"] = rounded(r.longitude(), 1e6);
    to["seen_pos"] = seconds(aircraft.age(r.positionLastUpdate()));
}

void addQuality(Json& to, Report const& r) {
    if (r.mopsVersionConfirmed() && r.mopsVersion() != modes::MOPS_UNKNOWN) {
        to["version"] = static_cast<unsigned int>(r.mopsVersion());
    }
    if (r.nucpValid()) to["nucp"] = r.nucp();
    if (r.nicValid()) to["nic"] = r.nic();
    if (r.nacpValid()) to["nac_p"] = r.nacp();
    if (r.silValid()) to["sil"] = r.sil();
}

Json entry(Aircraft const& aircraft, char set) {
    auto const& report = *aircraft.report;
    auto hex = addressText(report.icaoAddress());
    for (char& digit : hex) {
        if (digit >= 'A') digit = static_cast<char>(digit - 'A' + 'a');
    }
    Json object;
    object["hex"] = hex;
    addIdentity(object, report, set);
    addMotion(object, aircraft);
    addQuality(object, report);
    // none of the values comes from multilateration or a traffic information service
    object["mlat"] = Json::array();
    object["tisb"] = Json::array();
    object["messages"] = aircraft.messages;
    object["seen"] = seconds(aircraft.age(report.lastUpdate()));
    // 0 is what encodings without a signal level give, and has no logarithm
    if (report.signalAmplitudeValid() && report.signalAmplitude() > 0) {
        object["rssi"] = decibels(report.signalAmplitude());
    }
    return object;
}

bool isListed(Aircraft const& aircraft) {
    return aircraft.age(aircraft.report->lastUpdate()) <= kAircraftListed;
}

std::string receiverText(std::optional<Place> const& location) {
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

void AircraftDocument::heard(HeardFrame const& heard) {
    auto const* squitter = dynamic_cast<modes::DF17Message const*>(heard.message);
    if (squitter == nullptr || squitter->confidence() != modes::ModeSMessage::HIGH) return;
    auto const& payload = squitter->constFieldME().data();
    if (payload.empty()) return;
    auto const typeCode = static_cast<std::uint8_t>(static_cast<unsigned char>(payload[0]) >> 3);
    auto const set = categorySet(modes::ADSBMessage::typeByCode(typeCode), typeCode);
    if (set != 0) _categorySets[squitter->icaoAddress()] = set;
}

std::string AircraftDocument::text(Picture const& picture) const {
    Json json;
    json["now"] = seconds(picture.now);
    if (!timeKnown(picture)) json["time_known"] = false;
    json["messages"] = picture.counters.frames - picture.counters.undecoded;
    auto& list = json["aircraft"] = Json::array();
    for (auto const* aircraft : newestByAddress(picture)) {
        if (!isListed(*aircraft)) continue;
        auto const set = _categorySets.find(aircraft->report->icaoAddress());
        list.push_back(entry(*aircraft, set == _categorySets.end() ? '\0' : set->second));
    }
    return dumped(json);
}

void AircraftDocument::forgetAllBut(Picture const& picture) {
    auto const aircraft = newestByAddress(picture);
    std::erase_if(_categorySets, [&](auto const& entry) {
        auto const at = std::lower_bound(
            aircraft.begin(), aircraft.end(), entry.first,
            [](Aircraft const* a, unsigned int address) { return a->report->icaoAddress() < address; });
        return at == aircraft.end() || (*at)->report->icaoAddress() != entry.first;
    });
}

AircraftJson::AircraftJson(std::string file, std::optional<Place> const& location) : _file(std::move(file)) {
    auto const beside = std::filesystem::path(_file).replace_filename("receiver.json");
    writeWhole(beside.string(), receiverText(location));
}

void AircraftJson::picture(Picture const& picture) {
    writeWhole(_file, text(picture));
    forgetAllBut(picture);
}

} // namespace quorvel::host
