// SPDX-License-Identifier: MIT
#include "trevallo/simulate_command.h"

#include <airspace/encoding.h>

#include "files/byte_sink.h"
#include "files/host_error.h"
#include "files/stop_signals.h"
#include "simulate/stream_writer.h"
#include "simulate/traffic.h"
#include "terminal/progress.h"
#include "terminal/stderr_log.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"
#include "trevallo/number_option.h"
#include "trevallo/place_option.h"
#include "trevallo/target_option.h"
#include "trevallo/truth_lines.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <vector>

namespace quorvel::program {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;

struct Settings {
    simulate::Settings traffic;
    std::vector<std::string> places;
    std::string start = "12:00:00";
    std::optional<airspace::Encoding> encoding; // with time stamps when not given
    std::string output = "-";
    std::string truth;
    LogSettings log;
};

struct WrittenEncoding {
    airspace::Encoding named;
    simulate::Encoding written;
};

constexpr WrittenEncoding kWritten[] = {
    {airspace::Encoding::Avr, simulate::Encoding::Avr},
    {airspace::Encoding::AvrStamped, simulate::Encoding::AvrStamped},
    {airspace::Encoding::Beast, simulate::Encoding::Beast},
    {airspace::Encoding::BeastPlain, simulate::Encoding::BeastPlain},
};

std::map<std::string, simulate::Mix> const kMixes{{"all", simulate::Mix::All}, {"adsb", simulate::Mix::Adsb}};

// The names that all other commands use.
std::vector<std::string> writtenNames() {
    std::vector<std::string> names;
    for (auto const& encoding : kWritten) names.emplace_back(airspace::identifierOf(encoding.named));
    return names;
}

simulate::Encoding written(std::optional<airspace::Encoding> named) {
    return std::ranges::find(kWritten, named.value_or(airspace::Encoding::AvrStamped), &WrittenEncoding::named)
        ->written;
}

// "HH:MM:SS", or an explanation.
std::string parseTime(std::string const& text, std::uint64_t& nanoseconds) {
    std::istringstream in(text);
    std::uint64_t hour = 0;
    std::uint64_t minute = 0;
    std::uint64_t second = 0;
    char colons[2] = {};
    bool const isTime = in >> hour >> colons[0] >> minute >> colons[1] >> second && colons[0] == ':' &&
                        colons[1] == ':' && in.peek() == EOF && hour < 24 && minute < 60 && second < 60;
    nanoseconds = ((hour * 60 + minute) * 60 + second) * 1'000'000'000;
    return isTime ? "" : "a time is HH:MM:SS, for example 12:00:00";
}

std::string checkedTime(std::string const& text) {
    std::uint64_t nanoseconds = 0;
    return parseTime(text, nanoseconds);
}

std::uint64_t nanosecondsOf(Settings const& settings) {
    return static_cast<std::uint64_t>(settings.traffic.seconds * 1e9);
}

// The nanoseconds of a file; none for standard output, which may show the stream itself.
std::optional<std::uint64_t> lengthOf(Settings const& settings) {
    if (settings.output == "-") return {};
    return nanosecondsOf(settings);
}

void writeStream(Settings const& settings, simulate::Traffic& traffic) {
    std::uint64_t startOfDay = 0;
    parseTime(settings.start, startOfDay);
    auto const encoding = written(settings.encoding);
    std::optional<TruthLines> truth;
    if (!settings.truth.empty()) truth.emplace(settings.truth, traffic, startOfDay);
    files::ByteSink output(settings.output);
    terminal::Progress progress(settings.output, lengthOf(settings));
    std::uint64_t frames = 0;
    std::string stream;
    for (auto frame = traffic.next(); frame && !files::StopSignals::requested(); frame = traffic.next()) {
        ++frames;
        if (truth) truth->take(*frame);
        simulate::appendFrame(stream, *frame, encoding, startOfDay);
        if (stream.size() < kPieceBytes) continue;
        output.write(stream);
        stream.clear();
        progress.advance(frame->nanoseconds, frames);
    }
    output.write(stream);
    output.finish();
    if (truth) truth->finish(nanosecondsOf(settings));
}

void simulateTraffic(Settings settings) {
    terminal::StderrLog const log(settings.log.level, settings.log.file);
    if (settings.output == "-" && settings.truth == "-")
        throw files::UsageError("only one output can go to standard output");
    for (auto const& text : settings.places) {
        auto const place = parsePlace(text);
        if (place) settings.traffic.places.push_back({place->latitude, place->longitude});
    }
    // A signal ends files with what they have. It ends the program where a reader of standard output holds it up.
    std::optional<files::StopSignals> signals;
    if (settings.output != "-") signals.emplace();
    simulate::Traffic traffic(settings.traffic);
    writeStream(settings, traffic);
    if (files::StopSignals::requested()) std::cerr << "trevallo: stopped by " << files::StopSignals::name() << "\n";
}

} // namespace

void addSimulateCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto& traffic = settings->traffic;
    auto* command = app.add_subcommand("simulate", "Make the stream of a receiver among simulated aircraft");
    command->add_option("--aircraft", traffic.aircraft, "How many aircraft")
        ->capture_default_str()
        ->check(CLI::Range(1, 1'000'000).description(""));
    command->add_option("--seconds", traffic.seconds, "How long")
        ->capture_default_str()
        ->check(checkedNumber(0.0, 1e7));
    command->add_option("--seed", traffic.seed, "Another seed, other traffic; the same seed, the same bytes")
        ->capture_default_str();
    command->add_option("--mix", traffic.mix, "Aircraft of all kinds, or the ADS-B aircraft of earlier releases alone")
        ->transform(CLI::CheckedTransformer(kMixes).description(""))
        ->type_name("all|adsb")
        ->default_str("all");
    command->add_option("--bit-errors", traffic.bitErrors, "Share of frames with one to three inverted bits")
        ->capture_default_str()
        ->check(checkedNumber(0.0, 1.0))
        ->type_name("SHARE");
    command
        ->add_option("--place", settings->places,
            "What the aircraft fly around, several times if wanted; random places when it is not given")
        ->type_name("LAT,LON")
        ->check(checkedPlace)
        ->expected(1)
        ->take_all();
    command->add_option("--radius", traffic.radius, "How far from it, in nautical miles")
        ->capture_default_str()
        ->check(checkedNumber(0.0, 10'000.0));
    command->add_option("--interrogators", traffic.interrogators, "How many radars the aircraft answer")
        ->capture_default_str()
        ->check(CLI::Range(0, 15).description(""));
    command->add_option("--start", settings->start, "Time of day (UTC) of the start")
        ->capture_default_str()
        ->type_name("HH:MM:SS")
        ->check(checkedTime);
    addEncodingOption(*command, "--format", "Encoding of the stream; avr-time when it is not given", settings->encoding,
        writtenNames());
    command
        ->add_option("--output", settings->output,
            "Where to; a file is compressed when its name ends in .gz or .zst; - is standard output")
        ->capture_default_str()
        ->check(checkedFileOrStandardOutput)
        ->type_name("FILE");
    command
        ->add_option("--truth", settings->truth,
            "Write what is true of each aircraft in each second, and the register of each Comm-B reply (JSON lines)")
        ->check(checkedFileOrStandardOutput)
        ->type_name("FILE");
    addLogOptions(*command, settings->log);
    command->footer("Examples:\n"
                    "  trevallo simulate --format avr | head\n"
                    "  trevallo simulate --aircraft 200 --place 48.35,11.79 --bit-errors 0.05 \\\n"
                    "      --format beast --output traffic.beast");
    command->callback([settings] { simulateTraffic(*settings); });
}

} // namespace quorvel::program
