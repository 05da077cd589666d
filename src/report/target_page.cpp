// SPDX-License-Identifier: MIT
// The page of a report: four tables, one row for each item. Labels and the layout are as hosts know them, odd
// ones ("Tectical", "Braometric Altitude", the SIL under the label "NUCr", the blank after "MOPS Certainty")
// included.
#include <modes/adsb_target_report.h>
#include <modes/html_document.h>

#include "core/names.h"
#include "core/text.h"

#include <initializer_list>
#include <string>
#include <utility>

namespace quorvel::modes {

namespace {

constexpr char kTitle[] = "ADS-B Target Report";

NameTable const kVersionNames{{"MOPS V0", "MOPS V1", "MOPS V2"}, "UNKNOWN"};

constexpr unsigned long long kNoTime = 0; // the cell stays empty

constexpr char const* kHeadings[] = {"Item", "Valid", "Value", "Last Update"};
constexpr char const* kHeadingsWithChange[] = {"Item", "Valid", "Value", "Last Change", "Last Update"};

html::Element lineBreak() {
    html::Element element("br", "");
    element.voidElement = true;
    return element;
}

// One of the tables, built row by row.
class Table {
public:
    template <std::size_t N> explicit Table(char const* const (&headings)[N]) {
        _element.addAttribute("border", 1U).addAttribute("cellspacing", 0U).addAttribute("class", "general_table");
        auto& cells = addRow(N);
        for (auto const* heading : headings) cells.children.emplace_back("th", heading);
    }

    /// Label, validity, value and times; only a valid item shows its value and times.
    void row(char const* label, bool valid, std::string value, std::initializer_list<unsigned long long> times) {
        auto& cells = addRow(3 + times.size());
        addCell(cells, label);
        addCell(cells, ADSBTargetReport::boolToString(valid));
        addCell(cells, valid ? std::move(value) : std::string());
        for (auto const time : times) {
            addCell(cells, valid ? ADSBTargetReport::timeToString(time) : std::string());
        }
    }

    /// The same with a time that is always shown.
    void rowWithTime(char const* label, bool valid, std::string value, std::string const& time) {
        row(label, valid, {}, {});
        auto& cells = _element.children.back();
        cells.children.back().content = std::move(value);
        addCell(cells, time);
    }

    html::Element take() && { return std::move(_element); }

private:
    html::Element& addRow(std::size_t count) {
        auto& cells = _element.children.emplace_back("tr", "");
        cells.children.reserve(count);
        return cells;
    }

    static void addCell(html::Element& cells, std::string text) {
        cells.children.emplace_back("td", "").content = std::move(text);
    }

