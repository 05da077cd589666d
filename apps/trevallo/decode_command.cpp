// SPDX-License-Identifier: MIT
#include "trevallo/decode_command.h"

#include "files/host_error.h"
#include "files/stop_signals.h"
#include "inspect/bit_ruler.h"
#include "inspect/dissection_text.h"
#include "inspect/frame_seconds.h"
#include "inspect/frame_text.h"
#include "inspect/reading_lines.h"
#include "inspect/tracked_lines.h"
#include "run/frame_reader.h"
#include "terminal/stderr_log.h"
#include "terminal/terminal_style.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"
#include "trevallo/number_option.h"
#include "trevallo/place_option.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace quorvel::program {

namespace {

struct Settings {
    std::vector<std::string> frames;
    std::string file;
    std::optional<airspace::Encoding> from;
    std::optional<unsigned> version; // all of them when not given
    bool json = false;
    bool readings = false;
    bool tracked = false;
    std::string location;
    std::optional<double> interval;
    bool explain = false;
    LogSettings log;
};

void requireWritten(std::ostream const& out) {
    if (!out) throw files::HostError("cannot write to standard output");
}

class DecodeRun {
public:
    explicit DecodeRun(Settings const& settings)
        : _settings(settings), _dissector(versionsOf(settings)), _style(terminal::standardOutputStyle()) {}

    void show(std::string const& frame, airspace::TimeMs time) {
        auto const dissection = _dissector.dissect(frame, time);
        if (_settings.json) {
            std::cout << inspect::dissectionJson(dissection);
        } else {
            std::cout << (_isFirst ? "" : "\n") << inspect::dissectionText(dissection);
            if (_settings.explain) std::cout << "\n" << inspect::bitRuler(dissection, _style.columns, _style.coloured);
        }
        _isFirst = false;
        requireWritten(std::cout);
    }

    static void finish() { requireWritten(std::cout.flush()); }

private:
    static inspect::Versions versionsOf(Settings const& settings) {
        if (settings.version) return {static_cast<modes::MOPSVersion>(*settings.version)};
        return {modes::MOPS_V0, modes::MOPS_V1, modes::MOPS_V2};
    }

    Settings const& _settings;
    inspect::Dissector _dissector;
    terminal::TerminalStyle _style;
    bool _isFirst = true;
};

airspace::StreamOptions readingOf(Settings const& settings) {
    airspace::StreamOptions options;
    options.encoding = settings.from;
    return options;
}

// All of it has been read.
void requireFrames(run::FrameReader const& reader) {
    auto const badLines = reader.stream().counts().badLines + reader.stream().counts().overlongLines;
    if (badLines > 0)
        throw files::HostError("lines of " + reader.name() + " that are not frames: " + std::to_string(badLines));
}

void decodeFile(Settings const& settings, DecodeRun& run) {
    run::FrameReader reader(settings.file, readingOf(settings));
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        bool const isTimed = reader.stream().timeReading() != airspace::TimeReading::Fixed;
        for (auto const& frame : frames) run.show(std::string(frame.view()), isTimed ? frame.time : 0);
    }
    run.finish();
    requireFrames(reader);
}

// What cannot be asked for together; empty if nothing is.
std::string contradictionIn(Settings const& settings) {
    bool const isOfLibrary = settings.json || settings.explain || settings.version;
    if (settings.readings && isOfLibrary) return "--jsonl goes without --json, --explain and --version-of-mops";
    if (settings.tracked && !settings.readings) return "--tracked goes with --jsonl alone";
    if (!settings.tracked && (settings.interval || !settings.location.empty()))
        return "--location and --interval go with --tracked alone";
    return "";
}

// The recording is named by --file or in place of a frame.
std::string recordingOf(Settings const& settings) {
    auto names = settings.frames;
    if (!settings.file.empty()) names.push_back(settings.file);
    if (names.size() != 1) throw files::UsageError("--jsonl reads one recording");
    return names.front();
}

void write(std::string& lines) {
    requireWritten(std::cout.write(lines.data(), static_cast<std::streamsize>(lines.size())));
    lines.clear();
}

void writeReadings(run::FrameReader& reader) {
    inspect::ReadingLines readings;
    std::string lines;
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) readings.append(frame, lines);
        write(lines);
    }
}

