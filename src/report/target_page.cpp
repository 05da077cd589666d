// SPDX-License-Identifier: MIT
// The page of a report: four tables, one row for each item. Labels and the layout are as hosts know them, odd
// ones
// ("Tectical", "Braometric Altitude", the SIL under the label "NUCr", the blank after "MOPS Certainty")
// included.
#include <modes/adsb_target_report.h>
#include <modes/html_document.h>

#include "core/names.h"
#include "core/text.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace quorvel::modes {

namespace {

constexpr char kTitle[] = "ADS-B Target Report";

NameTable const kVersionNames{{"MOPS V0", "MOPS V1", "MOPS V2"}, "UNKNOWN"};

using Cells = std::vector<std::string>;

constexpr unsigned long long kNoTime = 0; // the cell stays empty

// A row of label, validity, value and times; only a valid item shows its value and times.
Cells row(char const* label, bool valid, std::string const& value,
          std::initializer_list<unsigned long long> times) {
    Cells cells{label, ADSBTargetReport::boolToString(valid), valid ? value : ""};
    for (auto const time : times) cells.push_back(valid ? ADSBTargetReport::timeToString(time) : "");
    return cells;
}

html::Element lineBreak() {
    html::Element element("br", "");
    element.voidElement = true;
    return element;
}

html::Element tableRow(char const* cellTag, Cells const& cells) {
    html::Element element("tr", "");
    for (auto const& cell : cells) element.children.emplace_back(cellTag, cell);
    return element;
}

void addSection(html::Element& body, char const* title, Cells const& headings,
                std::vector<Cells> const& rows) {
    html::Element table("table", "");
    table.addAttribute("border", 1U).addAttribute("cellspacing", 0U).addAttribute("class", "general_table");
    table.children.push_back(tableRow("th", headings));
    for (auto const& cells : rows) table.children.push_back(tableRow("td", cells));

    body.children.emplace_back("h2", title);
    body.children.push_back(lineBreak());
    body.children.push_back(std::move(table));
}

Cells const kHeadings{"Item", "Valid", "Value", "Last Update"};
Cells const kHeadingsWithChange{"Item", "Valid", "Value", "Last Change", "Last Update"};

// Here the times are always shown, and the track number too.
std::vector<Cells> identificationRows(ADSBTargetReport const& r) {
    auto const time = ADSBTargetReport::timeToString(r.lastUpdate());
    return {
        {"Track Number", ADSBTargetReport::boolToString(r.valid()), std::to_string(r.trackId()), time},
        {"ICAO Address", ADSBTargetReport::boolToString(r.icaoAddressValid()), r.icaoAddressString(), time},
    };
}

// The squawk shows no change time (deliberate); version and certainty always have a value.
std::vector<Cells> staticRows(ADSBTargetReport const& r) {
    return {
        row("Callsign", r.callsignValid(), r.callsign(), {r.callsignLastChange(), r.callsignLastUpdate()}),
        row("Squawk", r.squawkValid(), r.squawkString(), {kNoTime, r.squawkLastUpdate()}),
        row("Emitter Category", r.emitterCategoryValid(), std::to_string(r.emitterCategory()),
            {r.emitterCategoryLastChange(), r.emitterCategoryLastUpdate()}),
        row("Ground Status", r.groundStatusValid(), r.groundStatus() ? "GND" : "AIR",
            {r.groundStatusLastChange(), r.groundStatusLastUpdate()}),
        row("SPI", r.spiStatusValid(), r.spiStatus() ? "SPI" : "NO SPI",
            {r.spiStatusLastChange(), r.spiStatusLastUpdate()}),
        row("Alert Status", r.alertStatusValid(), r.alertStatus() ? "ALERT" : "NO ALERT",
            {r.alertStatusLastChange(), r.alertStatusLastUpdate()}),
        row("MOPS Version", true, kVersionNames[r.mopsVersion()],
            {r.mopsVersionLastChange(), r.mopsVersionLastUpdate()}),
        row("MOPS Certainty ", true, r.mopsVersionConfirmed() ? "CONFIRMED" : "ASSUMED",
            {r.mopsVersionLastChange(), r.mopsVersionLastUpdate()}),
    };
}

std::vector<Cells> tacticalRows(ADSBTargetReport const& r) {
    return {
        row("Position", r.positionValid(), r.positionString(), {r.positionLastUpdate()}),
        row("Latitude", r.positionValid(), fixedSix(r.latitude()), {r.positionLastUpdate()}),
        row("Longitude", r.positionValid(), fixedSix(r.longitude()), {r.positionLastUpdate()}),
        row("Braometric Altitude", r.altitudeBaroValid(), std::to_string(r.altitudeBaro()),
            {r.altitudeBaroLastUpdate()}),
        row("Ground Speed", r.groundSpeedValid(), fixedSix(r.groundSpeed()), {r.groundSpeedLastUpdate()}),
        row("Heading", r.headingValid(), fixedSix(r.heading()), {r.headingLastUpdate()}),
        row("Barometric Vertical Rate", r.verticalRateBaroValid(), std::to_string(r.verticalRateBaro()),
            {r.verticalRateBaroLastUpdate()}),
        row("Signal Amplitude", r.signalAmplitudeValid(), std::to_string(r.signalAmplitude()),
            {r.signalAmplitudeLastUpdate()}),
    };
}

// The supplements have no change time; the last row shows the SIL (deliberate).
std::vector<Cells> qualityRows(ADSBTargetReport const& r) {
    return {
        row("NUCp", r.nucpValid(), std::to_string(r.nucp()), {r.nucpLastChange(), r.nucpLastUpdate()}),
        row("NUCr", r.nucrValid(), std::to_string(r.nucr()), {r.nucrLastChange(), r.nucrLastUpdate()}),
        row("NIC", r.nicValid(), std::to_string(r.nic()), {r.nicLastChange(), r.nicLastUpdate()}),
        row("NICsuppA", r.nicSuppAValid(), std::to_string(r.nicSuppA()), {kNoTime, r.nicSuppALastUpdate()}),
        row("NICsuppB", r.nicSuppBValid(), std::to_string(r.nicSuppB()), {kNoTime, r.nicSuppBLastUpdate()}),
        row("NICsuppC", r.nicSuppCValid(), std::to_string(r.nicSuppC()), {kNoTime, r.nicSuppCLastUpdate()}),
        row("PIC", r.picValid(), std::to_string(r.pic()), {r.picLastChange(), r.picLastUpdate()}),
        row("NACp", r.nacpValid(), std::to_string(r.nacp()), {r.nacpLastChange(), r.nacpLastUpdate()}),
        row("NUCr", r.silValid(), std::to_string(r.sil()), {r.silLastChange(), r.silLastUpdate()}),
    };
}

} // namespace

std::string ADSBTargetReport::toHtml(std::string const& style) const {
    html::Document page(kTitle);
    page.root.addAttribute("lang", "en");
    page.head.children.emplace_back("style", style);
    page.head.children.back().addAttribute("type", "text/css");

    page.body.children.emplace_back("h1", kTitle);
    page.body.children.push_back(lineBreak());
    addSection(page.body, "Identification", kHeadings, identificationRows(*this));
    addSection(page.body, "Static", kHeadingsWithChange, staticRows(*this));
    addSection(page.body, "Tectical", kHeadings, tacticalRows(*this));
    addSection(page.body, "Quality Indicators", kHeadingsWithChange, qualityRows(*this));
    return page.toString();
}

} // namespace quorvel::modes