    html::Element _element{"table", ""};
};

void addSection(html::Element& body, char const* title, Table table) {
    body.children.emplace_back("h2", title);
    body.children.push_back(lineBreak());
    body.children.push_back(std::move(table).take());
}

// Here the times are always shown, and the track number too.
Table identification(ADSBTargetReport const& r) {
    Table table(kHeadings);
    auto const time = ADSBTargetReport::timeToString(r.lastUpdate());
    table.rowWithTime("Track Number", r.valid(), std::to_string(r.trackId()), time);
    table.rowWithTime("ICAO Address", r.icaoAddressValid(), r.icaoAddressString(), time);
    return table;
}

// The squawk shows no change time (deliberate); version and certainty always have a value.
Table staticItems(ADSBTargetReport const& r) {
    Table table(kHeadingsWithChange);
    table.row("Callsign", r.callsignValid(), r.callsign(), {r.callsignLastChange(), r.callsignLastUpdate()});
    table.row("Squawk", r.squawkValid(), r.squawkString(), {kNoTime, r.squawkLastUpdate()});
    table.row("Emitter Category", r.emitterCategoryValid(), std::to_string(r.emitterCategory()),
        {r.emitterCategoryLastChange(), r.emitterCategoryLastUpdate()});
    table.row("Ground Status", r.groundStatusValid(), r.groundStatus() ? "GND" : "AIR",
        {r.groundStatusLastChange(), r.groundStatusLastUpdate()});
    table.row("SPI", r.spiStatusValid(), r.spiStatus() ? "SPI" : "NO SPI",
        {r.spiStatusLastChange(), r.spiStatusLastUpdate()});
    table.row("Alert Status", r.alertStatusValid(), r.alertStatus() ? "ALERT" : "NO ALERT",
        {r.alertStatusLastChange(), r.alertStatusLastUpdate()});
    table.row(
        "MOPS Version", true, kVersionNames[r.mopsVersion()], {r.mopsVersionLastChange(), r.mopsVersionLastUpdate()});
    table.row("MOPS Certainty ", true, r.mopsVersionConfirmed() ? "CONFIRMED" : "ASSUMED",
        {r.mopsVersionLastChange(), r.mopsVersionLastUpdate()});
    return table;
}

Table tacticalItems(ADSBTargetReport const& r) {
    Table table(kHeadings);
    table.row("Position", r.positionValid(), r.positionString(), {r.positionLastUpdate()});
    table.row("Latitude", r.positionValid(), fixedSix(r.latitude()), {r.positionLastUpdate()});
    table.row("Longitude", r.positionValid(), fixedSix(r.longitude()), {r.positionLastUpdate()});
    table.row(
        "Braometric Altitude", r.altitudeBaroValid(), std::to_string(r.altitudeBaro()), {r.altitudeBaroLastUpdate()});
    table.row("Ground Speed", r.groundSpeedValid(), fixedSix(r.groundSpeed()), {r.groundSpeedLastUpdate()});
    table.row("Heading", r.headingValid(), fixedSix(r.heading()), {r.headingLastUpdate()});
    table.row("Barometric Vertical Rate", r.verticalRateBaroValid(), std::to_string(r.verticalRateBaro()),
        {r.verticalRateBaroLastUpdate()});
    table.row("Signal Amplitude", r.signalAmplitudeValid(), std::to_string(r.signalAmplitude()),
        {r.signalAmplitudeLastUpdate()});
    return table;
}

// The supplements have no change time; the last row shows the SIL (deliberate).
Table qualityIndicators(ADSBTargetReport const& r) {
    Table table(kHeadingsWithChange);
    table.row("NUCp", r.nucpValid(), std::to_string(r.nucp()), {r.nucpLastChange(), r.nucpLastUpdate()});
    table.row("NUCr", r.nucrValid(), std::to_string(r.nucr()), {r.nucrLastChange(), r.nucrLastUpdate()});
    table.row("NIC", r.nicValid(), std::to_string(r.nic()), {r.nicLastChange(), r.nicLastUpdate()});
    table.row("NICsuppA", r.nicSuppAValid(), std::to_string(r.nicSuppA()), {kNoTime, r.nicSuppALastUpdate()});
    table.row("NICsuppB", r.nicSuppBValid(), std::to_string(r.nicSuppB()), {kNoTime, r.nicSuppBLastUpdate()});
    table.row("NICsuppC", r.nicSuppCValid(), std::to_string(r.nicSuppC()), {kNoTime, r.nicSuppCLastUpdate()});
    table.row("PIC", r.picValid(), std::to_string(r.pic()), {r.picLastChange(), r.picLastUpdate()});
    table.row("NACp", r.nacpValid(), std::to_string(r.nacp()), {r.nacpLastChange(), r.nacpLastUpdate()});
    table.row("NUCr", r.silValid(), std::to_string(r.sil()), {r.silLastChange(), r.silLastUpdate()});
    return table;
}

} // namespace

std::string ADSBTargetReport::toHtml(std::string const& style) const {
    html::Document page(kTitle);
    page.root.addAttribute("lang", "en");
    page.head.children.emplace_back("style", style);
    page.head.children.back().addAttribute("type", "text/css");

    page.body.children.emplace_back("h1", kTitle);
    page.body.children.push_back(lineBreak());
    addSection(page.body, "Identification", identification(*this));
    addSection(page.body, "Static", staticItems(*this));
    addSection(page.body, "Tectical", tacticalItems(*this));
    addSection(page.body, "Quality Indicators", qualityIndicators(*this));
    return page.toString();
}

} // namespace quorvel::modes
