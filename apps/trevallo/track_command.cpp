// SPDX-License-Identifier: MIT
#include "trevallo/track_command.h"

#include "files/host_error.h"
#include "files/time_text.h"
#include "outputs/aircraft_json.h"
#include "outputs/frame_output.h"
#include "outputs/json_lines.h"
#include "outputs/live_table.h"
#include "outputs/paced.h"
#include "outputs/prometheus.h"
#include "outputs/report_pages.h"
#include "outputs/sbs.h"
#include "outputs/stats_json.h"
#include "outputs/summary.h"
#include "outputs/text_table.h"
#include "run/aircraft_json_port.h"
#include "run/keyboard.h"
#include "run/prometheus_port.h"
#include "run/recorder.h"
#include "run/track_run.h"
#include "terminal/console.h"
#include "terminal/stderr_log.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"
#include "trevallo/number_option.h"
#include "trevallo/place_option.h"
#include "trevallo/target_option.h"
#include <airspace/encoding.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iostream>
#include <map>
#include <memory>

namespace quorvel::program {

namespace {

using modes::ModeSMessage;

// For outputs that show the current state: a little less than a second, so that no second that is played is left out.
constexpr std::chrono::milliseconds kPace{900};
constexpr double kLiveTimeout = 300; // seconds

enum class Table : std::uint8_t { Auto, Live, Final, None };

struct Settings {
    std::vector<std::string> sources;
    std::optional<airspace::Encoding> format; // detected when not given
    std::string time = "auto";
    std::vector<std::string> dates;
    std::string speed = "max";
    bool isMerged = false;

    bool altitudeCheck = false;
    airspace::RepairedReplies repaired = airspace::RepairedReplies::Known;
    std::string location;
    double maxRange = airspace::PositionLimits().rangeNm;
    std::optional<double> timeoutSeconds;
    std::string database;
    std::string aircraftList;

    run::Values values = run::Values::Standard;
    Table table = Table::Auto;
    bool wantsStats = false;
    std::vector<std::string> json;
    std::vector<std::string> aircraftJson;
    std::vector<std::string> sbs;
    std::vector<std::string> beast;
    std::vector<std::string> avr;
    ModeSMessage::Confidence confidence = ModeSMessage::LOW;
    std::vector<std::string> pages;
    std::vector<std::string> prometheus;
    std::vector<std::string> statsJson;
    std::string recording;
    bool rotates = false;

