// SPDX-License-Identifier: MIT
#include "files/aircraft_rows.h"

#include "files/printable.h"

#include <modes/adsb_aircraftdb.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace quorvel::files {

namespace {

constexpr std::array<std::string_view, 3> kColumns{"icao_addr", "mops_version", "airline"};
enum Column : std::size_t { Address, Version, Airline };

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";
constexpr unsigned kLastAddress = 0xFFFFFF;
constexpr unsigned kLastVersion = 2;
constexpr std::size_t kDesignatorSize = 3;
constexpr std::size_t kQuoted = 40; // characters of a bad cell that are enough to recognize it

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

std::string textOf(unsigned address) { return modes::Aircraft(address).icaoAddrString(); }

bool isDesignator(std::string const& text) {
    return text.size() == kDesignatorSize &&
           std::ranges::all_of(text, [](char letter) { return letter >= 'A' && letter <= 'Z'; });
}

// The cells of one line; none when a quote in it is never closed. A quote opens a cell at its start only, as for the
// library.
std::optional<Cells> cellsOf(std::string_view line) {
    Cells cells(1);
    bool isAtStart = true;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        bool const isDoubled = isQuoted && line.substr(i, 2) == "\"\"";
        bool const isStart = std::exchange(isAtStart, false);
        if (line[i] == '"' && !isDoubled && (isStart || isQuoted)) {
            isQuoted = !isQuoted;
        } else if (line[i] == ',' && !isQuoted) {
            cells.emplace_back();
            isAtStart = true;
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
        if (content.empty()) note(Remedy::Changed, "the file is empty, even the header is missing");
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
    void note(Remedy remedy, std::string const& text, bool isLoss = false) {
        _file.findings.push_back({std::max<std::size_t>(_line, 1), remedy, text, isLoss});
    }

    void drop(std::string const& text) { note(Remedy::Dropped, text, true); }

    std::string_view withoutMark(std::string_view content) {
        if (!content.starts_with(kByteOrderMark)) return content;
        note(Remedy::Changed, "the file starts with a byte order mark");
        return content.substr(kByteOrderMark.size());
    }

    // Reported once: a file with one such line has many.
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
        if (!cells) return drop("a quote is not closed: " + inQuotes(line));
        if (_line == 1 && readHeader(*cells)) return;
        readRow(*cells);
    }

    // Columns are found by their names. A first line that names none of them is a row.
    bool readHeader(Cells const& cells) {
        std::size_t found = 0;
        for (std::size_t column = 0; column < kColumns.size(); ++column) {
            auto const place = std::ranges::find(cells, kColumns[column], trimmed);
            if (place == cells.end()) continue;
            if (*place != kColumns[column])
                note(Remedy::Changed, inQuotes(*place) + " is written " + std::string(kColumns[column]));
            _places[column] = static_cast<std::size_t>(place - cells.begin());
            ++found;
        }
        _cellCount = found == 0 ? kColumns.size() : cells.size();
        if (found == kColumns.size()) {
            noteOtherColumns(cells);
            return true;
        }
        _places = {Address, Version, Airline};
        note(Remedy::Changed, found == 0 ? "the header is missing" : "the header does not name all columns", true);
        return found != 0;
    }

    // A file is written with the three columns alone.
    void noteOtherColumns(Cells const& cells) {
        for (auto const& name : cells) {
            bool const isOurs = std::ranges::find(kColumns, trimmed(name)) != kColumns.end();
            if (!isOurs && !trimmed(name).empty())
                note(Remedy::Changed, "the column " + inQuotes(name) + " is not kept", true);
        }
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
            note(Remedy::Changed,
                "the row has " + std::to_string(cells.size()) + " cells, the header has " + std::to_string(_cellCount),
                hasMoreThanTheHeader(cells));
        }
        KnownAircraft const aircraft{*version, readAirline(cell(cells, Airline))};
        auto const [seen, isNew] = _lines.try_emplace(*address, _line);
        if (!isNew) {
            note(Remedy::Changed,
                textOf(*address) + " was on line " + std::to_string(seen->second) + " already, this row wins");
        }
        seen->second = _line;
        _file.aircraft[*address] = aircraft;
    }

    bool hasMoreThanTheHeader(Cells const& cells) const {
        return std::any_of(cells.begin() + static_cast<std::ptrdiff_t>(std::min(_cellCount, cells.size())), cells.end(),
            [](std::string const& cell) { return !trimmed(cell).empty(); });
    }

    std::optional<unsigned> readAddress(std::string const& text) {
        auto const address = numberIn(trimmed(text), 16);
        if (!address || *address == 0 || *address > kLastAddress) {
            drop(inQuotes(text) + " is not an aircraft address (000001 to FFFFFF)");
            return std::nullopt;
        }
        if (text != textOf(*address)) note(Remedy::Changed, inQuotes(text) + " is written " + textOf(*address));
        return address;
    }

    std::optional<unsigned> readVersion(std::string const& text) {
        auto const version = numberIn(trimmed(text), 10);
        if (!version || *version > kLastVersion) {
            drop(inQuotes(text) + " is not a version (0, 1 or 2)");
            return std::nullopt;
        }
        if (text != std::to_string(*version))
            note(Remedy::Changed, inQuotes(text) + " is written " + std::to_string(*version));
        return version;
    }

    std::string readAirline(std::string const& text) {
        auto airline = upperCase(trimmed(text));
        if (!airline.empty() && !isDesignator(airline)) {
            note(Remedy::Changed, inQuotes(text) + " is not an airline designator (three letters), left empty");
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
        text += textOf(address) + "," + std::to_string(known.version) + "," + known.airline + "\n";
    return text;
}

} // namespace quorvel::files
