// SPDX-License-Identifier: MIT
#include "outputs/json_lines.h"

#include "outputs/item_text.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace quorvel::outputs {

namespace {

using Json = nlohmann::json;

// The object of one aircraft, written item by item: there are many, and an object that keeps their order
// looks each up in all before. Values that are not valid are null.
class Snapshot {
public:
    explicit Snapshot(Aircraft const& aircraft) : _aircraft(aircraft) {}

    template <class T> void add(std::string const& name, T&& value, bool valid = true) {
        _text += _text.empty() ? "{\"" : ",\"";
        _text += name + "\":";
        _text += valid ? text(Json(std::forward<T>(value))) : "null";
    }

    void addTime(std::string const& name, airspace::TimeMs time) {
        add(name, modes::ADSBTargetReport::timeToString(time), time != 0);
        add(name + "Ms", time, time != 0);
    }

    // Where it comes from and since when, of an item that was reported.
    template <class T> void addReport(airspace::ItemText const& text, airspace::Item<T> const& item) {
        if (item.updated == 0) return;
        std::string const name(text.name);
        if (item.source != airspace::Source::None) add(name + "Source", nameOf(item.source));
        addTime(name + "LastUpdate", item.updated);
        add(name + "Age", seconds(_aircraft.age(item.updated)));
        if (text.hasChange) addTime(name + "LastChange", item.changed);
    }

    std::string line() const { return _text + "}\n"; }

private:
    static std::string text(Json const& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

    Aircraft const& _aircraft;
    std::string _text;
};

// The values in JSON, and what else is written about some items.
template <class T> T const& jsonOf(T const& value) { return value; }
unsigned jsonOf(airspace::Squawk squawk) { return squawk.code; }
unsigned jsonOf(airspace::EmitterCategory category) { return category.number; }
char const* jsonOf(airspace::EmergencyState emergency) { return nameOf(emergency); }
char const* jsonOf(airspace::SilBasis basis) { return nameOf(basis); }
std::string jsonOf(airspace::ResolutionAdvisory const& advisory) { return wordsOf(advisory); }
std::vector<std::string> jsonOf(airspace::SelectedModes const& modes) { return namesOf(modes); }

template <class T>
void addValue(Snapshot& to, std::string const& name, airspace::Item<T> const& item, Aircraft const&) {
    to.add(name, jsonOf(item.value.value_or(T{})), item.value.has_value());
}

void addValue(Snapshot& to, std::string const&, airspace::Item<airspace::Place> const& item, Aircraft const&) {
    auto const place = item.value.value_or(airspace::Place{});
    to.add("latitude", place.latitude, item.value.has_value());
    to.add("longitude", place.longitude, item.value.has_value());
}

void addValue(Snapshot& to, std::string const& name, airspace::Item<airspace::Squawk> const& item, Aircraft const&) {
    auto const squawk = item.value.value_or(airspace::Squawk{});
    to.add(name, jsonOf(squawk), item.value.has_value());
    to.add(name + "String", textOf(squawk), item.value.has_value());
}

} // namespace

std::string jsonLine(Picture const& picture, Aircraft const& aircraft) {
    Snapshot snapshot(aircraft);
    snapshot.add("formatVersion", kJsonFormatVersion);
    snapshot.addTime("now", aircraft.now);
    snapshot.add("timeKnown", timeKnown(picture, aircraft));
    snapshot.add("source", aircraft.source, !aircraft.source.empty());
    bool const isIcao = aircraft.addressKind == airspace::AddressKind::Icao;
    snapshot.add("trackId", aircraft.trackNumber, aircraft.trackNumber != 0);
    snapshot.add("address", aircraft.name());
    snapshot.add("icaoAddress", aircraft.address, isIcao);
    snapshot.add("icaoAddressString", aircraft.name(), isIcao);
    snapshot.add("state", aircraft.state, !aircraft.state.empty());
    snapshot.add("stateCode", aircraft.stateCode, !aircraft.stateCode.empty());
    snapshot.add("isMilitaryAddress", aircraft.isMilitaryAddress);
    snapshot.add("type", aircraft.type, !aircraft.type.empty());
    snapshot.add("operator", aircraft.operatorName, !aircraft.operatorName.empty());
    snapshot.addTime("lastUpdate", aircraft.heard);
    snapshot.add("age", seconds(aircraft.age(aircraft.heard)), aircraft.heard != 0);
    snapshot.add("messages", aircraft.messages);
    snapshot.add("positionsRefused", aircraft.positionsRefused);
    airspace::visitItems(aircraft, [&](airspace::ItemText const& text, auto const& item) {
        std::string const name(text.name);
        addValue(snapshot, name, item, aircraft);
        if (name == "mopsVersion") snapshot.add(name + "Confirmed", aircraft.mopsVersionConfirmed);
        snapshot.addReport(text, item);
    });
    return snapshot.line();
}

JsonLines::JsonLines(std::unique_ptr<Sink> sink) : _sink(std::move(sink)) {}

void JsonLines::picture(Picture const& picture) {
    std::map<Key, State> written;
    for (auto const& aircraft : picture.aircraft) {
        Key const key{aircraft.source, aircraft.name()};
        State const state{aircraft.heard, aircraft.messages};
        auto const before = _written.find(key);
        if (before == _written.end() || before->second != state) _sink->write(jsonLine(picture, aircraft));
        written.emplace(key, state);
    }
    _written.swap(written); // those that are gone are forgotten
    _sink->flush();
}

} // namespace quorvel::outputs
