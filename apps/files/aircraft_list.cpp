// SPDX-License-Identifier: MIT
#include "files/aircraft_list.h"

#include "files/byte_source.h"
#include "files/host_error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <span>

namespace quorvel::files {

namespace {

constexpr std::size_t kAddressDigits = 6;
constexpr std::size_t kMostBytes = 256 << 20; // of a list: all aircraft of the world take a tenth

// What a column can hold, in the order of `Columns`, and what it is called, the best name first: lower-case letters and
// digits alone.
enum Content : std::size_t { kAddress, kRegistration, kType, kOperator, kContents };
using Names = std::array<std::string_view, 6>;
constexpr std::array<Names, kContents> kNames{{
    {"hex", "icao", "icao24", "address", "icaoaddress", "modes"},
    {"registration", "reg", "regid", "tail", "r"},
    {"typecode", "icaotype", "icaotypecode", "typedesignator", "type", "t"},
    {"operator", "operatorname", "ownop", "owner", "registeredowners", "airline"},
}};

// Which column holds what; none where no column does.
using Columns = std::array<std::optional<std::size_t>, kContents>;

char separatorOf(std::string_view line) {
    constexpr std::string_view separators = ",;\t";
    return *std::ranges::max_element(
        separators, {}, [line](char separator) { return std::ranges::count(line, separator); });
}

// Cells of a line, without quotes and blanks around them.
std::vector<std::string> cellsOf(std::string_view line, char separator) {
    std::vector<std::string> cells(1);
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        auto const character = line[i];
        auto& cell = cells.back();
        if (quote != 0) {
            bool const isDoubled = character == quote && i + 1 < line.size() && line[i + 1] == quote;
            if (character == quote && !isDoubled) {
                quote = 0;
            } else {
                cell += character;
                i += isDoubled ? 1 : 0;
            }
        } else if ((character == '"' || character == '\'') && cell.find_first_not_of(' ') == std::string::npos) {
            quote = character;
            cell.clear();
        } else if (character == separator) {
            cells.emplace_back();
        } else {
            cell += character;
        }
    }
    for (auto& cell : cells) {
        cell.erase(cell.find_last_not_of(" \r") + 1);
        cell.erase(0, std::min(cell.find_first_not_of(' '), cell.size()));
    }
    return cells;
}

std::string plainName(std::string_view cell) {
    std::string name;
    for (char const character : cell) {
        if (character >= 'A' && character <= 'Z') name += static_cast<char>(character - 'A' + 'a');
        if ((character >= 'a' && character <= 'z') || (character >= '0' && character <= '9')) name += character;
    }
    return name;
}

std::optional<std::size_t> columnOf(std::span<std::string const> names, Names const& wanted) {
    for (auto const name : wanted) {
        auto const found = std::ranges::find(names, name);
        if (!name.empty() && found != names.end()) return static_cast<std::size_t>(found - names.begin());
    }
    return std::nullopt;
}

// Columns by a head line; none of a line that is no head.
std::optional<Columns> columnsByName(std::vector<std::string> cells) {
    for (auto& cell : cells) cell = plainName(cell);
    Columns columns;
    for (std::size_t content = 0; content < kContents; ++content) columns[content] = columnOf(cells, kNames[content]);
    return columns[kAddress] ? std::optional(columns) : std::nullopt;
}

// Semicolons separate lists that go on with flags.
Columns columnsByPlace(char separator) {
    Columns columns{0, 1, 2, std::nullopt};
    if (separator == ',') columns[kOperator] = 3;
    return columns;
}

std::optional<std::uint32_t> addressOf(std::string_view cell) {
    std::uint32_t address = 0;
    auto const [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), address, 16);
    bool const isWhole = error == std::errc() && end == cell.data() + cell.size() && cell.size() == kAddressDigits;
    return isWhole ? std::optional(address) : std::nullopt;
}

std::string_view at(std::vector<std::string> const& cells, std::optional<std::size_t> column) {
    return column && *column < cells.size() ? std::string_view(cells[*column]) : std::string_view();
}

std::string_view takeLine(std::string_view& text) {
    auto const line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

} // namespace

AircraftList::AircraftList(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    auto rest = text;
    auto const first = takeLine(rest);
    auto const separator = separatorOf(first);
    auto const named = columnsByName(cellsOf(first, separator));
    auto const columns = named.value_or(columnsByPlace(separator));
    if (named) text = rest;
    while (!text.empty()) {
        auto const cells = cellsOf(takeLine(text), separator);
        auto const address = addressOf(at(cells, columns[kAddress]));
        if (!address) continue;
        add(*address, {at(cells, columns[kRegistration]), at(cells, columns[kType]), at(cells, columns[kOperator])});
    }
    std::ranges::stable_sort(_rows, {}, &Row::address);
}

void AircraftList::add(std::uint32_t address, ListedAircraft const& aircraft) {
    if (_texts.size() > std::numeric_limits<std::uint32_t>::max()) return; // where no row can point to
    _rows.push_back({address, static_cast<std::uint32_t>(_texts.size())});
    for (auto const part : {aircraft.registration, aircraft.type, aircraft.operatorName})
        (_texts += part.substr(0, part.find('\0'))) += '\0';
}

std::optional<ListedAircraft> AircraftList::find(std::uint32_t address) const {
    auto const after = std::ranges::upper_bound(_rows, address, {}, &Row::address);
    if (after == _rows.begin() || std::prev(after)->address != address) return std::nullopt;
    auto const* text = _texts.c_str() + std::prev(after)->start;
    ListedAircraft aircraft;
    for (auto* part : {&aircraft.registration, &aircraft.type, &aircraft.operatorName}) {
        *part = text;
        text += part->size() + 1;
    }
    return aircraft;
}

AircraftList readAircraftList(std::string const& path) {
    ByteSource source(path);
    std::string text;
    for (std::string piece; source.read(piece);) {
        text += piece;
        if (text.size() > kMostBytes) throw HostError("cannot use " + path + ": it holds more than 256 MiB");
    }
    if (!source.complaint().empty()) throw HostError("cannot read " + path + ": " + source.complaint());
    AircraftList list(text);
    if (list.size() == 0) throw HostError("cannot use " + path + ": no line begins with an aircraft address");
    return list;
}

} // namespace quorvel::files
