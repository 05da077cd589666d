// SPDX-License-Identifier: MIT
#include "outputs/json_lines.h"

#include "outputs/shown_aircraft.h"
#include "outputs/text.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace quorvel::host {

namespace {

using Json = nlohmann::json;
using Report = modes::ADSBTargetReport;

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

    void addTime(std::string const& name, TimeMs time) {
        add(name, Report::timeToString(time), time != 0);
        add(name + "Ms", time, time != 0);
    }

    void addUpdate(std::string const& item, TimeMs time) {
        addTime(item + "LastUpdate", time);
        add(item + "Age", seconds(_aircraft.age(time)), time != 0);
    }

    void addChange(std::string const& item, TimeMs time) { addTime(item + "LastChange", time); }

    std::string line() const { return _text + "}\n"; }

private:
    static std::string text(Json const& value) {
        return value.dump(-1, ' ', false, Json::error_handler_t::replace);
    }

    Aircraft const& _aircraft;
    std::string _text;
};

void addIdentity(Snapshot& to, Report const& r) {
    to.add("callsign", r.callsign(), r.callsignValid());
    to.addUpdate("callsign", r.callsignLastUpdate());
    to.addChange("callsign", r.callsignLastChange());
    to.add("emitterCategory", r.emitterCategory(), r.emitterCategoryValid());
    to.addUpdate("emitterCategory", r.emitterCategoryLastUpdate());
    to.addChange("emitterCategory", r.emitterCategoryLastChange());
    to.add("squawk", r.squawk(), r.squawkValid());
    to.add("squawkString", squawkText(r.squawk()), r.squawkValid());
    to.addUpdate("squawk", r.squawkLastUpdate());
    to.addChange("squawk", r.squawkLastChange());
}

void addMotion(Snapshot& to, Report const& r) {
    to.add("latitude", r.latitude(), r.positionValid());
    to.add("longitude", r.longitude(), r.positionValid());
    to.addUpdate("position", r.positionLastUpdate());
    to.add("signalAmplitude", r.signalAmplitude(), r.signalAmplitudeValid());
    to.addUpdate("signalAmplitude", r.signalAmplitudeLastUpdate());
    to.add("altitudeBaro", r.altitudeBaro(), r.altitudeBaroValid());
    to.addUpdate("altitudeBaro", r.altitudeBaroLastUpdate());
    to.add("groundSpeed", r.groundSpeed(), r.groundSpeedValid());
    to.addUpdate("groundSpeed", r.groundSpeedLastUpdate());
    to.add("heading", r.heading(), r.headingValid());
    to.addUpdate("heading", r.headingLastUpdate());
    to.add("verticalRateBaro", r.verticalRateBaro(), r.verticalRateBaroValid());
    to.addUpdate("verticalRateBaro", r.verticalRateBaroLastUpdate());
}

void addStatus(Snapshot& to, Report const& r) {
    to.add("groundStatus", r.groundStatus(), r.groundStatusValid());
    to.addUpdate("groundStatus", r.groundStatusLastUpdate());
    to.addChange("groundStatus", r.groundStatusLastChange());
    to.add("spiStatus", r.spiStatus(), r.spiStatusValid());
    to.addUpdate("spiStatus", r.spiStatusLastUpdate());
    to.addChange("spiStatus", r.spiStatusLastChange());
    to.add("alertStatus", r.alertStatus(), r.alertStatusValid());
    to.addUpdate("alertStatus", r.alertStatusLastUpdate());
    to.addChange("alertStatus", r.alertStatusLastChange());
    to.add("mopsVersion", static_cast<unsigned int>(r.mopsVersion()), r.mopsVersion() != modes::MOPS_UNKNOWN);
    to.add("mopsVersionConfirmed", r.mopsVersionConfirmed());
    to.addUpdate("mopsVersion", r.mopsVersionLastUpdate());
    to.addChange("mopsVersion", r.mopsVersionLastChange());
}

void addQuality(Snapshot& to, Report const& r) {
    to.add("nucp", r.nucp(), r.nucpValid());
    to.addUpdate("nucp", r.nucpLastUpdate());
    to.addChange("nucp", r.nucpLastChange());
    to.add("nucr", r.nucr(), r.nucrValid());
    to.addUpdate("nucr", r.nucrLastUpdate());
    to.addChange("nucr", r.nucrLastChange());
    to.add("nic", r.nic(), r.nicValid());
    to.addUpdate("nic", r.nicLastUpdate());
    to.addChange("nic", r.nicLastChange());
    to.add("nicSuppA", r.nicSuppA(), r.nicSuppAValid());
    to.addUpdate("nicSuppA", r.nicSuppALastUpdate());
    to.add("nicSuppB", r.nicSuppB(), r.nicSuppBValid());
    to.addUpdate("nicSuppB", r.nicSuppBLastUpdate());
    to.add("nicSuppC", r.nicSuppC(), r.nicSuppCValid());
    to.addUpdate("nicSuppC", r.nicSuppCLastUpdate());
    to.add("pic", r.pic(), r.picValid());
    to.addUpdate("pic", r.picLastUpdate());
    to.addChange("pic", r.picLastChange());
    to.add("nacp", r.nacp(), r.nacpValid());
    to.addUpdate("nacp", r.nacpLastUpdate());
    to.addChange("nacp", r.nacpLastChange());
    to.add("sil", r.sil(), r.silValid());
    to.addUpdate("sil", r.silLastUpdate());
    to.addChange("sil", r.silLastChange());
}

} // namespace

std::string jsonLine(Picture const& picture, Aircraft const& aircraft) {
    auto const& report = *aircraft.report;
    Snapshot snapshot(aircraft);
    snapshot.addTime("now", aircraft.now);
    snapshot.add("timeKnown", timeKnown(picture, aircraft));
    snapshot.add("source", aircraft.source, !aircraft.source.empty());
    snapshot.add("trackId", report.trackId(), report.trackIdValid());
    snapshot.add("icaoAddress", report.icaoAddress(), report.icaoAddressValid());
    snapshot.add("icaoAddressString", addressText(report.icaoAddress()), report.icaoAddressValid());
    snapshot.addTime("lastUpdate", report.lastUpdate());
    snapshot.add("age", seconds(aircraft.age(report.lastUpdate())), report.lastUpdate() != 0);
    snapshot.add("messages", aircraft.messages);
    snapshot.add("positionsRefused", aircraft.positionsRefused);
    addIdentity(snapshot, report);
    addMotion(snapshot, report);
    addStatus(snapshot, report);
    addQuality(snapshot, report);
    return snapshot.line();
}

JsonLines::JsonLines(std::unique_ptr<Sink> sink) : _sink(std::move(sink)) {}

void JsonLines::picture(Picture const& picture) {
    std::map<Key, State> told;
    for (auto const& aircraft : picture.aircraft) {
        Key const key{aircraft.source, aircraft.report->icaoAddress()};
        State const state{aircraft.report->lastUpdate(), aircraft.messages};
        auto const before = _told.find(key);
        if (before == _told.end() || before->second != state) _sink->write(jsonLine(picture, aircraft));
        told.emplace(key, state);
    }
    _told.swap(told); // those that are gone are forgotten
    _sink->flush();
}

} // namespace quorvel::host
