// SPDX-License-Identifier: MIT
#include <modes/adsb_aircraftdb.h>

#include <modes/adsb_target.h>

#include "core/address_map.h"
#include "core/file_replacement.h"
#include "core/log_if_shown.h"
#include "core/text.h"

#include <rapidcsv.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace quorvel::modes {

namespace {

std::string const kModule = "AircraftDB";

std::string const colIcaoAddr = "icao_addr";
std::string const colMOPSVersion = "mops_version";
std::string const colAirline = "airline";

constexpr std::size_t kDesignatorSize = 3;

// One header row, no row labels; cells are quoted where they must be and otherwise taken as they are; lines
// end with a bare line feed, and every line is a row.
rapidcsv::Document openDocument(std::string const& path) {
    return rapidcsv::Document(path, rapidcsv::LabelParams(0, -1),
        rapidcsv::SeparatorParams(',', false, false, false, true), rapidcsv::ConverterParams(),
        rapidcsv::LineReaderParams(false, '#', false));
}

struct Row {
    unsigned int address = 0;
    MOPSVersion version = MOPS_UNKNOWN;
    std::string airline;
};

Row readRow(rapidcsv::Document const& document, std::size_t index) {
    Row row;
    row.address = static_cast<unsigned int>(std::stoi(document.GetCell<std::string>(colIcaoAddr, index), nullptr, 16));
    row.version = document.GetCell<MOPSVersion>(colMOPSVersion, index, ConvMOPSVersion);
    row.airline = document.GetCell<std::string>(colAirline, index);
    return row;
}

// The row, if it can be read and names an aircraft and its version; what is wrong with it otherwise goes to
// the log.
bool readUsableRow(rapidcsv::Document const& document, std::size_t index, Row& row) {
    auto const number = static_cast<unsigned int>(index + 1);
    try {
        row = readRow(document, index);
    } catch (std::out_of_range const& exception) {
        logIfShown(Log::Warning, kModule, "Execpeption as row %u: %s.", number, exception.what());
        return false;
    } catch (std::exception const&) {
        logIfShown(Log::Warning, kModule, "Execpeption as row %u.", number);
        return false;
    }
    if (row.address == 0) {
        logIfShown(Log::Warning, kModule, "Read invalid ICAO address at row %u, skip.", number);
        return false;
    }
    if (row.version == MOPS_UNKNOWN) {
        logIfShown(Log::Warning, kModule, "Read unsupported MOPS version at row %u, skip.", number);
        return false;
    }
    return true;
}

// Whether the aircraft can be written; what is wrong with it otherwise goes to the log.
bool isWritable(std::shared_ptr<Aircraft> const& aircraft) {
    if (!aircraft) {
        logIfShown(Log::Warning, kModule, "Found null aircraft, skip.");
        return false;
    }
    if (aircraft->mopsVersion() >= MOPS_UNKNOWN) {
        logIfShown(Log::Warning, kModule, "Found unsupported MOPS version, skip.");
        return false;
    }
    return true;
}

// A designator is three letters with something, the flight number, after them.
bool beginsWithDesignator(std::string const& callsign) {
    return callsign.size() > kDesignatorSize &&
           std::all_of(callsign.begin(), callsign.begin() + kDesignatorSize,
               [](char letter) { return std::isupper(static_cast<unsigned char>(letter)) != 0; });
}

// A stream that is full may fail when it is closed, where the error would go unnoticed. Files that end in
// nothing, such as devices, have nothing to count.
void requireWhole(std::string const& path, std::size_t lines) {
    if (!std::filesystem::is_regular_file(path)) return;
    std::ifstream file(path, std::ios::binary);
    std::size_t count = 0;
    char last = '\n';
    for (std::istreambuf_iterator<char> byte(file), end; byte != end; ++byte) {
        last = *byte;
        if (last == '\n') ++count;
    }
    if (last != '\n' || count < lines) throw std::ios_base::failure("cannot write all of " + path);
}

} // namespace

