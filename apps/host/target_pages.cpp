// SPDX-License-Identifier: MIT
#include "host/target_pages.h"

#include <modes/adsb_target_report.h>
#include <modes/html_document.h>

#include "host/host_error.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

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

void writeFile(std::filesystem::path const& path, std::string const& text) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) throw systemError("write", path.string());
}

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
    link.addAttribute("href", address.content + ".html");
    address.content.clear();
    address.children.push_back(link);
    return row;
}

std::vector<std::string> headingsWithUnits(TargetTable const& table) {
    auto headings = table.headings;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        if (!table.units[i].empty()) headings[i] += " (" + table.units[i] + ")";
    }
    return headings;
}

} // namespace

std::string indexPage(TargetTable const& table) {
    html::Document page("Aircraft");
    page.root.addAttribute("lang", "en");
    html::Element charset("meta", "");
    charset.voidElement = true;
    charset.addAttribute("charset", "utf-8");
    page.head.children.push_back(charset);
    page.head.children.emplace_back("style", kStyle);
    page.body.children.emplace_back("h1", "Aircraft (" + std::to_string(table.rows.size()) + ")");

    html::Element rows("table", "");
    rows.addAttribute("class", "general_table");
    rows.children.push_back(tableRow("th", headingsWithUnits(table)));
    for (auto const& cells : table.rows) rows.children.push_back(linkedRow(cells));
    page.body.children.push_back(rows);
    return page.toString();
}

void writePages(std::string const& folder, Targets const& targets, unsigned long long now) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw HostError("cannot make the folder " + folder + ": " + error.message());

    auto const path = std::filesystem::path(folder);
    auto const table = makeTable(targets, now);
    writeFile(path / "index.html", indexPage(table));
    for (auto const& target : targets) {
        auto const row = makeTable({target}, now).rows.front();
        auto report = *target->report();
        report.setCallsign(escaped(report.callsign())); // it comes over the air
        writeFile(path / (row[kAddressColumn] + ".html"), report.toHtml(kStyle));
    }
}

} // namespace quorvel::host
