// SPDX-License-Identifier: MIT
#include "trevallo/track_command.h"

#include "host/frame_reader.h"
#include "host/host_error.h"
#include "host/receiver.h"
#include "host/stderr_log.h"
#include "host/stop_signals.h"
#include "host/target_pages.h"
#include "host/target_table.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <iostream>
#include <map>
#include <memory>

namespace quorvel::host {

namespace {

using modes::Log;

struct Settings {
    std::vector<std::string> files;
    std::string format = "auto";
    bool altitudeCheck = false;
    double timeoutSeconds = 0.0;
    std::string htmlFolder;
    std::string database;
    std::string logLevel = "warning";
};

std::map<std::string, Log::Level> const kLevels{
    {"debug", Log::Debug}, {"info", Log::Info}, {"warning", Log::Warning}, {"error", Log::Error}};

// The range of seconds leaves out what is no number.
std::string checkedTimeout(std::string const& text) {
    double seconds = 0;
    bool const isNumber = CLI::detail::lexical_cast(text, seconds) && seconds >= 0 && seconds <= 1e9;
    return isNumber ? "" : "a timeout is a number of seconds, for example 60";
}

std::string summary(Counters const& counters, std::size_t targets) {
    auto const decoded = counters.frames - counters.undecoded;
    auto text = std::to_string(counters.frames) + " frames, " + std::to_string(decoded) + " decoded, " +
                std::to_string(counters.tracked) + " tracked, " + std::to_string(targets) + " aircraft";
    if (counters.modeAcFrames > 0) text += ", " + std::to_string(counters.modeAcFrames) + " Mode A/C replies";
    return text + "\n";
}

void track(Settings const& settings) {
    StderrLog const log(kLevels.at(settings.logLevel));
    ReceiverOptions options;
    options.altitudeCheck = settings.altitudeCheck;
    options.timeout = static_cast<TimeMs>(std::ceil(settings.timeoutSeconds * 1000));
    std::optional<AircraftFile> database;
    if (!settings.database.empty()) database.emplace(settings.database);

    StopSignals const signals;
    Receiver receiver(options, database ? &*database : nullptr);
    TimeMs now = 0;
    for (auto const& file : settings.files) {
        ReadOptions reading;
        reading.encoding = encodingOf(settings.format);
        FrameReader reader(file, reading);
        for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
            for (auto const& frame : frames) receiver.take(frame);
            now = reader.clock().now();
            receiver.dropSilentTargets(now);
        }
    }
    if (StopSignals::requested()) {
        std::cerr << "trevallo: stopped by " << StopSignals::name() << " after " << receiver.counters().frames
                  << " frames\n";
    }

    auto const targets = receiver.tracker().allTargets();
    std::cout << tableText(makeTable(targets, now)) << "\n"
              << summary(receiver.counters(), targets.size()) << std::flush;
    bool const written = std::cout.good();
    if (!settings.htmlFolder.empty()) writePages(settings.htmlFolder, targets, now);
    receiver.dropAllTargets();
    if (database) database->save();
    if (!written) throw HostError("cannot write the table to standard output");
}

} // namespace

void addTrackCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("track", "Track the aircraft of recordings and print them as a table");
    command->add_option("FILE", settings->files, "Recordings, read one after the other; - is standard input")
        ->required();
    command
        ->add_option("--format", settings->format,
                     "Encoding of the recordings, found out from the first bytes when not named")
        ->check(CLI::IsMember({"auto", "avr", "beast", "beast-plain", "bin", "hex"}).description(""))
        ->type_name("auto|avr|beast|beast-plain|bin|hex");
    command->add_flag("--altitude-check", settings->altitudeCheck,
                      "Ignore altitudes that jump by more than 150 ft within 4 s");
    command
        ->add_option("--timeout", settings->timeoutSeconds,
                     "Drop aircraft not heard for so long, by the time stamps of the stream; 0, the default, "
                     "keeps all")
        ->check(checkedTimeout)
        ->type_name("SECONDS");
    command->add_option("--html", settings->htmlFolder, "Write a report page for each aircraft and an index")
        ->type_name("DIR");
    command
        ->add_option("--db", settings->database,
                     "Aircraft database (CSV): what is known of aircraft from earlier runs; saved at the end")
        ->type_name("FILE");
    command->add_option("--log", settings->logLevel, "Lowest level of the log lines shown on standard error")
        ->check(CLI::IsMember(kLevels).description(""))
        ->type_name("debug|info|warning|error");
    command->footer("Examples:\n"
                    "  trevallo track recording.beast\n"
                    "  trevallo track --html pages --db aircraft.csv monday.avr tuesday.avr\n"
                    "  nc receiver.local 30005 | trevallo track --timeout 60 -\n"
                    "Ctrl-C ends the reading: table, pages and database then show what was read.");
    command->callback([settings] { track(*settings); });
}

} // namespace quorvel::host