    LogSettings log;
};

std::map<std::string, airspace::RepairedReplies> const kRepaired{{"keep", airspace::RepairedReplies::Keep},
    {"known", airspace::RepairedReplies::Known}, {"drop", airspace::RepairedReplies::Drop}};
std::map<std::string, run::Values> const kValues{
    {"standard", run::Values::Standard}, {"library", run::Values::Library}};
std::map<std::string, Table> const kTables{
    {"auto", Table::Auto}, {"live", Table::Live}, {"final", Table::Final}, {"none", Table::None}};
std::map<std::string, ModeSMessage::Confidence> const kConfidences{{"none", ModeSMessage::NONE},
    {"low", ModeSMessage::LOW}, {"medium", ModeSMessage::MEDIUM}, {"high", ModeSMessage::HIGH}};
std::map<std::string, airspace::TimeReading> const kReadings{{"auto", airspace::TimeReading::Auto},
    {"receiver", airspace::TimeReading::Receiver}, {"12mhz", airspace::TimeReading::Counter12MHz},
    {"arrival", airspace::TimeReading::Arrival}};
constexpr std::string_view kFixed = "fixed:";

bool isFixed(std::string const& time) { return time.starts_with(kFixed); }

std::string checkedTime(std::string const& text) {
    bool const isKnown = kReadings.contains(text) || (isFixed(text) && files::parseTime(text.substr(kFixed.size())));
    return isKnown ? "" : "a time is auto, receiver, 12mhz, arrival or, for example, fixed:2024-05-01T12:34:56Z";
}

std::string checkedDate(std::string const& text) {
    return files::parseTime(text) ? "" : "a date is like 2024-05-01 or 2024-05-01T12:34:56Z";
}

std::string checkedSpeed(std::string const& text) {
    double speed = 0;
    bool const isNumber = CLI::detail::lexical_cast(text, speed) && speed > 0 && speed <= 1e6;
    return isNumber || text == "max" ? "" : "a speed is a number, 1 for real time, or max";
}

airspace::TimeOptions timeOptions(Settings const& settings, std::size_t source) {
    airspace::TimeOptions time;
    if (isFixed(settings.time)) {
        time.reading = airspace::TimeReading::Fixed;
        time.start = *files::parseTime(settings.time.substr(kFixed.size()));
    } else {
        time.reading = kReadings.at(settings.time);
        if (!settings.dates.empty())
            time.start = *files::parseTime(settings.dates[settings.dates.size() == 1 ? 0 : source]);
    }
    return time;
}

run::TrackOptions trackOptions(Settings const& settings) {
    run::TrackOptions options;
    for (std::size_t i = 0; i < settings.sources.size(); ++i) {
        options.sources.push_back(net::parseSource(settings.sources[i]));
        auto& reading = options.reading.emplace_back();
        reading.encoding = settings.format;
        reading.time = timeOptions(settings, i);
    }
    options.sky.options.altitudeCheck = settings.altitudeCheck;
    options.sky.options.repaired = settings.repaired;
    options.sky.options.positions.receiver = parsePlace(settings.location);
    options.sky.options.positions.rangeNm = settings.maxRange;
    options.isMerged = settings.isMerged;
    options.speed = settings.speed == "max" ? 0 : std::stod(settings.speed);
    options.sky.values = settings.values;
    options.sky.hasPages = !settings.pages.empty();
    options.sky.hasDatabase = !settings.database.empty();
    options.database = settings.database;
    options.aircraftList = settings.aircraftList;
    return options;
}

// Whether an output goes to standard output; at most one can.
bool usesStandardOutput(Settings const& settings) {
    std::size_t users = 0;
    for (auto const* targets : {&settings.json, &settings.sbs, &settings.beast, &settings.avr, &settings.statsJson})
        users += static_cast<std::size_t>(std::count(targets->begin(), targets->end(), "-"));
    if (users > 1) throw files::UsageError("only one output can go to standard output");
    return users == 1;
}

// Outputs that show the current state need not be faster than anyone can look.
std::unique_ptr<outputs::Output> paced(std::unique_ptr<outputs::Output> output) {
    return std::make_unique<outputs::Paced>(std::move(output), kPace);
}

void addStreams(run::TrackRun& run, Settings const& settings) {
    auto& network = run.network();
    for (auto const& target : settings.json)
        run.add(std::make_unique<outputs::JsonLines>(net::makeSink(target, network)));
    for (auto const& target : settings.sbs) run.add(std::make_unique<outputs::Sbs>(net::makeSink(target, network)));
    for (auto const& target : settings.beast)
        run.add(std::make_unique<outputs::FrameOutput>(
            net::makeSink(target, network), airspace::Encoding::Beast, settings.confidence));
    for (auto const& target : settings.avr)
        run.add(std::make_unique<outputs::FrameOutput>(
            net::makeSink(target, network), airspace::Encoding::AvrStamped, settings.confidence));
    if (!settings.recording.empty()) run.add(std::make_unique<run::Recorder>(settings.recording, settings.rotates));
}

void addFiles(run::TrackRun& run, Settings const& settings) {
    for (auto const& target : settings.aircraftJson) {
        if (net::isPort(target)) {
            run.add(paced(std::make_unique<run::AircraftJsonPort>(target, run)));
        } else {
            run.add(paced(std::make_unique<outputs::AircraftJson>(target, parsePlace(settings.location))));
        }
    }
    for (auto const& folder : settings.pages) run.add(paced(std::make_unique<outputs::ReportPages>(folder)));
    for (auto const& target : settings.statsJson) {
        if (target == "-") {
            run.add(std::make_unique<outputs::StatsLines>(net::makeSink(target, run.network())));
        } else {
            run.add(paced(std::make_unique<outputs::StatsJson>(target)));
        }
    }
    for (auto const& target : settings.prometheus) {
        if (net::isPort(target)) {
            run.add(std::make_unique<run::PrometheusPort>(target, run, files::hostTime));
        } else {
            run.add(paced(std::make_unique<outputs::PrometheusFile>(target, files::hostTime)));
        }
    }
}

bool wantsLiveTable(Settings const& settings, run::TrackRun const& run, bool isOutputUsed) {
    if (settings.table == Table::Live && !terminal::Terminal::isAvailable())
        throw files::HostError("there is no terminal for a live table (use --table final)");
    if (settings.table != Table::Auto) return settings.table == Table::Live;
    return run.isLive() && !isOutputUsed && terminal::Terminal::isAvailable();
}

void track(Settings const& settings) {
    terminal::StderrLog const log(settings.log.level, settings.log.file);
    bool const isOutputUsed = usesStandardOutput(settings);
    if (settings.dates.size() > 1 && settings.dates.size() != settings.sources.size())
        throw files::UsageError("--date is given once for all sources, or once for each");

    std::optional<terminal::console::ScreenInUse> screen; // until the run and its table have left it
    run::TrackRun run(trackOptions(settings));
    run.setTimeout(settings.timeoutSeconds ? static_cast<airspace::TimeMs>(std::ceil(*settings.timeoutSeconds * 1000))
                   : run.hasLiveSource()   ? static_cast<airspace::TimeMs>(kLiveTimeout * 1000)
                                           : 0);
    addStreams(run, settings);
    addFiles(run, settings);
    std::optional<run::Keyboard> keyboard;
    bool const isLive = wantsLiveTable(settings, run, isOutputUsed);
    bool const isText = !isLive && !isOutputUsed && settings.table != Table::None;
    if (isLive) {
        auto table = std::make_unique<outputs::LiveTable>(std::make_unique<terminal::Terminal>());
        screen.emplace();
        keyboard.emplace(*table, run);
        run.add(paced(std::move(table)));
    }
    if (isText) {
        run.add(std::make_unique<outputs::TextTable>(net::makeSink("-", run.network())));
        run.add(std::make_unique<outputs::Summary>(net::makeSink("-", run.network()), settings.wantsStats));
    } else if (settings.wantsStats) {
        run.add(std::make_unique<outputs::StderrSummary>());
    }
    run.run();
    if (!run.signal().empty()) {
        terminal::console::say("trevallo: stopped by " + run.signal() + " after " +
                               std::to_string(run.picture().counters.frames) + " frames");
    }
}

// Adds an option with one of a few named values.
template <class Value>
CLI::Option* addChoice(CLI::App& command, std::string const& name, Value& value,
    std::map<std::string, Value> const& values, std::string const& names, std::string const& help) {
    return command.add_option(name, value, help)
        ->transform(CLI::CheckedTransformer(values).description(""))
        ->type_name(names);
}

// Adds an option that can be given several times, with one value each: what follows is a source.
CLI::Option* addEach(
    CLI::App& command, std::string const& name, std::vector<std::string>& values, std::string const& help) {
    return command.add_option(name, values, help)->allow_extra_args(false);
}

void addSourceOptions(CLI::App& command, Settings& settings) {
    command
        .add_option("SOURCE", settings.sources,
            "Recordings (also .gz and .zst), - for standard input, tcp://HOST:PORT, listen://PORT for feeders, "
            "serial:///dev/ttyUSB0?baud=3000000")
        ->required();
    auto formats = encodingNames();
    formats.insert(formats.begin(), "auto");
    addEncodingOption(command, "--format", "Encoding of the sources, detected from the first bytes when not given",
        settings.format, formats);
    command
        .add_option("--time", settings.time,
            "What time stamps count: seconds and nanoseconds of the UTC day (receiver) or ticks since the receiver "
            "was switched on (12mhz); or the time of arrival, or one time for all. Detected when not given")
        ->check(checkedTime)
        ->type_name("auto|receiver|12mhz|arrival|fixed:TIME");
    addEach(command, "--date", settings.dates,
        "Day of a recording, or day and time of its first frame; taken from the file's name when not given; "
        "once for each source if they differ")
        ->check(checkedDate)
        ->type_name("2024-05-01[T12:34:56Z]");
    command.add_option("--speed", settings.speed, "How fast recordings are played: 1 is real time")
        ->check(checkedSpeed)
        ->type_name("NUMBER|max");
    command.add_flag(
        "--merge", settings.isMerged, "All sources into one picture of the sky, instead of one for each source");
}

void addTrackingOptions(CLI::App& command, Settings& settings) {
    command.add_flag(
        "--altitude-check", settings.altitudeCheck, "Ignore altitudes that jump by more than 150 ft within 4 s");
    addChoice(command, "--repaired", settings.repaired, kRepaired, "keep|known|drop",
        "Repaired replies update known aircraft and create none (known), or are kept, or dropped");
    command
        .add_option("--location", settings.location, "Where the receiver is, for distances and the check of positions")
        ->check(checkedPlace)
        ->type_name("LAT,LON");
    command.add_option("--max-range", settings.maxRange, "How far the receiver can hear, in nautical miles")
        ->check(checkedNumber(1.0, 10'000.0))
        ->type_name("NM");
    command
        .add_option("--timeout", settings.timeoutSeconds,
            "Drop aircraft not heard for this long; 0 keeps all. 300 when not given, 0 for recordings")
        ->check(checkedNumber(0.0, 1e9))
        ->type_name("SECONDS");
    command
        .add_option("--db", settings.database,
            "The core library's database of aircraft (CSV), with what is known from earlier runs; saved every ten "
            "minutes and at the end")
        ->check(checkedFile)
        ->type_name("FILE");
}

void addListOption(CLI::App& command, Settings& settings) {
    command
        .add_option("--aircraft-info", settings.aircraftList,
            "List of aircraft (CSV, also .gz and .zst) with registrations, types and operators by address, shown with them")
        ->check(checkedFile)
        ->type_name("FILE");
}

void addOutputOptions(CLI::App& command, Settings& settings) {
    auto const* const target = "FILE|-|:PORT|tcp://HOST:PORT";
    addChoice(command, "--values", settings.values, kValues, "standard|library",
        "Whose readings are shown: those of the standards, or the core library's own");
    addChoice(command, "--table", settings.table, kTables, "auto|live|final|none",
        "The aircraft as a table that fills the terminal, or as text at the end");
    addEach(command, "--json", settings.json, "A line of JSON for each aircraft that changed")->type_name(target);
    addEach(command, "--aircraft-json", settings.aircraftJson,
        "The file aircraft.json of web maps, each second; by HTTP on a port")
        ->check(checkedFileOrPort)
        ->type_name("FILE|:PORT");
    addEach(command, "--sbs", settings.sbs, "BaseStation text lines")->type_name(target);
    addEach(command, "--beast", settings.beast, "The frames, as Beast with doubled escapes")->type_name(target);
    addEach(command, "--avr", settings.avr, "The frames, as AVR text with time stamps")->type_name(target);
    addChoice(command, "--confidence", settings.confidence, kConfidences, "none|low|medium|high",
        "The least confidence in the address of frames for --beast and --avr; none passes damaged ones too");
    addEach(command, "--html", settings.pages, "A report page for each aircraft and an index of them")
        ->check(checkedFolder)
        ->type_name("DIR");
    addEach(command, "--prometheus", settings.prometheus, "All counts, in Prometheus' text format; by HTTP on a port")
        ->check(checkedFileOrPort)
        ->type_name("FILE|:PORT");
    command
        .add_option("--record", settings.recording,
            "Record the frames as received, with their times, to be played back; compressed by the name")
        ->check(checkedFile)
        ->type_name("FILE.zst");
    command.add_flag("--rotate", settings.rotates, "A new recording each hour, its date and hour in the name");
    command.add_flag("--stats", settings.wantsStats,
        "All counts at the end, below the table; without a table of text, on standard error");
    addEach(command, "--stats-json", settings.statsJson,
        "All counts, of the run and of each source, as JSON, each second; a line each time on - (standard output)")
        ->check(checkedFileOrStandardOutput)
        ->type_name("FILE|-");
    addLogOptions(command, settings.log);
}

} // namespace

void addTrackCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("track", "Track the aircraft of receivers and recordings, and show them");
    addSourceOptions(*command, *settings);
    addTrackingOptions(*command, *settings);
    addListOption(*command, *settings);
    addOutputOptions(*command, *settings);
    command->footer("Examples:\n"
                    "  trevallo track recording.beast\n"
                    "  trevallo track tcp://localhost:30005 --location 48.35,11.79 --db aircraft.csv\n"
                    "  trevallo track serial:///dev/ttyUSB0 --aircraft-json /run/map/aircraft.json --sbs :30003\n"
                    "  trevallo track listen://30004 --merge --prometheus :9100 --record sky.beast.zst --rotate\n"
                    "  trevallo track --speed 10 --html pages monday.avr.gz\n"
                    "Ctrl-C ends the reading: all outputs and the database then hold what was read.");
    command->callback([settings] { track(*settings); });
}

} // namespace quorvel::program
