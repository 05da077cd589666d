// SPDX-License-Identifier: MIT
#include "outputs/report_pages.h"

#include "outputs/columns.h"
#include "outputs/shown_aircraft.h"
#include "outputs/text.h"
#include "outputs/whole_file.h"

#include <modes/html_document.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace quorvel::host {

namespace {

constexpr std::size_t kAddressColumn = 1;

constexpr char kStyle[] = R"(
body { font-family: sans-serif; margin: 2em; color: #222; background: #fff; }
h1 { font-size: 1.4em; }
h2 { font-size: 1.1em; margin-bottom: 0; }
br { display: none; }
.general_table { border-collapse: collapse; margin-top: 0.5em; font-variant-numeric: tabular-nums; }
.general_table, .general_table th, .general_table td { border: 1px solid #bbb; }
.general_table th, .general_table td { padding: 0.25em 0.7em; text-align: left; white-space: nowrap; }
.general_table th { background: #eef2f6; }
.general_table tr:nth-child(even) td { background: #f8fafc; }
)";

std::string escaped(std::string const& text) {
    std::string result;
    for (char const character : text) {
        switch (character) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        default: result += character;
        }
    }
    return result;
}

std::string pageName(std::string const& address) { return address + ".html"; }

html::Element tableRow(char const* cellTag, std::vector<std::string> const& cells) {
    html::Element row("tr", "");
    for (auto const& cell : cells) row.children.emplace_back(cellTag, escaped(cell));
    return row;
}

// A row of which the address leads to the page.
html::Element linkedRow(std::vector<std::string> const& cells) {
    auto row = tableRow("td", cells);
    auto& address = row.children[kAddressColumn];
    html::Element link("a", address.content);
    link.addAttribute("href", pageName(address.content));
    address.content.clear();
    address.children.push_back(link);
    return row;
}

std::vector<std::string> headings(std::span<Column const> columns) {
    std::vector<std::string> texts;
    for (auto const& column : columns) {
        auto const unit = std::string(column.unit);
        texts.push_back(column.heading + (unit.empty() ? unit : " (" + unit + ")"));
    }
    return texts;
}

std::string timeText(Picture const& picture) {
    auto const time = modes::ADSBTargetReport::timeToString(picture.now);
    if (time.empty()) return "Nothing was heard yet.";
    return timeKnown(picture)
               ? "As of " + time + "."
               : "As of " + time.substr(time.find('T') + 1) + " of a day that the recording does not tell.";
}

std::string reportPage(Aircraft const& aircraft) {
    auto report = *aircraft.report;
    bool const valid = report.callsignValid();
    report.setCallsign(escaped(printable(report.callsign()))); // it comes over the air
    report.setCallsignValid(valid);
    return report.toHtml(kStyle);
}

} // namespace

std::string indexPage(Picture const& picture) {
    auto const table = makeTable(picture);
    html::Document page("Aircraft");
    page.root.addAttribute("lang", "en");
    html::Element charset("meta", "");
    charset.voidElement = true;
    charset.addAttribute("charset", "utf-8");
    page.head.children.push_back(charset);
    page.head.children.emplace_back("style", kStyle);
    page.body.children.emplace_back("h1", "Aircraft (" + std::to_string(table.rows.size()) + ")");
    page.body.children.emplace_back("p", escaped(timeText(picture)));

    html::Element rows("table", "");
    rows.addAttribute("class", "general_table");
    rows.children.push_back(tableRow("th", headings(table.columns)));
    for (auto const& cells : table.rows) rows.children.push_back(linkedRow(cells));
    page.body.children.push_back(rows);
    return page.toString();
}

ReportPages::ReportPages(std::string folder) : _folder(std::move(folder)) { makeFolder(_folder); }

std::string ReportPages::path(std::string const& name) const {
    return (std::filesystem::path(_folder) / name).string();
}

void ReportPages::picture(Picture const& picture) {
    Pages pages;
    for (auto const* aircraft : newestByAddress(picture)) {
        auto const name = pageName(addressText(aircraft->report->icaoAddress()));
        State const state{aircraft->report->lastUpdate(), aircraft->messages};
        auto const written = _pages.find(name);
        if (written == _pages.end() || written->second != state) {
            writeWhole(path(name), reportPage(*aircraft));
            _pages[name] = state;
        }
        pages.emplace(name, state);
    }
    writeWhole(path("index.html"), indexPage(picture));
    removeAllBut(pages);
    _pages.swap(pages);
}

void ReportPages::removeAllBut(Pages const& pages) const {
    for (auto const& [name, state] : _pages) {
        if (pages.contains(name)) continue;
        std::error_code ignored; // someone else may have removed it
        std::filesystem::remove(path(name), ignored);
    }
}

} // namespace quorvel::host
