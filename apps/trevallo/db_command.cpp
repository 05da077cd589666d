// SPDX-License-Identifier: MIT
#include "trevallo/db_command.h"

#include "files/byte_source.h"
#include "files/host_error.h"
#include "files/replaced_file.h"
#include "inspect/aircraft_csv.h"
#include "outputs/output_text.h"
#include "run/aircraft_file.h"
#include "terminal/stderr_log.h"
#include "trevallo/log_option.h"
#include "trevallo/target_option.h"
#include <airspace/aircraft.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

namespace quorvel::program {

namespace {

constexpr std::size_t kAddressDigits = 6;
constexpr char kMendHint[] = "; \"trevallo db mend\" keeps what is good";

struct Settings {
    std::vector<std::string> files;
    std::string output;
    inspect::AircraftFilter filter;
    bool json = false;
    LogSettings log;
};

files::ParsedAircraft readFile(std::string const& name) {
    files::ByteSource source(name);
    std::string content;
    for (std::string bytes; source.read(bytes);) content += bytes;
    return files::parseAircraft(content);
}

std::string titleOf(std::string const& name) { return name == "-" ? "standard input" : name; }

void print(std::string const& text) {
    if (!(std::cout << text).flush()) throw files::HostError("cannot write to standard output");
}

void writeFile(std::string const& name, files::AircraftByAddress const& aircraft, run::Backup backup) {
    auto const content = files::aircraftCsv(aircraft);
    if (name == "-") {
        print(content);
    } else {
        files::makeFolderOf(name);
        run::replaceWithBackup(name, backup, [&] { files::writeWhole(name, content); });
    }
}

bool isSameFile(std::string const& a, std::string const& b) {
    std::error_code ignored;
    return std::filesystem::equivalent(a, b, ignored);
}

std::string counted(std::size_t count, std::string const& one, std::string const& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::size_t droppedRows(files::ParsedAircraft const& file) {
    return static_cast<std::size_t>(
        std::ranges::count(file.findings, files::Finding::Remedy::Dropped, &files::Finding::remedy));
}

void warnOfDroppedRows(std::string const& name, files::ParsedAircraft const& file) {
    auto const dropped = droppedRows(file);
    if (dropped > 0) {
        std::cerr << "trevallo: " << titleOf(name) << ": " << counted(dropped, "row", "rows")
                  << " left out, \"trevallo db check\" says why\n";
    }
}

std::string descriptionOf(files::KnownAircraft const& known) {
    return "version " + std::to_string(known.version) + (known.airline.empty() ? "" : " " + known.airline);
}

// All files in one, with a message about each aircraft on which they differ.
files::AircraftByAddress merged(std::vector<std::string> const& names) {
    files::AircraftByAddress aircraft;
    std::size_t conflicts = 0;
    for (auto const& name : names) {
        auto const file = readFile(name);
        warnOfDroppedRows(name, file);
        auto const before = aircraft;
        for (auto const address : inspect::mergeAircraft(aircraft, file.aircraft)) {
            ++conflicts;
            std::cerr << "trevallo: " << airspace::addressText(address) << " was " << descriptionOf(before.at(address))
                      << ", is " << descriptionOf(file.aircraft.at(address)) << " in " << titleOf(name) << "\n";
        }
    }
    if (names.size() > 1 && conflicts > 0)
        std::cerr << "trevallo: " << counted(conflicts, "conflict", "conflicts") << ", later files won\n";
    return aircraft;
}

void show(Settings const& settings) {
    auto const aircraft = inspect::filtered(merged(settings.files), settings.filter);
    print(settings.json ? inspect::aircraftJson(aircraft) : inspect::aircraftTable(aircraft));
}

void merge(Settings const& settings) {
    run::requireReadable(settings.output);
    writeFile(settings.output, merged(settings.files), run::Backup::IfShrunk);
}

void check(Settings const& settings) {
    std::size_t findings = 0;
    for (auto const& name : settings.files) {
        auto const file = readFile(name);
        for (auto const& finding : file.findings)
            print(titleOf(name) + ":" + std::to_string(finding.line) + ": " + finding.text + "\n");
        findings += file.findings.size();
        print(name + ": " + std::to_string(file.aircraft.size()) + " aircraft, " +
              counted(file.findings.size(), "fault", "faults") + "\n");
    }
    if (findings > 0) throw files::HostError(counted(findings, "fault", "faults") + " found" + kMendHint);
}

void mend(Settings const& settings) {
    auto const& name = settings.files.front();
    auto const file = readFile(name);
    bool const isInPlace = isSameFile(name, settings.output);
    if (!isInPlace) run::requireReadable(settings.output);
    bool const isLoss = std::ranges::any_of(file.findings, &files::Finding::isLoss);
    writeFile(settings.output, file.aircraft, isInPlace && isLoss ? run::Backup::Always : run::Backup::IfShrunk);
    for (auto const& finding : file.findings) {
        std::cerr << titleOf(name) << ":" << finding.line << ": "
                  << (finding.remedy == files::Finding::Remedy::Dropped ? "dropped: " : "changed: ") << finding.text
                  << "\n";
    }
    auto const dropped = droppedRows(file);
    std::cerr << file.aircraft.size() << " aircraft kept, "
              << counted(file.findings.size() - dropped, "change", "changes") << ", " << counted(dropped, "row", "rows")
              << " dropped\n";
}

std::string checkedAddress(std::string const& text) {
    bool const isAddress = !text.empty() && text.size() <= kAddressDigits &&
                           text.find_first_not_of("0123456789ABCDEF") == std::string::npos;
    return isAddress ? "" : "an address is six hexadecimal digits, or the first of them, for example 4840D6";
}

using Action = void (*)(Settings const&);

CLI::App* addAction(CLI::App& db, std::string const& name, std::string const& description, Action action,
    std::shared_ptr<Settings> const& settings) {
    auto* command = db.add_subcommand(name, description);
    addLogOptions(*command, settings->log);
    command->callback([action, settings] {
        terminal::StderrLog const log(settings->log.level, settings->log.file);
        action(*settings);
    });
    return command;
}

void addFiles(CLI::App& command, Settings& settings, std::string const& description) {
    command.add_option("FILE", settings.files, description)->required();
}

void addOutput(CLI::App& command, Settings& settings) {
    command
        .add_option("-o,--output", settings.output,
            "Output, replaced as a whole; may be one of the files read; - is standard output")
        ->required()
        ->check(checkedFileOrStandardOutput)
        ->type_name("FILE");
}

void addShow(CLI::App& db, std::shared_ptr<Settings> const& settings) {
    auto* command = addAction(db, "show", "Print the aircraft of database files", show, settings);
    addFiles(*command, *settings, "Database files; later ones win; - is standard input");
    command->add_option("--address", settings->filter.address, "Only aircraft whose address starts with this")
        ->transform(files::upperCase)
        ->check(CLI::Validator(checkedAddress, ""))
        ->type_name("HEX");
    command->add_option("--airline", settings->filter.airline, "Only aircraft whose airline starts with this")
        ->transform(files::upperCase)
        ->type_name("LETTERS");
    command->add_flag("--json", settings->json, "One JSON object a line for each aircraft");
    command->footer("Examples:\n"
                    "  trevallo db show aircraft.csv\n"
                    "  trevallo db show --airline DLH --json aircraft.csv");
}

void addMerge(CLI::App& db, std::shared_ptr<Settings> const& settings) {
    auto* command = addAction(db, "merge", "Merge several database files into one", merge, settings);
    addFiles(*command, *settings,
        "Database files; where they differ later ones win, which is reported; an airline that is known stays");
    addOutput(*command, *settings);
    command->footer("Examples:\n"
                    "  trevallo db merge home.csv airport.csv -o all.csv\n"
                    "  trevallo db merge all.csv today.csv -o all.csv");
}

void addCheck(CLI::App& db, std::shared_ptr<Settings> const& settings) {
    auto* command =
        addAction(db, "check", "Say what is wrong in database files; exit status 1 if something is", check, settings);
    addFiles(*command, *settings, "Database files; - is standard input");
    command->footer("Examples:\n"
                    "  trevallo db check aircraft.csv");
}

void addMend(CLI::App& db, std::shared_ptr<Settings> const& settings) {
    auto* command = addAction(db, "mend", "Keep what is good in a damaged database file", mend, settings);
    command->add_option("FILE", settings->files, "Database file; - is standard input")->required()->expected(1);
    addOutput(*command, *settings);
    command->footer("Examples:\n"
                    "  trevallo db mend aircraft.csv -o mended.csv\n"
                    "  trevallo db mend aircraft.csv -o aircraft.csv");
}

} // namespace

void addDbCommand(CLI::App& app) {
    auto const settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("db", "Show, merge, check and mend files of the aircraft database");
    command->require_subcommand(1);
    addShow(*command, settings);
    addMerge(*command, settings);
    addCheck(*command, settings);
    addMend(*command, settings);
    command->footer("Examples:\n"
                    "  trevallo db show aircraft.csv\n"
                    "  trevallo db merge home.csv airport.csv -o all.csv\n"
                    "  trevallo db check aircraft.csv\n"
                    "  trevallo db mend aircraft.csv -o mended.csv");
}

} // namespace quorvel::program
