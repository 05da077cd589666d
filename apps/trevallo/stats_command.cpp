// SPDX-License-Identifier: MIT
#include "trevallo/stats_command.h"

#include "host/frame_reader.h"
#include "host/host_error.h"
#include "host/stderr_log.h"
#include "host/stop_signals.h"
#include "inspect/recording_stats.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"
#include "trevallo/number_option.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <map>
#include <memory>

namespace quorvel::host {

namespace {

struct Settings {
    std::vector<std::string> files;
    std::optional<Encoding> from;
    TimeOptions time;
    std::size_t aircraft = 10;
    bool json = false;
    LogSettings log;
};

bool isTimed(TimeReading reading) {
    return reading == TimeReading::Receiver || reading == TimeReading::Counter12MHz;
}

std::string reportOn(std::string const& name, Settings const& settings) {
    ReadOptions options;
    options.encoding = settings.from;
    options.time = settings.time;
    FrameReader reader(name, options);
    auto frames = reader.read();
    auto const reading = reader.clock().reading();
    RecordingStats stats(isTimed(reading));
    for (; !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) stats.take(frame);
    }
    stats.finish(reader.counters());
    RecordingTitle const title{reader.name(), reader.encoding(), reading, settings.time.start != 0};
    return settings.json ? statsJson(title, stats)
                         : statsText(title, stats, settings.aircraft, standardOutputStyle());
}

void showStats(Settings const& settings) {
    StderrLog const log(settings.log.level, settings.log.file);
    StopSignals const signals;
    bool isFirst = true;
    for (auto const& name : settings.files) {
        auto const report = reportOn(name, settings);
        if (!(std::cout << (isFirst || settings.json ? "" : "\n") << report).flush())
            throw HostError("cannot write to standard output");
        isFirst = false;
        if (!StopSignals::requested()) continue;
        std::cerr << "trevallo: stopped by " << StopSignals::name() << ": the report is on what was read\n";
        return;
    }
}

std::string checkedDate(std::string const& text) {
    return parseTime(text) ? "" : "a date is YYYY-MM-DD, for example 2024-05-01";
}

} // namespace

void addStatsCommand(CLI::App& app) {
    static std::map<std::string, TimeReading> const kReadings{{"auto", TimeReading::Auto},
                                                              {"receiver", TimeReading::Receiver},
                                                              {"12mhz", TimeReading::Counter12MHz}};
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("stats", "Show what recordings hold");
    command->add_option("FILE", settings->files, "Recordings, also compressed ones; - is standard input")
        ->required();
    addEncodingOption(*command, "--from", "Encoding of the recordings, found out when it is not given",
                      settings->from);
    command
        ->add_option("--time", settings->time.reading,
                     "What time stamps are: the time of day, or a counter of 12 MHz; auto finds out")
        ->transform(CLI::CheckedTransformer(kReadings).description(""))
        ->type_name("auto|receiver|12mhz");
    command
        ->add_option_function<std::string>(
            "--date", [settings](std::string const& text) { settings->time.start = *parseTime(text); },
            "Day on which the recordings begin, or day and time: YYYY-MM-DD[THH:MM:SSZ]")
        ->check(CLI::Validator(checkedDate, ""))
        ->type_name("DATE");
    command->add_option("--aircraft", settings->aircraft, "How many aircraft are listed")
        ->capture_default_str()
        ->check(checkedNumber(0, 1e6));
    command->add_flag("--json", settings->json,
                      "One JSON object a line for each recording, with all aircraft");
    addLogOptions(*command, settings->log);
    command->footer("Examples:\n"
                    "  trevallo stats recording.beast.zst\n"
                    "  trevallo stats --date 2024-05-01 monday.avr tuesday.avr\n"
                    "  trevallo stats --json recording.beast | jq .typeCodes");
    command->callback([settings] { showStats(*settings); });
}

} // namespace quorvel::host
