// SPDX-License-Identifier: MIT
#include "outputs/details.h"

#include "outputs/columns.h"
#include "outputs/shown_aircraft.h"
#include "outputs/text.h"

#include <utility>

namespace quorvel::host {

namespace {

using Report = modes::ADSBTargetReport;

constexpr std::size_t kLabelWidth = 20;
constexpr std::size_t kValueWidth = 18;
constexpr std::size_t kAgeWidth = 9;
constexpr std::size_t kTimeWidth = 12; // 12:34:56.789
constexpr std::size_t kLongTimeWidth = 24;
constexpr int kColumnsForLongTimes = 107;

class Details {
public:
    Details(Aircraft const& aircraft, int columns)
        : _aircraft(aircraft)
        , _columns(static_cast<std::size_t>(columns > 0 ? columns : 0))
        , _longTimes(columns >= kColumnsForLongTimes) {}

    void section(char const* title) {
        if (!_screen.empty()) add("", {});
        add(cells(title, "Value", "Age", "Last update", "Last change"), {.bold = true});
    }

    void row(char const* label, bool valid, std::string const& value, TimeMs update = 0, TimeMs change = 0) {
        auto const age = _aircraft.age(update);
        auto const ageText = update == 0 ? std::string() : fixed(seconds(age), 1) + " s";
        add(cells(label, valid ? value : "-", ageText, time(update), time(change)),
            {.dim = update != 0 && age > kPositionShown});
    }

    Screen take() && { return std::move(_screen); }

private:
    std::string time(TimeMs time) const {
        constexpr std::size_t kDateLength = 10;
        auto text = Report::timeToString(time);
        if (_longTimes || text.size() != kLongTimeWidth) return text;
        auto const today = Report::timeToString(_aircraft.now).substr(0, kDateLength);
        auto const date = text.substr(0, kDateLength);
        return date == today ? text.substr(kDateLength + 1, kTimeWidth) : date;
    }

    std::string cells(std::string const& label, std::string const& value, std::string const& age,
                      std::string const& update, std::string const& change) const {
        auto const timeWidth = _longTimes ? kLongTimeWidth : kTimeWidth;
        return aligned(label, kLabelWidth, true) + "  " + aligned(value, kValueWidth, true) + "  " +
               aligned(age, kAgeWidth, false) + "  " + aligned(update, timeWidth, true) + "  " + change;
    }

    void add(std::string text, Style style) {
        if (text.size() > _columns) text.resize(_columns);
        text.erase(text.find_last_not_of(' ') + 1);
        _screen.push_back({{std::move(text), style}});
    }

