// SPDX-License-Identifier: MIT
#include "inspect/aircraft_csv.h"

#include "files/printable.h"
#include "inspect/aligned_table.h"
#include "outputs/output_text.h"
#include <airspace/aircraft.h>

#include <nlohmann/json.hpp>

namespace quorvel::inspect {

namespace {

bool differ(files::KnownAircraft const& a, files::KnownAircraft const& b) {
    bool const bothNamed = !a.airline.empty() && !b.airline.empty();
    return a.version != b.version || (bothNamed && a.airline != b.airline);
}

} // namespace

std::vector<unsigned> mergeAircraft(files::AircraftByAddress& aircraft, files::AircraftByAddress const& later) {
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

files::AircraftByAddress filtered(files::AircraftByAddress const& aircraft, AircraftFilter const& filter) {
    files::AircraftByAddress result;
    for (auto const& [address, known] : aircraft) {
        if (airspace::addressText(address).starts_with(filter.address) && known.airline.starts_with(filter.airline))
            result.emplace(address, known);
    }
    return result;
}

std::string aircraftTable(files::AircraftByAddress const& aircraft) {
    std::vector<TableRow> rows;
    for (auto const& [address, known] : aircraft) {
        rows.push_back({airspace::addressText(address), std::to_string(known.version),
            known.airline.empty() ? "-" : known.airline});
    }
    auto const table = rows.empty() ? "" : alignedTable({{"ICAO"}, {"Version"}, {"Airline"}}, rows, "") + "\n";
    return table + std::to_string(rows.size()) + " aircraft\n";
}

std::string aircraftJson(files::AircraftByAddress const& aircraft) {
    using Json = nlohmann::ordered_json;
    std::string text;
    for (auto const& [address, known] : aircraft) {
        Json json{{"icaoAddress", airspace::addressText(address)}, {"mopsVersion", known.version}};
        json["airline"] = known.airline.empty() ? Json() : Json(known.airline);
        text += json.dump() + "\n";
    }
    return text;
}

} // namespace quorvel::inspect
