// SPDX-License-Identifier: MIT
#include "outputs/columns.h"

#include "outputs/text.h"

#include <algorithm>
#include <string_view>

namespace quorvel::host {

namespace {

std::string callsign(Aircraft const& a) {
    return a.report->callsignValid() ? printable(a.report->callsign()) : std::string();
}

std::string squawk(Aircraft const& a) {
    return a.report->squawkValid() ? squawkText(a.report->squawk()) : std::string();
}

std::string altitude(Aircraft const& a) {
    auto const& r = *a.report;
    if (r.groundStatusValid() && r.groundStatus()) return "ground";
    return r.altitudeBaroValid() ? std::to_string(r.altitudeBaro()) : std::string();
}

// On the ground is below any altitude.
double altitudeNumber(Aircraft const& a) {
    constexpr double kGround = -1e6;
    auto const& r = *a.report;
    return r.groundStatusValid() && r.groundStatus() ? kGround : r.altitudeBaro();
}

std::string speed(Aircraft const& a) {
    return a.report->groundSpeedValid() ? fixed(a.report->groundSpeed(), 0) : std::string();
}

std::string heading(Aircraft const& a) {
    return a.report->headingValid() ? fixed(a.report->heading(), 1) : std::string();
}

std::string rate(Aircraft const& a) {
    return a.report->verticalRateBaroValid() ? std::to_string(a.report->verticalRateBaro()) : std::string();
}

std::string coordinate(Aircraft const& a, double degrees) {
    return a.report->positionValid() ? fixed(degrees, 5) : std::string();
}

double age(Aircraft const& a) { return seconds(a.age(a.report->lastUpdate())); }
double positionAge(Aircraft const& a) { return seconds(a.age(a.report->positionLastUpdate())); }

// In parentheses while only assumed.
std::string version(Aircraft const& a) {
    auto const known = a.report->mopsVersion();
    auto const number = known == modes::MOPS_UNKNOWN ? "?" : std::to_string(known);
    return a.report->mopsVersionConfirmed() ? number : "(" + number + ")";
}

// clang-format off
Column const kColumns[] = {
    {"Track", "", false, [](Aircraft const& a) { return std::to_string(a.report->trackId()); },
     "#", 4, 12, 'n', [](Aircraft const& a) { return static_cast<double>(a.report->trackId()); }, false},
    {"ICAO", "", true, [](Aircraft const& a) { return addressText(a.report->icaoAddress()); },
     "ICAO", 6, 0, 'i', nullptr, false},
    {"Callsign", "", true, callsign, "Callsign", 8, 1, 'c', nullptr, false},
    {"Squawk", "", true, squawk, "Sqwk", 4, 4, 's', nullptr, false},
    {"Altitude", "ft", false, altitude, "Alt", 6, 2, 'a', altitudeNumber, false},
    {"Rate", "ft/min", false, rate, "Rate", 6, 10, 'w',
     [](Aircraft const& a) { return static_cast<double>(a.report->verticalRateBaro()); }, false},
    {"Speed", "kt", false, speed, "Spd", 4, 5, 'v',
     [](Aircraft const& a) { return a.report->groundSpeed(); }, false},
    {"Heading", "deg", false, heading, "Hdg", 5, 8, 'h',
     [](Aircraft const& a) { return a.report->heading(); }, false},
    {"Latitude", "deg", false, [](Aircraft const& a) { return coordinate(a, a.report->latitude()); },
     "Lat", 9, 6, 'l', [](Aircraft const& a) { return a.report->latitude(); }, true},
    {"Longitude", "deg", false, [](Aircraft const& a) { return coordinate(a, a.report->longitude()); },
     "Lon", 10, 6, 'o', [](Aircraft const& a) { return a.report->longitude(); }, true},
    {"Pos. age", "s", false,
     [](Aircraft const& a) { return a.report->positionValid() ? fixed(positionAge(a), 1) : std::string(); },
     "Pos", 5, 7, 'p', positionAge, true},
    {"Version", "", false, version, "Ver", 3, 13, 'e', nullptr, false},
    {"Messages", "", false, [](Aircraft const& a) { return std::to_string(a.messages); },
     "Msgs", 6, 9, 'm', [](Aircraft const& a) { return static_cast<double>(a.messages); }, false},
    {"Age", "s", false, [](Aircraft const& a) { return fixed(age(a), 1); }, "Age", 5, 3, 'g', age, false},
    {"Source", "", true, [](Aircraft const& a) { return printable(a.source); },
     "Source", 16, 11, 'u', nullptr, false},
};
// clang-format on

std::string line(std::vector<std::string> const& cells, std::vector<std::size_t> const& widths,
                 std::span<Column const> columns) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text += (i == 0 ? "" : "  ") + aligned(cells[i], widths[i], columns[i].leftAligned);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

std::vector<std::string> rowOf(Aircraft const& aircraft, std::span<Column const> columns) {
    std::vector<std::string> cells;
    for (auto const& column : columns) cells.push_back(column.text(aircraft));
    return cells;
}

} // namespace

std::span<Column const> allColumns() { return kColumns; }

std::span<Column const> columnsOf(Picture const& picture) {
    bool const severalSources = std::any_of(picture.aircraft.begin(), picture.aircraft.end(),
                                            [](Aircraft const& a) { return !a.source.empty(); });
    return severalSources ? allColumns() : allColumns().first(allColumns().size() - 1);
}

AircraftTable makeTable(Picture const& picture) {
    std::vector<Aircraft const*> sorted;
    for (auto const& aircraft : picture.aircraft) sorted.push_back(&aircraft);
    std::stable_sort(sorted.begin(), sorted.end(), [](Aircraft const* a, Aircraft const* b) {
        return a->source != b->source ? a->source < b->source : a->report->trackId() < b->report->trackId();
    });
    AircraftTable table{columnsOf(picture), {}};
    for (auto const* aircraft : sorted) table.rows.push_back(rowOf(*aircraft, table.columns));
    return table;
}

std::string tableText(AircraftTable const& table) {
    std::vector<std::string> headings;
    std::vector<std::string> units;
    for (auto const& column : table.columns) {
        headings.emplace_back(column.heading);
        units.emplace_back(column.unit);
    }
    std::vector<std::size_t> widths(table.columns.size());
    auto const widen = [&](std::vector<std::string> const& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
    };
    widen(headings);
    widen(units);
    std::for_each(table.rows.begin(), table.rows.end(), widen);

    auto text = line(headings, widths, table.columns) + line(units, widths, table.columns);
    for (auto cells : table.rows) {
        std::replace(cells.begin(), cells.end(), std::string(), std::string("-"));
        text += line(cells, widths, table.columns);
    }
    return text;
}

std::string aligned(std::string const& text, std::size_t width, bool left) {
    std::string const blanks(width > text.size() ? width - text.size() : 0, ' ');
    return left ? text + blanks : blanks + text;
}

} // namespace quorvel::host
