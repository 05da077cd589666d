// SPDX-License-Identifier: MIT
#include "trevallo/stats_command.h"

#include "files/host_error.h"
#include "files/stop_signals.h"
#include "files/time_text.h"
#include "inspect/recording_stats.h"
#include "run/frame_reader.h"
#include "terminal/stderr_log.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"
#include "trevallo/number_option.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <map>
#include <memory>

namespace quorvel::program {

namespace {

struct Settings {
    std::vector<std::string> files;
    std::optional<airspace::Encoding> from;
    airspace::TimeOptions time;
    std::size_t aircraft = 10;
    bool json = false;
    LogSettings log;
};

bool isTimed(airspace::TimeReading reading) {
    return reading == airspace::TimeReading::Receiver || reading == airspace::TimeReading::Counter12MHz;
}

std::string reportOn(std::string const& name, Settings const& settings) {
    airspace::StreamOptions options;
    options.encoding = settings.from;
    options.time = settings.time;
    run::FrameReader reader(name, options);
    auto frames = reader.read();
    auto const reading = reader.stream().timeReading();
    inspect::RecordingStats stats(isTimed(reading));
    for (; !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) stats.take(frame);
    }
    stats.finish(reader.stream().counts());
    inspect::RecordingTitle const title{reader.name(), reader.encoding(), reading, settings.time.start != 0};
    return settings.json ? inspect::statsJson(title, stats)
                         : inspect::statsText(title, stats, settings.aircraft, terminal::standardOutputStyle());
}

void showStats(Settings const& settings) {
    terminal::StderrLog const log(settings.log.level, settings.log.file);
    files::StopSignals const signals;
    bool isFirst = true;
    for (auto const& name : settings.files) {
        auto const report = reportOn(name, settings);
        if (!(std::cout << (isFirst || settings.json ? "" : "\n") << report).flush())
            throw files::HostError("cannot write to standard output");
        isFirst = false;
        if (!files::StopSignals::requested()) continue;
        std::cerr << "trevallo: stopped by " << files::StopSignals::name() << ": the report is on what was read\n";
        return;
    }
}

std::string checkedDate(std::string const& text) {
    return files::parseTime(text) ? "" : "a date is YYYY-MM-DD, for example 2024-05-01";
}

} // namespace

void addStatsCommand(CLI::App& app) {
    static std::map<std::string, airspace::TimeReading> const kReadings{{"auto", airspace::TimeReading::Auto},
        {"receiver", airspace::TimeReading::Receiver}, {"12mhz", airspace::TimeReading::Counter12MHz}};
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("stats", "Show what recordings hold");
    command->add_option("FILE", settings->files, "Recordings, also compressed ones; - is standard input")->required();
    addEncodingOption(*command, "--from", "Encoding of the recordings, detected when not given", settings->from);
    command
        ->add_option("--time", settings->time.reading,
            "What time stamps are: the time of day, or a counter of 12 MHz; auto detects which")
        ->transform(CLI::CheckedTransformer(kReadings).description(""))
        ->type_name("auto|receiver|12mhz");
    command
        ->add_option_function<std::string>(
            "--date", [settings](std::string const& text) { settings->time.start = *files::parseTime(text); },
            "Day on which the recordings start, or day and time: YYYY-MM-DD[THH:MM:SSZ]")
        ->check(CLI::Validator(checkedDate, ""))
        ->type_name("DATE");
    command->add_option("--aircraft", settings->aircraft, "How many aircraft are listed")
        ->capture_default_str()
        ->check(checkedNumber(0, 1e6));
    command->add_flag("--json", settings->json, "One JSON object a line for each recording, with all aircraft");
    addLogOptions(*command, settings->log);
    command->footer("Examples:\n"
                    "  trevallo stats recording.beast.zst\n"
                    "  trevallo stats --date 2024-05-01 monday.avr tuesday.avr\n"
                    "  trevallo stats --json recording.beast | jq .typeCodes");
    command->callback([settings] { showStats(*settings); });
}

} // namespace quorvel::program