Aircraft::Aircraft(unsigned int const& icaoAddr) : _icaoAddr(icaoAddr) {}

std::string Aircraft::icaoAddrString() const { return formatted("%6.6X", _icaoAddr); }

struct AircraftDB::Impl {
    AddressMap<std::shared_ptr<Aircraft>> aircraft;
    std::string fileName;
};

AircraftDB::AircraftDB() : _impl(std::make_unique<Impl>()) {}
AircraftDB::AircraftDB(AircraftDB const& other) : _impl(std::make_unique<Impl>(*other._impl)) {}
AircraftDB::AircraftDB(AircraftDB&& other) noexcept = default;
AircraftDB& AircraftDB::operator=(AircraftDB const& other) { return *this = AircraftDB(other); }
AircraftDB& AircraftDB::operator=(AircraftDB&& other) noexcept = default;
AircraftDB::~AircraftDB() = default;

std::shared_ptr<Aircraft> AircraftDB::findAircraft(unsigned int const& icao) const {
    auto const* found = _impl->aircraft.find(icao);
    return found ? *found : nullptr;
}

std::shared_ptr<Aircraft> AircraftDB::createAircraft(unsigned int const& icao) {
    auto& aircraft = _impl->aircraft[icao];
    if (!aircraft) aircraft = std::make_shared<Aircraft>(icao);
    return aircraft;
}

void AircraftDB::updateAircraft(std::shared_ptr<Aircraft> const& aircraft) {
    if (aircraft) _impl->aircraft[aircraft->icaoAddr()] = aircraft;
}

void AircraftDB::updateAircraft(std::shared_ptr<ADSBTarget const> const& target) {
    if (!target || !target->icaoAddrValid() || target->mopsVersionAssumed()) return;
    auto const aircraft = createAircraft(target->icaoAddr());
    aircraft->setMopsVersion(target->mopsVersion());
    auto const callsign = target->callsign();
    if (beginsWithDesignator(callsign)) aircraft->setAirline(callsign.substr(0, kDesignatorSize));
}

bool AircraftDB::load(std::string const& fileName) {
    if (fileName.empty()) return false;
    _impl->fileName = fileName;
    auto const document = openDocument(fileName);
    // a file without even a header counts as minus one rows
    auto const rows = static_cast<std::size_t>(std::max(0LL, static_cast<long long>(document.GetRowCount())));
    logIfShown(Log::Debug, kModule, "Loading %u rows from file: %s", static_cast<unsigned int>(rows), fileName.c_str());
    for (std::size_t index = 0; index < rows; ++index) {
        Row row;
        if (!readUsableRow(document, index, row)) continue;
        auto const aircraft = createAircraft(row.address);
        aircraft->setMopsVersion(row.version);
        aircraft->setAirline(row.airline);
    }
    return true;
}

bool AircraftDB::save(std::string const& fileName) {
    if (fileName.empty()) return false;
    _impl->fileName = fileName;
    logIfShown(Log::Debug, kModule, "Saving to file: %s", fileName.c_str());

    auto document = openDocument("");
    document.SetColumnName(0, colIcaoAddr);
    document.SetColumnName(1, colMOPSVersion);
    document.SetColumnName(2, colAirline);
    std::size_t rows = 0;
    for (auto const address : _impl->aircraft.addresses()) {
        auto const& aircraft = *_impl->aircraft.find(address);
        if (!isWritable(aircraft)) continue;
        document.InsertRow<std::string>(
            rows++, {formatted("%6.6X", address), std::to_string(aircraft->mopsVersion()), aircraft->airline()});
    }
    FileReplacement replacement(fileName);
    document.Save(replacement.path());
    requireWhole(replacement.path(), rows + 1);
    replacement.commit();
    logIfShown(Log::Debug, kModule, "Saved %u rows to file: %s", static_cast<unsigned int>(rows), fileName.c_str());
    return true;
}

bool AircraftDB::save() {
    auto const fileName = _impl->fileName; // save stores the name
    return save(fileName);
}

} // namespace quorvel::modes
