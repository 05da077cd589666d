// SPDX-License-Identifier: MIT
#include "inspect/aircraft_csv.h"

#include "host/printable.h"
#include "inspect/text_table.h"
#include "outputs/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace quorvel::host {

namespace {

constexpr std::array<std::string_view, 3> kColumns{"icao_addr", "mops_version", "airline"};
enum Column : std::size_t { Address, Version, Airline };

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";
constexpr unsigned kLastAddress = 0xFFFFFF;
constexpr unsigned kLastVersion = 2;
constexpr std::size_t kDesignatorSize = 3;
constexpr std::size_t kQuoted = 40; // characters of a bad cell that are enough to know it again

using Cells = std::vector<std::string>;
using Remedy = Finding::Remedy;

std::string inQuotes(std::string_view text) {
    auto const isLong = text.size() > kQuoted;
    return printable("\"" + std::string(text.substr(0, kQuoted)) + (isLong ? "...\"" : "\""));
}

std::string trimmed(std::string const& text) {
    auto const first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// A number that is written with nothing but its digits.
std::optional<unsigned> numberIn(std::string const& text, int base) {
    unsigned value = 0;
    auto const* end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, value, base);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

bool isDesignator(std::string const& text) {
    return text.size() == kDesignatorSize &&
           std::ranges::all_of(text, [](char letter) { return letter >= 'A' && letter <= 'Z'; });
}

// The cells of one line; none when a quote in it is never closed.
std::optional<Cells> cellsOf(std::string_view line) {
    Cells cells(1);
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        bool const isDoubled = isQuoted && line.substr(i, 2) == "\"\"";
        if (line[i] == '"' && !isDoubled) {
            isQuoted = !isQuoted;
        } else if (line[i] == ',' && !isQuoted) {
            cells.emplace_back();
        } else {
            cells.back() += line[i];
            if (isDoubled) ++i;
        }
    }
    return isQuoted ? std::nullopt : std::optional(cells);
}

class Reader {
public:
    ParsedAircraft read(std::string_view content) {
        content = withoutMark(content);
        if (content.empty()) note(Remedy::Changed, "the file is empty, not even the header is there");
        while (!content.empty()) {
            ++_line;
            auto const end = content.find('\n');
            readLine(withoutReturn(content.substr(0, end)));
            if (end == std::string_view::npos)
                note(Remedy::Changed, "the line does not end: the file may have been cut short");
            content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        }
        return std::move(_file);
    }

private:
    void note(Remedy remedy, std::string const& text) {
        _file.findings.push_back({std::max<std::size_t>(_line, 1), remedy, text});
    }

    std::string_view withoutMark(std::string_view content) {
        if (!content.starts_with(kByteOrderMark)) return content;
        note(Remedy::Changed, "the file begins with a byte order mark");
        return content.substr(kByteOrderMark.size());
    }

    // Told once: who has one such line has many.
    std::string_view withoutReturn(std::string_view line) {
        if (!line.ends_with('\r')) return line;
        if (!_hasReturns) note(Remedy::Changed, "lines end with carriage returns");
        _hasReturns = true;
        return line.substr(0, line.size() - 1);
    }

    void readLine(std::string_view line) {
        if (line.find_first_not_of(kBlanks) == std::string_view::npos)
            return note(Remedy::Dropped, "the line is empty");
        auto const cells = cellsOf(line);
        if (!cells) return note(Remedy::Dropped, "a quote is not closed: " + inQuotes(line));
        if (_line == 1 && readHeader(*cells)) return;
        readRow(*cells);
    }

    // Columns are found by their names. A first line that names none of them is a row.
    bool readHeader(Cells const& cells) {
        std::size_t found = 0;
        for (std::size_t column = 0; column < kColumns.size(); ++column) {
            auto const place = std::ranges::find(cells, kColumns[column], trimmed);
            if (place == cells.end()) continue;
            _places[column] = static_cast<std::size_t>(place - cells.begin());
            ++found;
        }
        _cellCount = found == 0 ? kColumns.size() : cells.size();
        if (found == kColumns.size()) return true;
        _places = {Address, Version, Airline};
        note(Remedy::Changed, found == 0 ? "the header is missing" : "the header does not name all columns");
        return found != 0;
    }

    std::string cell(Cells const& cells, Column column) const {
        auto const place = _places.at(column);
        return place < cells.size() ? cells[place] : "";
    }

