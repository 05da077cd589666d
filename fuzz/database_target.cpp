// SPDX-License-Identifier: MIT
// The aircraft database's file: any bytes load without harm, and what is written reads back as the same
// table.
//
// Input: the file.
#include <modes/adsb_aircraftdb.h>
#include <modes/adsb_target.h>
#include <modes/adsb_tracker.h>
#include <modes/modes_decoder.h>

#include "harness/input.h"
#include "harness/require.h"
#include "harness/target.h"
#include "support/frames.h"
#include "support/temporary_folder.h"

#include <fstream>
#include <ios>
#include <iterator>
#include <map>
#include <sstream>
#include <vector>

namespace quorvel::fuzz {

namespace {

using modes::AircraftDB;
using modes::MOPSVersion;

// Addresses from here on are written as numbers that the reader takes for too large. No aircraft has one:
// they come from negative numbers in a file. Address 0, which is nobody's, is not read either, and so never
// written.
constexpr unsigned kUnreadable = 0x80000000;

struct Entry {
    unsigned version;
    std::string airline;

    bool operator==(Entry const&) const = default;
};
using Table = std::map<unsigned, Entry>;

std::string content(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A cell as it was before it was quoted.
std::string unquoted(std::string const& cell) {
    if (cell.empty() || cell.front() != '"') return cell;
    require(cell.size() >= 2 && cell.back() == '"', "a quoted cell ends with a quote");
    std::string text;
    for (std::size_t i = 1; i + 1 < cell.size(); ++i) {
        text += cell[i];
        if (cell[i] != '"') continue;
        ++i;
        require(i + 1 < cell.size() && cell[i] == '"', "quotes inside a quoted cell are doubled");
    }
    return text;
}

// The table that a written file shows to a plain reader: header, then "%6.6X,version,airline" in rising
// order.
Table tableIn(std::string const& text) {
    Table table;
    std::istringstream lines(text);
    std::string line;
    require(text.ends_with('\n'), "every line ends with a line feed");
    require(std::getline(lines, line) && line == "icao_addr,mops_version,airline", "the header names the columns");
    while (std::getline(lines, line)) {
        auto const digits = line.find(',');
        require(digits >= 6 && line.find_first_not_of("0123456789ABCDEF") == digits && line.size() >= digits + 3 &&
                    line[digits + 2] == ',',
            "a row has an address of six digits or more, and a version");
        auto const address = static_cast<unsigned>(std::stoul(line, nullptr, 16));
        requireWithin(line[digits + 1], '0', '2', "version in a file");
        require(table.empty() || table.rbegin()->first < address, "rows are in the order of their addresses");
        table[address] = {static_cast<unsigned>(line[digits + 1] - '0'), unquoted(line.substr(digits + 3))};
    }
    return table;
}

void checkFound(AircraftDB const& db, Table const& table) {
    for (auto const& [address, entry] : table) {
        auto const aircraft = db.findAircraft(address);
        require(aircraft && aircraft->icaoAddr() == address, "an aircraft of the file is found");
        require(Entry{aircraft->mopsVersion(), aircraft->airline()} == entry, "it is what the file says");
    }
}

// Opening may fail, and says so by the exception of files; nothing else is thrown.
bool loads(AircraftDB& db, std::string const& path) {
    try {
        return db.load(path);
    } catch (std::ios_base::failure const&) {
        return false;
    }
}

std::string savedBy(AircraftDB& db, std::string const& path) {
    require(db.save(path), "a table is written");
    return content(path);
}

// What `save` writes, `load` reads back, and is in the folder then: the same aircraft, no more and no fewer.
Table checkWayBack(AircraftDB& db, modes::test::TemporaryFolder const& folder) {
    auto const path = folder.path("saved.csv");
    auto table = tableIn(savedBy(db, path));
    checkFound(db, table);
    table.erase(table.lower_bound(kUnreadable), table.end());

    AircraftDB again;
    require(again.load(path), "a written file is read");
    checkFound(again, table);
    require(tableIn(savedBy(again, path)) == table, "nothing is lost and nothing is added");
    return table;
}

// The lines of the file as the airlines of a table that a host has filled, or as the callsigns of aircraft
// that it learns from.
void fill(AircraftDB& db, std::string const& text) {
    std::istringstream lines(text);
    unsigned number = 1;
    for (std::string line; std::getline(lines, line); ++number) {
        auto const address = number * 0x10001 % kUnreadable;
        auto const version = static_cast<MOPSVersion>(number % 5);
        if (number % 2 == 0) {
            auto const target = std::make_shared<modes::ADSBTarget>(address);
            target->setMOPSVersion(version, 1);
            target->setMOPSVersionConfirmed(1);
            target->setCallsign(line, 1);
            db.updateAircraft(std::shared_ptr<modes::ADSBTarget const>(target));
        } else {
            auto const aircraft = db.createAircraft(address);
            aircraft->setMopsVersion(version);
            aircraft->setAirline(line);
        }
    }
}

// The table in the hands of a tracker: it believes the file, and writes what it has read.
void checkTracker(Table const& table, modes::test::TemporaryFolder const& folder) {
    constexpr unsigned kLongestAddress = 0xFFFFFF;
    constexpr unsigned kAircraft = 8;
    modes::ModeSDecoder decoder;
    modes::ADSBTracker tracker;
    tracker.setAircraftDbFile(folder.path("saved.csv"));
    for (auto const& [address, entry] : table) {
        if (address > kLongestAddress || tracker.allTargets().size() == kAircraft) break;
        auto const frame = modes::test::squitter(address, modes::test::identification("N123AB"));
        auto const target = tracker.procModeSMsg(decoder.decode(modes::ModeSMessage::DOWNLINK, frame));
        require(target && target->mopsVersionConfirmed() && target->mopsVersion() == entry.version,
            "the version of the file is believed");
    }
    tracker.killTargets(~0ULL);
    tracker.saveAircraftDb();
    auto written = tableIn(content(folder.path("saved.csv")));
    require(written == table, "what the file said is written again");
}

} // namespace

void runTarget(Input input) {
    static modes::test::TemporaryFolder const folder;
    auto const text = input.rest();

    AircraftDB read;
    bool const loaded = loads(read, folder.write("read.csv", text));
    require(loaded, "a file that can be opened is read");
    checkTracker(checkWayBack(read, folder), folder);

    AircraftDB filled;
    fill(filled, text);
    checkWayBack(filled, folder);
}

} // namespace quorvel::fuzz
