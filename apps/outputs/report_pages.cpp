// SPDX-License-Identifier: MIT
#include "outputs/report_pages.h"

#include "files/replaced_file.h"
#include "outputs/columns.h"
#include "outputs/output_text.h"
#include "outputs/shown_aircraft.h"

#include <modes/html_document.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace quorvel::outputs {

namespace {

constexpr char kIndex[] = "index.html";

constexpr char kStyle[] = R"(
body { font-family: sans-serif; margin: 2em; color: #222; background: #fff; }
h1 { font-size: 1.4em; }
h2 { font-size: 1.1em; margin-bottom: 0; }
br { display: none; }
.general_table { border-collapse: collapse; margin-top: 0.5em; font-variant-numeric: tabular-nums; }
.general_table, .general_table th, .general_table td { border: 1px solid #bbb; }
.general_table th, .general_table td { padding: 0.25em 0.7em; text-align: left; white-space: nowrap; }
.general_table th { background: #eef2f6; white-space: normal; }
.general_table tr:nth-child(even) td { background: #f8fafc; }
.notes { max-width: 45em; color: #555; font-size: 0.9em; }
@media (max-width: 50em) {
body { margin: 0.8em; }
.general_table { display: block; max-width: 100%; border: none; overflow-x: auto; font-size: 0.8em; }
.general_table th, .general_table td { padding: 0.4em 0.3em; white-space: normal; }
}
)";

constexpr int kLastRankOnPhones = 5;
constexpr char kReloadSeconds[] = "5";

constexpr char kViewport[] = "width=device-width, initial-scale=1";

constexpr char kIndexNotes[] =
    "Units are in the headings. Values are read by the standards of Mode S and ADS-B, unless the program was asked for "
    "those of the library trevallo, whose pages behind the addresses show its own. Altitudes are barometric, speeds and "
    "tracks are over ground, tracks are clockwise from north, versions in parentheses are assumed, ages count from the "
    "last message and the last position, times are UTC. The labels are those of the program trevallo.";

constexpr char kReportHead[] =
    "The values on this page are the readings of the library trevallo, which differ from the standards on purpose in "
    "some: altitudes and vertical rates among them.";

constexpr char kReportNotes[] =
    "Altitudes are in feet, speeds in knots, vertical rates in feet per minute, headings in degrees clockwise from "
    "north, latitudes and longitudes in degrees, positions in degrees, minutes and seconds; the signal amplitude "
    "is a number from 0 to 255; times are UTC. The labels are those of the library trevallo, exactly as it writes "
    "them.";

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

html::Element link(std::string const& page, std::string const& text) {
    html::Element element("a", text);
    element.addAttribute("href", page);
    return element;
}

// Where the addresses stand.
std::size_t addressColumn(std::vector<Column const*> const& columns) {
    constexpr char addressKey = 'i';
    auto const isAddress = [](Column const* column) { return column->key == addressKey; };
    return static_cast<std::size_t>(std::ranges::find_if(columns, isAddress) - columns.begin());
}

// The address links to the page, if there is one.
void linkAddress(html::Element& address, PageNames const& pages) {
    auto const page = pageName(address.content);
    if (!pages.contains(page)) return;
    address.children.push_back(link(page, address.content));
    address.content.clear();
}

std::vector<std::string> headings(std::vector<Column const*> const& columns) {
    std::vector<std::string> texts;
    for (auto const* column : columns) {
        auto const unit = std::string(column->unit);
        texts.push_back(column->heading + (unit.empty() ? unit : " (" + unit + ")"));
    }
    return texts;
}

std::string timeText(Picture const& picture) {
    auto const time = modes::ADSBTargetReport::timeToString(picture.now);
    if (time.empty()) return "Nothing was heard yet.";
    return timeKnown(picture) ? "As of " + time + "."
                              : "As of " + time.substr(time.find('T') + 1) + " of an unknown day.";
}

html::Element meta(char const* attribute, std::string const& name, std::string const& content = "") {
    html::Element element("meta", "");
    element.voidElement = true;
    element.addAttribute(attribute, name);
    if (!content.empty()) element.addAttribute("content", content);
    return element;
}

html::Element notes(char const* text) {
    html::Element element("p", text);
    element.addAttribute("class", "notes");
    return element;
}

// Leaves out the columns that the live table leaves out first.
std::string phoneStyle(std::vector<Column const*> const& columns) {
    std::string rules;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i]->rank <= kLastRankOnPhones) continue;
        auto const place = ":nth-child(" + std::to_string(i + 1) + ")";
        rules += (rules.empty() ? "th" : ",\nth") + place + ", td" + place;
    }
    return "@media (max-width: 50em) {\n" + rules + " { display: none; }\n}\n";
}

// Lines of a page, as those of the library are written.
std::string textOf(std::vector<html::Element> const& elements) {
    std::ostringstream text;
    for (auto const& element : elements) {
        element.toStringOpen(text, 4);
        element.toStringContent(text, 4);
        element.toStringClose(text, 4);
    }
    return text.str();
}

void insertBefore(std::string& page, std::string_view line, std::string const& text) {
    page.insert(page.rfind(line), text);
}

// The library's page with what a reader in a browser needs around it.
std::string reportPage(modes::ADSBTargetReport report) {
    bool const valid = report.callsignValid();
    report.setCallsign(escaped(files::printable(report.callsign()))); // it comes over the air
    report.setCallsignValid(valid);
    auto page = report.toHtml(kStyle);
    insertBefore(page, "  </head>\n", textOf({meta("charset", "utf-8"), meta("name", "viewport", kViewport)}));
    html::Element way("p", "");
    way.children.push_back(link(kIndex, "All aircraft"));
    insertBefore(page, "    <h1>", textOf({way, notes(kReportHead)}));
    insertBefore(page, "  </body>\n", textOf({notes(kReportNotes)}));
    return page;
}

} // namespace

std::string indexPage(Picture const& picture, PageNames const& pages, bool reloads) {
    auto const table = makeTable(picture);
    html::Document page("Aircraft");
    page.root.addAttribute("lang", "en");
    page.head.children.push_back(meta("charset", "utf-8"));
    page.head.children.push_back(meta("name", "viewport", kViewport));
    if (reloads) page.head.children.push_back(meta("http-equiv", "refresh", kReloadSeconds));
    page.head.children.emplace_back("style", kStyle + phoneStyle(table.columns));
    page.body.children.emplace_back("h1", "Aircraft (" + std::to_string(table.rows.size()) + ")");
    page.body.children.emplace_back("p", escaped(timeText(picture)));

    html::Element rows("table", "");
    rows.addAttribute("class", "general_table");
    rows.children.push_back(tableRow("th", headings(table.columns)));
    for (auto const& cells : table.rows) {
        auto& row = rows.children.emplace_back(tableRow("td", cells));
        linkAddress(row.children[addressColumn(table.columns)], pages);
    }
    page.body.children.push_back(rows);
    page.body.children.push_back(notes(kIndexNotes));
    return page.toString();
}

ReportPages::ReportPages(std::string folder) : _folder(std::move(folder)) { files::makeFolder(_folder); }

std::string ReportPages::path(std::string const& name) const {
    return (std::filesystem::path(_folder) / name).string();
}

void ReportPages::picture(Picture const& picture) { write(picture, true); }

void ReportPages::finish(Picture const& last) { write(last, false); }

void ReportPages::write(Picture const& picture, bool continues) {
    Pages pages;
    PageNames names;
    for (auto const* aircraft : newestByAddress(picture)) {
        auto const name = pageName(aircraft->name());
        State const state{aircraft->heard, aircraft->messages};
        auto const written = _pages.find(name);
        if (written == _pages.end() || written->second != state) {
            auto const report = picture.report(*aircraft);
            if (!report) continue;
            files::writeMomentary(path(name), reportPage(*report));
            _pages[name] = state;
        }
        pages.emplace(name, state);
        names.insert(name);
    }
    files::writeMomentary(path(kIndex), indexPage(picture, names, continues));
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

} // namespace quorvel::outputs
