// SPDX-License-Identifier: MIT
#include "outputs/columns.h"

#include "outputs/output_text.h"

#include <algorithm>
#include <string_view>

namespace quorvel::outputs {

namespace {

std::string callsign(Aircraft const& a) {
    return a.callsign.value ? files::printable(*a.callsign.value) : std::string();
}

std::string registration(Aircraft const& a) {
    return a.registration.value ? files::printable(*a.registration.value) : std::string();
}

std::string squawk(Aircraft const& a) { return a.squawk.value ? airspace::textOf(*a.squawk.value) : std::string(); }

bool isOnGround(Aircraft const& a) { return a.groundStatus.value.value_or(false); }

std::string altitude(Aircraft const& a) {
    if (isOnGround(a)) return "ground";
    return a.altitudeBaro.value ? std::to_string(*a.altitudeBaro.value) : std::string();
}

// On the ground is below any altitude.
double altitudeNumber(Aircraft const& a) {
    constexpr double kGround = -1e6;
    return isOnGround(a) ? kGround : a.altitudeBaro.value.value_or(0);
}

std::string speed(Aircraft const& a) { return a.groundSpeed.value ? fixed(*a.groundSpeed.value, 0) : std::string(); }

std::string track(Aircraft const& a) { return a.track.value ? fixed(*a.track.value, 1) : std::string(); }

// Of the barometer where it has one that is not older.
std::optional<int> verticalRate(Aircraft const& a) {
    bool const isBaro = a.verticalRateBaro.value && a.verticalRateBaro.updated >= a.verticalRateGnss.updated;
    return isBaro ? a.verticalRateBaro.value : a.verticalRateGnss.value;
}

std::string rate(Aircraft const& a) {
    auto const number = verticalRate(a);
    return number ? std::to_string(*number) : std::string();
}

std::string distance(Aircraft const& a) { return a.distance.value ? fixed(*a.distance.value, 1) : std::string(); }

airspace::Place placeOf(Aircraft const& a) { return a.position.value.value_or(airspace::Place{}); }

std::string coordinate(Aircraft const& a, double degrees) {
    return a.position.value ? fixed(degrees, 5) : std::string();
}

double age(Aircraft const& a) { return seconds(a.age(a.heard)); }
double positionAge(Aircraft const& a) { return seconds(a.age(a.position.updated)); }

// In parentheses while only assumed.
std::string version(Aircraft const& a) {
    if (!a.mopsVersion.value) return a.trackNumber != 0 ? "(?)" : "";
    auto const number = std::to_string(*a.mopsVersion.value);
    return a.mopsVersionConfirmed ? number : "(" + number + ")";
}

template <class Has> bool isAny(Picture const& picture, Has const& has) {
    return std::any_of(picture.aircraft.begin(), picture.aircraft.end(), has);
}

// The core's tracker numbers its tracks.
bool isNumbered(Picture const& picture) {
    return isAny(picture, [](Aircraft const& a) { return a.trackNumber != 0; });
}
bool hasRegistrations(Picture const& picture) {
    return isAny(picture, [](Aircraft const& a) { return a.registration.value.has_value(); });
}
bool hasTypes(Picture const& picture) {
    return isAny(picture, [](Aircraft const& a) { return !a.type.empty(); });
}
bool hasReceiver(Picture const& picture) {
    return isAny(picture, [](Aircraft const& a) { return a.distance.value.has_value(); });
}
bool hasSeveralSources(Picture const& picture) {
    return isAny(picture, [](Aircraft const& a) { return !a.source.empty(); });
}

// clang-format off
Column const kColumns[] = {
    {"No.", "", false, [](Aircraft const& a) { return std::to_string(a.trackNumber); },
     "#", 4, 12, 'n', [](Aircraft const& a) { return static_cast<double>(a.trackNumber); }, false, isNumbered},
    {"ICAO", "", true, [](Aircraft const& a) { return a.name(); },
     "ICAO", 7, 0, 'i', nullptr, false},
    {"Callsign", "", true, callsign, "Callsign", 8, 1, 'c', nullptr, false},
    {"Registration", "", true, registration, "Reg", 8, 15, 'z', nullptr, false, hasRegistrations},
    {"Type", "", true, [](Aircraft const& a) { return files::printable(a.type); },
     "Type", 4, 16, 'y', nullptr, false, hasTypes},
    {"Squawk", "", true, squawk, "Sqwk", 4, 4, 's', nullptr, false},
    {"Altitude", "ft", false, altitude, "Alt", 6, 2, 'a', altitudeNumber, false},
    {"Rate", "ft/min", false, rate, "Rate", 6, 10, 'w',
     [](Aircraft const& a) { return static_cast<double>(verticalRate(a).value_or(0)); }, false},
    {"Speed", "kt", false, speed, "Spd", 4, 5, 'v',
     [](Aircraft const& a) { return a.groundSpeed.value.value_or(0); }, false},
    {"Track", "deg", false, track, "Trk", 5, 8, 'h',
     [](Aircraft const& a) { return a.track.value.value_or(0); }, false},
    {"Latitude", "deg", false, [](Aircraft const& a) { return coordinate(a, placeOf(a).latitude); },
     "Lat", 9, 6, 'l', [](Aircraft const& a) { return placeOf(a).latitude; }, true},
    {"Longitude", "deg", false, [](Aircraft const& a) { return coordinate(a, placeOf(a).longitude); },
     "Lon", 10, 6, 'o', [](Aircraft const& a) { return placeOf(a).longitude; }, true},
    {"Pos. age", "s", false,
     [](Aircraft const& a) { return a.position.value ? fixed(positionAge(a), 1) : std::string(); },
     "Pos", 5, 7, 'p', positionAge, true},
    {"Distance", "NM", false, distance, "Dist", 5, 14, 'd',
     [](Aircraft const& a) { return a.distance.value.value_or(0); }, true, hasReceiver},
    {"Version", "", false, version, "Ver", 3, 13, 'e', nullptr, false},
    {"Messages", "", false, [](Aircraft const& a) { return std::to_string(a.messages); },
     "Msgs", 6, 9, 'm', [](Aircraft const& a) { return static_cast<double>(a.messages); }, false},
    {"Age", "s", false, [](Aircraft const& a) { return fixed(age(a), 1); }, "Age", 5, 3, 'g', age, false},
    {"Source", "", true, [](Aircraft const& a) { return files::printable(a.source); },
     "Source", 16, 11, 'u', nullptr, false, hasSeveralSources},
};
// clang-format on

std::string line(std::vector<std::string> const& cells, std::vector<std::size_t> const& widths,
    std::vector<Column const*> const& columns) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text += (i == 0 ? "" : "  ") + aligned(cells[i], widths[i], columns[i]->leftAligned);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

std::vector<std::string> rowOf(Aircraft const& aircraft, std::vector<Column const*> const& columns) {
    std::vector<std::string> cells;
    for (auto const* column : columns) cells.push_back(column->text(aircraft));
    return cells;
}

} // namespace

std::span<Column const> allColumns() { return kColumns; }

std::vector<Column const*> columnsOf(Picture const& picture) {
    std::vector<Column const*> columns;
    for (auto const& column : kColumns) {
        if (!column.isWanted || column.isWanted(picture)) columns.push_back(&column);
    }
    return columns;
}

AircraftTable makeTable(Picture const& picture) {
    std::vector<Aircraft const*> sorted;
    for (auto const& aircraft : picture.aircraft) sorted.push_back(&aircraft);
    std::stable_sort(sorted.begin(), sorted.end(), [](Aircraft const* a, Aircraft const* b) {
        return a->source != b->source ? a->source < b->source : a->trackNumber < b->trackNumber;
    });
    AircraftTable table{columnsOf(picture), {}};
    for (auto const* aircraft : sorted) table.rows.push_back(rowOf(*aircraft, table.columns));
    return table;
}

std::string tableText(AircraftTable const& table) {
    std::vector<std::string> headings;
    std::vector<std::string> units;
    for (auto const* column : table.columns) {
        headings.emplace_back(column->heading);
        units.emplace_back(column->unit);
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

} // namespace quorvel::outputs
