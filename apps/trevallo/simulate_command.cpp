// SPDX-License-Identifier: MIT
#include "trevallo/simulate_command.h"

#include "host/host_error.h"
#include "host/progress.h"
#include "host/stderr_log.h"
#include "simulate/stream_writer.h"
#include "simulate/traffic.h"
#include "trevallo/log_option.h"
#include "trevallo/number_option.h"
#include "trevallo/place_option.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <sstream>

namespace quorvel::host {

namespace {

using simulate::Encoding;

constexpr std::size_t kPieceBytes = 64 * 1024;

struct Settings {
    simulate::Settings traffic;
    std::vector<std::string> places;
    std::string start = "12:00:00";
    Encoding encoding = Encoding::AvrWithTime;
    std::string output = "-";
    std::string truth;
    LogSettings log;
};

std::map<std::string, Encoding> const kEncodings{{"avr", Encoding::Avr},
                                                 {"avr-time", Encoding::AvrWithTime},
                                                 {"beast", Encoding::Beast},
                                                 {"beast-doubled", Encoding::BeastDoubled}};

// A file for writing, or standard output for "-"; what cannot be written throws HostError.
class Output {
public:
    explicit Output(std::string const& name)
        : _name(name == "-" ? "standard output" : name)
        , _file(name == "-" ? stdout : std::fopen(name.c_str(), "wb")) {
        if (!_file) throw systemError("write", _name);
    }
    ~Output() {
        if (_file && _file != stdout) std::fclose(_file);
    }
    Output(Output const&) = delete;
    Output& operator=(Output const&) = delete;

    void write(std::string const& bytes) {
        if (std::fwrite(bytes.data(), 1, bytes.size(), _file) != bytes.size())
            throw systemError("write", _name);
    }

    void finish() {
        if (std::fflush(_file) != 0) throw systemError("write", _name);
    }

private:
    std::string _name;
    std::FILE* _file;
};

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

// The true state of every aircraft in each second, for checking what a decoder makes of the stream.
void writeTruth(std::string const& name, simulate::Traffic const& traffic, double seconds) {
    Output output(name);
    output.write(
        "second,icao_addr,callsign,squawk,version,on_ground,latitude,longitude,altitude_ft,ground_speed_kt,"
        "track_deg,vertical_rate_fpm\n");
    for (unsigned long long second = 0; static_cast<double>(second) <= seconds; ++second) {
        for (auto const& aircraft : traffic.aircraft()) {
            auto const state = aircraft.at(static_cast<double>(second));
            bool const silent = aircraft.equipment() == simulate::Equipment::None;
            char line[256] = "";
            std::snprintf(line, sizeof line, "%llu,%06X,%s,%04o,%s,%d,%.6f,%.6f,%.1f,%.2f,%.3f,%.1f\n",
                          second, aircraft.address(), aircraft.callsign().c_str(), aircraft.squawk(),
                          silent ? "" : std::to_string(static_cast<int>(aircraft.equipment())).c_str(),
                          aircraft.onGround() ? 1 : 0, state.place.latitude, state.place.longitude,
                          state.altitude, state.groundSpeed, state.track, state.verticalRate);
            output.write(line);
        }
    }
    output.finish();
}

// The nanoseconds of a file; none of standard output, where the stream itself may be seen.
std::optional<std::uint64_t> lengthOf(Settings const& settings) {
    if (settings.output == "-") return {};
    return static_cast<std::uint64_t>(settings.traffic.seconds * 1e9);
}

void simulateTraffic(Settings settings) {
    StderrLog const log(settings.log.level, settings.log.file);
    for (auto const& text : settings.places) {
        auto const place = parsePlace(text);
        if (place) settings.traffic.places.push_back({place->latitude, place->longitude});
    }
    std::uint64_t startOfDay = 0;
    parseTime(settings.start, startOfDay);

    simulate::Traffic traffic(settings.traffic);
    if (!settings.truth.empty()) writeTruth(settings.truth, traffic, settings.traffic.seconds);

    Output output(settings.output);
    Progress progress(settings.output, lengthOf(settings));
    std::uint64_t frames = 0;
    std::string stream;
    while (auto const frame = traffic.next()) {
        ++frames;
        simulate::appendFrame(stream, *frame, settings.encoding, startOfDay);
        if (stream.size() < kPieceBytes) continue;
        output.write(stream);
        stream.clear();
        progress.advance(frame->nanoseconds, frames);
    }
    output.write(stream);
    output.finish();
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
    command->add_option("--bit-errors", traffic.bitErrors, "Share of frames with one to three inverted bits")
        ->capture_default_str()
        ->check(checkedNumber(0.0, 1.0))
        ->type_name("SHARE");
    command
        ->add_option(
            "--place", settings->places,
            "What the aircraft fly around, several times if wanted; random places when it is not given")
        ->type_name("LAT,LON")
        ->check(checkedPlace)
        ->expected(1)
        ->take_all();
    command->add_option("--radius", traffic.radius, "How far around, in nautical miles")
        ->capture_default_str()
        ->check(checkedNumber(0.0, 10'000.0));
    command->add_option("--interrogators", traffic.interrogators, "How many radars the aircraft answer")
        ->capture_default_str()
        ->check(CLI::Range(0, 15).description(""));
    command->add_option("--start", settings->start, "Time of day (UTC) of the start")
        ->capture_default_str()
        ->type_name("HH:MM:SS")
        ->check(checkedTime);
    command
        ->add_option("--format", settings->encoding, "Encoding of the stream; avr-time when it is not given")
        ->transform(CLI::CheckedTransformer(kEncodings).description(""))
        ->type_name("avr|avr-time|beast|beast-doubled");
    command->add_option("--output", settings->output, "Where to; - is standard output")
        ->capture_default_str()
        ->type_name("FILE");
    command
        ->add_option("--truth", settings->truth, "Write where each aircraft really was in each second (CSV)")
        ->type_name("FILE");
    addLogOptions(*command, settings->log);
    command->footer("Examples:\n"
                    "  trevallo simulate --format avr | head\n"
                    "  trevallo simulate --aircraft 200 --place 48.35,11.79 --bit-errors 0.05 \\\n"
                    "      --format beast-doubled --output traffic.beast");
    command->callback([settings] { simulateTraffic(*settings); });
}

} // namespace quorvel::host
