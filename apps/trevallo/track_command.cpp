// SPDX-License-Identifier: MIT
#include "trevallo/track_command.h"

#include "host/byte_source.h"
#include "host/frameless_span.h"
#include "host/framer.h"
#include "host/host_error.h"
#include "host/progress.h"
#include "host/stderr_log.h"
#include "host/stop_signals.h"
#include "host/target_pages.h"
#include "host/target_table.h"
#include "host/track_session.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <iostream>
#include <map>
#include <memory>

namespace quorvel::host {

namespace {

using modes::Log;
using modes::ModeSEncapsulation;

struct Settings {
    std::vector<std::string> files;
    std::string format = "auto";
    std::string escapes = "auto";
    bool altitudeCheck = false;
    double timeoutSeconds = 0.0;
    std::string htmlFolder;
    std::string database;
    std::string logLevel = "warning";
};

std::map<std::string, ModeSEncapsulation::Format> const kFormats{{"auto", ModeSEncapsulation::Unknown},
                                                                 {"avr", ModeSEncapsulation::Avr},
                                                                 {"beast", ModeSEncapsulation::Beast},
                                                                 {"bin", ModeSEncapsulation::RawBin},
                                                                 {"raw", ModeSEncapsulation::RawBin}};
std::map<std::string, BeastEscapes> const kEscapes{
    {"auto", BeastEscapes::Find}, {"yes", BeastEscapes::Doubled}, {"no", BeastEscapes::Plain}};
std::map<std::string, Log::Level> const kLevels{
    {"debug", Log::Debug}, {"info", Log::Info}, {"warning", Log::Warning}, {"error", Log::Error}};

// What framing has to say about a stream does not name it.
template <class Step> ModeSEncapsulation::Records named(ByteSource const& source, Step const& step) {
    try {
        return step();
    } catch (HostError const& error) {
        throw HostError("cannot tell the format of " + source.name() + ": " + error.what());
    }
}

// The range of seconds leaves out what is no number.
std::string checkedTimeout(std::string const& text) {
    double seconds = 0;
    bool const isNumber = CLI::detail::lexical_cast(text, seconds) && seconds >= 0 && seconds <= 1e9;
    return isNumber ? "" : "a timeout is a number of seconds, for example 60";
}

void warnOfSilence(ByteSource const& source, FramelessSpan const& frameless) {
    std::cerr << "trevallo: no frames in the last " << frameless.bytes() << " bytes of " << source.name()
              << ": it may have changed its encoding\n";
}

void readFile(std::string const& name, Settings const& settings, TrackSession& session) {
    ByteSource source(name);
    Progress progress(source.name(), source.size());
    auto const format = kFormats.at(settings.format);
    Framer framer(format == ModeSEncapsulation::Unknown ? std::nullopt : std::optional(format),
                  kEscapes.at(settings.escapes));
    FramelessSpan frameless;
    for (std::string bytes; source.read(bytes);) {
        auto const records = named(source, [&] { return framer.feed(bytes); });
        session.take(records);
        progress.advance(bytes.size(), session.frames());
        if (frameless.take(bytes.size(), !records.empty())) warnOfSilence(source, frameless);
    }
    auto const last = named(source, [&] { return framer.finish(); });
    session.take(last);
    frameless.take(0, !last.empty());
    if (frameless.finish()) warnOfSilence(source, frameless);
}

std::string summary(TrackSession const& session, std::size_t targets) {
    auto text = std::to_string(session.frames()) + " frames, " + std::to_string(session.messages()) +
                " decoded, " + std::to_string(session.tracked()) + " tracked, " + std::to_string(targets) +
                " aircraft";
    if (session.modeACFrames() > 0)
        text += ", " + std::to_string(session.modeACFrames()) + " Mode A/C replies";
    return text + "\n";
}

void track(Settings const& settings) {
    StderrLog const log(kLevels.at(settings.logLevel));
    TrackOptions options;
    options.altitudeCheck = settings.altitudeCheck;
    if (settings.timeoutSeconds > 0) {
        options.timeoutMilliseconds =
            static_cast<unsigned long long>(std::ceil(settings.timeoutSeconds * 1000));
    }
    options.database = settings.database;

    StopSignals const signals;
    TrackSession session(options);
    for (auto const& file : settings.files) {
        if (!StopSignals::requested()) readFile(file, settings, session);
    }
    if (StopSignals::requested()) {
        std::cerr << "trevallo: stopped by " << StopSignals::name() << " after " << session.frames()
                  << " frames\n";
    }

    auto const targets = session.tracker().allTargets();
    std::cout << tableText(makeTable(targets, session.now())) << "\n"
              << summary(session, targets.size()) << std::flush;
    bool const written = std::cout.good();
    if (!settings.htmlFolder.empty()) writePages(settings.htmlFolder, targets, session.now());
    session.finish();
    if (!written) throw HostError("cannot write the table to standard output");
}

} // namespace

void addTrackCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("track", "Track the aircraft of recordings and print them as a table");
    command->add_option("FILE", settings->files, "Recordings, read one after the other; - is standard input")
        ->required();
    command
        ->add_option(
            "--format", settings->format,
            "Encoding of the recordings: auto (found out from the first bytes), avr, beast, or bin for raw "
            "binary frames, which have no marks to be found by")
        ->check(CLI::IsMember(kFormats).description(""))
        ->type_name("auto|avr|beast|bin");
    command
        ->add_option("--beast-escapes", settings->escapes,
                     "Whether 0x1A inside Beast frames is doubled, as receivers send it: auto finds out")
        ->check(CLI::IsMember(kEscapes).description(""))
        ->type_name("auto|yes|no");
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