    Aircraft const& _aircraft;
    std::size_t _columns;
    bool _longTimes;
    Screen _screen;
};

void addIdentification(Details& to, Aircraft const& a) {
    auto const& r = *a.report;
    to.section("Identification");
    to.row("Track number", r.trackIdValid(), std::to_string(r.trackId()), r.lastUpdate());
    to.row("ICAO address", r.icaoAddressValid(), addressText(r.icaoAddress()), r.lastUpdate());
    to.row("Source", !a.source.empty(), printable(a.source));
    to.row("Messages", true, std::to_string(a.messages));
    to.row("Positions refused", true, std::to_string(a.positionsRefused));
}

char const* versionName(modes::MOPSVersion version) {
    switch (version) {
    case modes::MOPS_V0: return "0 (DO-260)";
    case modes::MOPS_V1: return "1 (DO-260A)";
    case modes::MOPS_V2: return "2 (DO-260B)";
    default: return "unknown";
    }
}

void addStaticItems(Details& to, Report const& r) {
    to.section("Static");
    to.row("Callsign", r.callsignValid(), printable(r.callsign()), r.callsignLastUpdate(),
           r.callsignLastChange());
    to.row("Squawk", r.squawkValid(), squawkText(r.squawk()), r.squawkLastUpdate(), r.squawkLastChange());
    to.row("Emitter category", r.emitterCategoryValid(), std::to_string(r.emitterCategory()),
           r.emitterCategoryLastUpdate(), r.emitterCategoryLastChange());
    to.row("Ground status", r.groundStatusValid(), r.groundStatus() ? "on ground" : "airborne",
           r.groundStatusLastUpdate(), r.groundStatusLastChange());
    to.row("SPI", r.spiStatusValid(), r.spiStatus() ? "SPI" : "no SPI", r.spiStatusLastUpdate(),
           r.spiStatusLastChange());
    to.row("Alert", r.alertStatusValid(), r.alertStatus() ? "alert" : "no alert", r.alertStatusLastUpdate(),
           r.alertStatusLastChange());
    to.row("MOPS version", true, versionName(r.mopsVersion()), r.mopsVersionLastUpdate(),
           r.mopsVersionLastChange());
    to.row("MOPS certainty", true, r.mopsVersionConfirmed() ? "confirmed" : "assumed",
           r.mopsVersionLastUpdate(), r.mopsVersionLastChange());
}

void addTacticalItems(Details& to, Report const& r) {
    constexpr int kDecimals = 6;
    to.section("Tactical");
    to.row("Position", r.positionValid(), r.positionString(), r.positionLastUpdate());
    to.row("Latitude", r.positionValid(), fixed(r.latitude(), kDecimals), r.positionLastUpdate());
    to.row("Longitude", r.positionValid(), fixed(r.longitude(), kDecimals), r.positionLastUpdate());
    to.row("Altitude", r.altitudeBaroValid(), std::to_string(r.altitudeBaro()) + " ft",
           r.altitudeBaroLastUpdate());
    to.row("Ground speed", r.groundSpeedValid(), fixed(r.groundSpeed(), kDecimals) + " kt",
           r.groundSpeedLastUpdate());
    to.row("Heading", r.headingValid(), fixed(r.heading(), kDecimals) + " deg", r.headingLastUpdate());
    to.row("Vertical rate", r.verticalRateBaroValid(), std::to_string(r.verticalRateBaro()) + " ft/min",
           r.verticalRateBaroLastUpdate());
    to.row("Signal amplitude", r.signalAmplitudeValid(), std::to_string(r.signalAmplitude()),
           r.signalAmplitudeLastUpdate());
}

void addQuality(Details& to, Report const& r) {
    to.section("Quality");
    to.row("NUCp", r.nucpValid(), std::to_string(r.nucp()), r.nucpLastUpdate(), r.nucpLastChange());
    to.row("NUCr", r.nucrValid(), std::to_string(r.nucr()), r.nucrLastUpdate(), r.nucrLastChange());
    to.row("NIC", r.nicValid(), std::to_string(r.nic()), r.nicLastUpdate(), r.nicLastChange());
    to.row("NIC supplement A", r.nicSuppAValid(), std::to_string(r.nicSuppA()), r.nicSuppALastUpdate());
    to.row("NIC supplement B", r.nicSuppBValid(), std::to_string(r.nicSuppB()), r.nicSuppBLastUpdate());
    to.row("NIC supplement C", r.nicSuppCValid(), std::to_string(r.nicSuppC()), r.nicSuppCLastUpdate());
    to.row("PIC", r.picValid(), std::to_string(r.pic()), r.picLastUpdate(), r.picLastChange());
    to.row("NACp", r.nacpValid(), std::to_string(r.nacp()), r.nacpLastUpdate(), r.nacpLastChange());
    to.row("SIL", r.silValid(), std::to_string(r.sil()), r.silLastUpdate(), r.silLastChange());
}

} // namespace

Screen details(Aircraft const& aircraft, int columns) {
    Details details(aircraft, columns);
    addIdentification(details, aircraft);
    addStaticItems(details, *aircraft.report);
    addTacticalItems(details, *aircraft.report);
    addQuality(details, *aircraft.report);
    return std::move(details).take();
}

} // namespace quorvel::host