// Without time stamps, nothing tells how far frames are apart.
inspect::FrameSeconds clockOf(run::FrameReader const& reader, std::optional<double> interval) {
    auto const reading = reader.stream().timeReading();
    bool const isCounter = reading == airspace::TimeReading::Counter12MHz;
    bool const isTimed = isCounter || reading == airspace::TimeReading::Receiver;
    if (!isTimed && !interval) {
        throw files::UsageError("the frames of " + reader.name() +
                                " have no time stamps: --interval tells how many seconds they are apart");
    }
    return {isTimed ? std::nullopt : interval, isCounter};
}

void writeTracked(run::FrameReader& reader, Settings const& settings) {
    inspect::TrackedLines tracked(parsePlace(settings.location));
    auto frames = reader.read();
    if (frames.empty()) return;
    auto clock = clockOf(reader, settings.interval);
    for (; !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) {
            if (!frame.isModeAc()) tracked.take(frame, clock.next(frame));
        }
    }
    auto lines = tracked.lines();
    write(lines);
}

void readRecording(Settings const& settings) {
    run::FrameReader reader(recordingOf(settings), readingOf(settings));
    if (settings.tracked)
        writeTracked(reader, settings);
    else
        writeReadings(reader);
    requireWritten(std::cout.flush());
    requireFrames(reader);
}

void decode(Settings const& settings) {
    terminal::StderrLog const log(settings.log.level, settings.log.file);
    files::StopSignals const signals;
    if (settings.readings) return readRecording(settings);
    std::vector<std::string> frames;
    for (auto const& text : settings.frames) frames.push_back(inspect::parseFrame(text));
    DecodeRun run(settings);
    for (auto const& frame : frames) run.show(frame, 0);
    if (!settings.file.empty()) decodeFile(settings, run);
    run.finish();
}

void addTrackedOptions(CLI::App& command, Settings& settings) {
    command.add_flag("--tracked", settings.tracked,
        "With --jsonl: instead, what frames say together with others, before and after them: positions and registers");
    command
        .add_option(
            "--location", settings.location, "A place near the aircraft on the surface, which --tracked needs for them")
        ->check(checkedPlace)
        ->type_name("LAT,LON");
    command
        .add_option("--interval", settings.interval,
            "Seconds from each frame to the next, for --tracked, if a recording has no time stamps")
        ->check(checkedNumber(1e-6, 3600))
        ->type_name("SECONDS");
}

} // namespace

void addDecodeCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("decode", "Show everything about frames");
    command->add_option("HEX", settings->frames,
        "Frames as hexadecimal digits or AVR lines; each is judged by those before it, and two that make a pair "
        "give a position");
    command
        ->add_option(
            "--file", settings->file, "A recording whose frames are shown, one after the other; - is standard input")
        ->type_name("FILE");
    addEncodingOption(*command, "--from", "Encoding of the recording, detected when not given", settings->from);
    command
        ->add_option("--version-of-mops", settings->version,
            "Decode ADS-B payloads as this version defines them; without it, as each version does, separately where "
            "they differ")
        ->check(CLI::IsMember({0U, 1U, 2U}).description(""))
        ->type_name("0|1|2");
    command->add_flag("--explain", settings->explain, "Show the bits with the fields that they make");
    command->add_flag("--json", settings->json, "One JSON object a line for each frame");
    command->add_flag("--jsonl", settings->readings,
        "What the standards say about each frame of one recording, named in place of HEX or by --file: one JSON "
        "object a line, written at once");
    addTrackedOptions(*command, *settings);
    addLogOptions(*command, settings->log);
    command->footer("Examples:\n"
                    "  trevallo decode 8D4840D6202CC371C32CE0576098\n"
                    "  trevallo decode --explain '*5D4CA2D46B609F;'\n"
                    "  trevallo decode 8D40621D58C382D690C8AC2863A7 8D40621D58C386435CC412692AD6\n"
                    "  trevallo decode --file recording.beast | less\n"
                    "  trevallo decode --json --version-of-mops 2 8D4840D6202CC371C32CE0576098 | jq .payload\n"
                    "  trevallo decode --jsonl recording.beast | jq 'select(.df == 17)'\n"
                    "  trevallo decode --jsonl --tracked --location 48.35,11.79 recording.beast");
    command->callback([settings] {
        if (settings->frames.empty() && settings->file.empty())
            throw CLI::RequiredError("a frame (HEX) or a recording (--file)");
        if (auto const contradiction = contradictionIn(*settings); !contradiction.empty())
            throw files::UsageError(contradiction);
        decode(*settings);
    });
}

} // namespace quorvel::program