    void readRow(Cells const& cells) {
        auto const address = readAddress(cell(cells, Address));
        if (!address) return;
        auto const version = readVersion(cell(cells, Version));
        if (!version) return;
        if (cells.size() != _cellCount) {
            note(Remedy::Changed, "the row has " + std::to_string(cells.size()) + " cells, the header has " +
                                      std::to_string(_cellCount));
        }
        KnownAircraft const aircraft{*version, readAirline(cell(cells, Airline))};
        auto const [seen, isNew] = _lines.try_emplace(*address, _line);
        if (!isNew) {
            note(Remedy::Changed, addressText(*address) + " was on line " + std::to_string(seen->second) +
                                      " already, this row wins");
        }
        seen->second = _line;
        _file.aircraft[*address] = aircraft;
    }

    std::optional<unsigned> readAddress(std::string const& text) {
        auto const address = numberIn(trimmed(text), 16);
        if (!address || *address == 0 || *address > kLastAddress) {
            note(Remedy::Dropped, inQuotes(text) + " is no aircraft address (000001 to FFFFFF)");
            return std::nullopt;
        }
        if (text != addressText(*address))
            note(Remedy::Changed, inQuotes(text) + " is written " + addressText(*address));
        return address;
    }

    std::optional<unsigned> readVersion(std::string const& text) {
        auto const version = numberIn(trimmed(text), 10);
        if (!version || *version > kLastVersion) {
            note(Remedy::Dropped, inQuotes(text) + " is no version (0, 1 or 2)");
            return std::nullopt;
        }
        if (text != std::to_string(*version))
            note(Remedy::Changed, inQuotes(text) + " is written " + std::to_string(*version));
        return version;
    }

    std::string readAirline(std::string const& text) {
        auto airline = upperCase(trimmed(text));
        if (!airline.empty() && !isDesignator(airline)) {
            note(Remedy::Changed, inQuotes(text) + " is no airline designator (three letters), left empty");
            return "";
        }
        if (airline != text) note(Remedy::Changed, inQuotes(text) + " is written " + inQuotes(airline));
        return airline;
    }

    ParsedAircraft _file;
    std::size_t _line = 0;
    bool _hasReturns = false;
    std::array<std::size_t, kColumns.size()> _places{Address, Version, Airline};
    std::size_t _cellCount = kColumns.size();
    std::map<unsigned, std::size_t> _lines; // where each address was last
};

bool differ(KnownAircraft const& a, KnownAircraft const& b) {
    bool const bothNamed = !a.airline.empty() && !b.airline.empty();
    return a.version != b.version || (bothNamed && a.airline != b.airline);
}

} // namespace

std::string upperCase(std::string text) {
    for (auto& letter : text) {
        if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    }
    return text;
}

ParsedAircraft parseAircraft(std::string_view content) { return Reader().read(content); }

std::string aircraftCsv(AircraftByAddress const& aircraft) {
    std::string text;
    for (auto const column : kColumns) text += (text.empty() ? "" : ",") + std::string(column);
    text += "\n";
    for (auto const& [address, known] : aircraft)
        text += addressText(address) + "," + std::to_string(known.version) + "," + known.airline + "\n";
    return text;
}

std::vector<unsigned> mergeAircraft(AircraftByAddress& aircraft, AircraftByAddress const& later) {
    std::vector<unsigned> conflicts;
    for (auto const& [address, known] : later) {
        auto const [place, isNew] = aircraft.try_emplace(address, known);
        if (isNew) continue;
        if (differ(place->second, known)) conflicts.push_back(address);
        place->second.version = known.version;
        if (!known.airline.empty()) place->second.airline = known.airline;
    }
    return conflicts;
}

AircraftByAddress filtered(AircraftByAddress const& aircraft, AircraftFilter const& filter) {
    AircraftByAddress result;
    for (auto const& [address, known] : aircraft) {
        if (addressText(address).starts_with(filter.address) && known.airline.starts_with(filter.airline))
            result.emplace(address, known);
    }
    return result;
}

std::string aircraftTable(AircraftByAddress const& aircraft) {
    std::vector<TableRow> rows;
    for (auto const& [address, known] : aircraft) {
        rows.push_back({addressText(address), std::to_string(known.version),
                        known.airline.empty() ? "-" : known.airline});
    }
    auto const table =
        rows.empty() ? "" : alignedTable({{"ICAO"}, {"Version"}, {"Airline"}}, rows, "") + "\n";
    return table + std::to_string(rows.size()) + " aircraft\n";
}

std::string aircraftJson(AircraftByAddress const& aircraft) {
    using Json = nlohmann::ordered_json;
    std::string text;
    for (auto const& [address, known] : aircraft) {
        Json json{{"icaoAddress", addressText(address)}, {"mopsVersion", known.version}};
        json["airline"] = known.airline.empty() ? Json() : Json(known.airline);
        text += json.dump() + "\n";
    }
    return text;
}

} // namespace quorvel::host
