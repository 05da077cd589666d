// SPDX-License-Identifier: MIT
#include "host/target_table.h"

#include <modes/adsb_target_report.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace quorvel::host {

namespace {

using modes::ADSBTarget;

struct Snapshot {
    ADSBTarget const& target;
    unsigned long long now;
};

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
printed(char const* format, ...) {
    char text[64] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string version(ADSBTarget const& target) {
    auto const number =
        target.mopsVersion() == modes::MOPS_UNKNOWN ? "?" : std::to_string(target.mopsVersion());
    return target.mopsVersionConfirmed() ? number : "(" + number + ")";
}

struct Column {
    char const* heading;
    char const* unit;
    bool leftAligned;
    std::string (*text)(Snapshot const&);
};

// Empty texts stand for values that are not valid.
Column const kColumns[] = {
    {"Track", "", false, [](Snapshot const& s) { return std::to_string(s.target.trackId()); }},
    {"ICAO", "", true, [](Snapshot const& s) { return printed("%06X", s.target.icaoAddr()); }},
    {"Callsign", "", true,
     [](Snapshot const& s) { return s.target.callsignValid() ? shown(s.target.callsign()) : std::string(); }},
    {"Squawk", "", true,
     [](Snapshot const& s) {
         return s.target.squawkValid() ? printed("%04o", s.target.squawk()) : std::string();
     }},
    {"Altitude", "ft", false,
     [](Snapshot const& s) {
         return s.target.altitudeBaroValid() ? std::to_string(s.target.altitudeBaro()) : std::string();
     }},
    {"Speed", "kt", false,
     [](Snapshot const& s) {
         return s.target.groundSpeedValid() ? printed("%.0f", s.target.groundSpeed()) : std::string();
     }},
    {"Heading", "deg", false,
     [](Snapshot const& s) {
         return s.target.headingValid() ? printed("%.1f", s.target.heading()) : std::string();
     }},
    {"Latitude", "deg", false,
     [](Snapshot const& s) {
         return s.target.positionValid() ? printed("%.5f", s.target.latitude()) : std::string();
     }},
    {"Longitude", "deg", false,
     [](Snapshot const& s) {
         return s.target.positionValid() ? printed("%.5f", s.target.longitude()) : std::string();
     }},
    {"Version", "", false, [](Snapshot const& s) { return version(s.target); }},
    {"Messages", "", false, [](Snapshot const& s) { return std::to_string(s.target.statisticDfMsgCount()); }},
    {"Age", "s", false,
     [](Snapshot const& s) {
         auto const heard = s.target.lastUpdate();
         return printed("%.1f", heard < s.now ? static_cast<double>(s.now - heard) / 1000 : 0.0);
     }},
};

std::string padded(std::string const& text, std::size_t width, bool leftAligned) {
    std::string const blanks(width > text.size() ? width - text.size() : 0, ' ');
    return leftAligned ? text + blanks : blanks + text;
}

std::string line(std::vector<std::string> const& cells, std::vector<std::size_t> const& widths) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text += (i == 0 ? "" : "  ") + padded(cells[i], widths[i], kColumns[i].leftAligned);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text + "\n";
}

} // namespace

std::string shown(std::string const& text) {
    std::string result;
    for (char const character : text) {
        result += static_cast<unsigned char>(character) < 0x20 || character == 0x7F ? '?' : character;
    }
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
}

TargetTable makeTable(Targets targets, unsigned long long now) {
    std::stable_sort(targets.begin(), targets.end(),
                     [](auto const& a, auto const& b) { return a->trackId() < b->trackId(); });
    TargetTable table;
    for (auto const& column : kColumns) {
        table.headings.emplace_back(column.heading);
        table.units.emplace_back(column.unit);
    }
    for (auto const& target : targets) {
        auto& cells = table.rows.emplace_back();
        for (auto const& column : kColumns) cells.push_back(column.text({*target, now}));
    }
    return table;
}

std::string tableText(TargetTable const& table) {
    std::vector<std::size_t> widths(table.headings.size());
    auto const widen = [&](std::vector<std::string> const& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
    };
    widen(table.headings);
    widen(table.units);
    std::for_each(table.rows.begin(), table.rows.end(), widen);

    auto text = line(table.headings, widths) + line(table.units, widths);
    for (auto const& row : table.rows) {
        auto cells = row;
        for (auto& cell : cells) {
            if (cell.empty()) cell = "-";
        }
        text += line(cells, widths);
    }
    return text;
}

} // namespace quorvel::host
