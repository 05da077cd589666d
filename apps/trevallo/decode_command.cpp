// SPDX-License-Identifier: MIT
#include "trevallo/decode_command.h"

#include "files/host_error.h"
#include "files/stop_signals.h"
#include "inspect/bit_ruler.h"
#include "inspect/dissection_text.h"
#include "inspect/frame_seconds.h"
#include "inspect/frame_text.h"
#include "inspect/reading_lines.h"
#include "inspect/recording_reader.h"
#include "inspect/standard_reading_text.h"
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
    std::optional<unsigned> version;
    std::string values = "standard";
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

// Shows frames one after the other.
class Showing {
public:
    explicit Showing(Settings const& settings) : _settings(settings), _style(terminal::standardOutputStyle()) {}
    virtual ~Showing() = default;
    Showing(Showing const&) = delete;
    Showing& operator=(Showing const&) = delete;

    virtual void show(std::string const& frame, airspace::TimeMs time) = 0;
    static void finish() { requireWritten(std::cout.flush()); }

protected:
    void write(std::string const& text, inspect::Dissection const& bits) {
        std::cout << (_isFirst || _settings.json ? "" : "\n") << text;
        if (_settings.explain && !_settings.json)
            std::cout << "\n" << inspect::bitRuler(bits, _style.columns, _style.coloured);
        _isFirst = false;
        requireWritten(std::cout);
    }

    bool isJson() const { return _settings.json; }

private:
    Settings const& _settings;
    terminal::TerminalStyle _style;
    bool _isFirst = true;
};

class StandardShowing final : public Showing {
public:
    explicit StandardShowing(Settings const& settings)
        : Showing(settings), _reader(settings.version, parsePlace(settings.location)) {}

    void show(std::string const& frame, airspace::TimeMs time) override {
        auto const reading = _reader.read(frame, time);
        write(isJson() ? inspect::readingJson(reading) : inspect::readingText(reading), reading.dissection);
    }

private:
    inspect::StandardReader _reader;
};

class LibraryShowing final : public Showing {
public:
    explicit LibraryShowing(Settings const& settings)
        : Showing(settings), _dissector(inspect::versionsOf(settings.version)) {}

    void show(std::string const& frame, airspace::TimeMs time) override {
        auto const dissection = _dissector.dissect(frame, time);
        write(isJson() ? inspect::dissectionJson(dissection) : inspect::dissectionText(dissection), dissection);
    }

private:
    inspect::Dissector _dissector;
};

bool isLibrarys(Settings const& settings) { return settings.values == "library"; }

std::unique_ptr<Showing> showingOf(Settings const& settings) {
    if (isLibrarys(settings)) return std::make_unique<LibraryShowing>(settings);
    return std::make_unique<StandardShowing>(settings);
}

// All of it has been read.
void requireFrames(std::string const& recording, std::uint64_t badLines) {
    if (badLines > 0)
        throw files::HostError("lines of " + recording + " that are not frames: " + std::to_string(badLines));
}

void decodeFile(Settings const& settings, Showing& showing) {
    airspace::StreamOptions options;
    options.encoding = settings.from;
    run::FrameReader reader(settings.file, options);
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        bool const isTimed = reader.stream().timeReading() != airspace::TimeReading::Fixed;
        for (auto const& frame : frames) showing.show(std::string(frame.view()), isTimed ? frame.time : 0);
    }
    Showing::finish();
    requireFrames(reader.name(), reader.stream().counts().badLines + reader.stream().counts().overlongLines);
}

// What cannot be asked for together; empty if nothing is.
std::string contradictionIn(Settings const& settings) {
    bool const isOfSingleFrames = settings.json || settings.explain || settings.version || isLibrarys(settings);
    bool const isLocated = !settings.location.empty();
    if (settings.readings && isOfSingleFrames)
        return "--jsonl goes without --json, --explain, --version-of-mops and --values library";
    if (settings.tracked && !settings.readings) return "--tracked goes with --jsonl alone";
    if (!settings.tracked && settings.interval) return "--interval goes with --tracked alone";
    if (isLocated && settings.readings && !settings.tracked) return "--jsonl takes --location with --tracked alone";
    if (isLocated && isLibrarys(settings)) return "--location goes without --values library";
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

void writeReadings(inspect::RecordingReader& reader) {
    inspect::ReadingLines readings;
    std::string lines;
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        for (auto const& frame : frames) readings.append(frame, lines);
        write(lines);
    }
}

// Without time stamps, nothing tells how far frames are apart.
inspect::FrameSeconds clockOf(inspect::RecordingReader const& reader, std::optional<double> interval) {
    bool const isTimed = reader.isTimed();
    if (!isTimed && !interval) {
        throw files::UsageError("the frames of " + reader.name() +
                                " have no time stamps: --interval tells how many seconds they are apart");
    }
    return {isTimed ? std::nullopt : interval, reader.isCounter()};
}

void writeTracked(inspect::RecordingReader& reader, Settings const& settings) {
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
    inspect::RecordingReader reader(recordingOf(settings), settings.from);
    if (settings.tracked)
        writeTracked(reader, settings);
    else
        writeReadings(reader);
    requireWritten(std::cout.flush());
    requireFrames(reader.name(), reader.badLines());
}

void decode(Settings const& settings) {
    terminal::StderrLog const log(settings.log.level, settings.log.file);
    files::StopSignals const signals;
    if (settings.readings) return readRecording(settings);
    std::vector<std::string> frames;
    for (auto const& text : settings.frames) frames.push_back(inspect::parseFrame(text));
    auto const showing = showingOf(settings);
    for (auto const& frame : frames) showing->show(frame, 0);
    if (!settings.file.empty()) decodeFile(settings, *showing);
    Showing::finish();
}

void addTrackedOptions(CLI::App& command, Settings& settings) {
    command.add_flag("--tracked", settings.tracked,
        "With --jsonl: instead, what frames say together with others, before and after them: positions and registers");
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
            "Read ADS-B payloads as this version defines them; without it, as the aircraft's does if it is known")
        ->check(CLI::IsMember({0U, 1U, 2U}).description(""))
        ->type_name("0|1|2");
    command
        ->add_option("--values", settings->values,
            "Whose readings are shown: those of the standards, with the core library's where they differ, or its own")
        ->check(CLI::IsMember({"standard", "library"}).description(""))
        ->type_name("standard|library");
    command->add_flag("--explain", settings->explain, "Show the bits with the fields that they make");
    command->add_flag("--json", settings->json, "One JSON object a line for each frame");
    command->add_flag("--jsonl", settings->readings,
        "What the standards say about each frame of one recording, named in place of HEX or by --file: one JSON "
        "object a line, written at once. Lines SECONDS,HEX are read, too");
    addTrackedOptions(*command, *settings);
    command
        ->add_option("--location", settings->location,
            "A place near the aircraft on the surface, without which they have no position")
        ->check(checkedPlace)
        ->type_name("LAT,LON");
    addLogOptions(*command, settings->log);
    command->footer("Examples:\n"
                    "  trevallo decode 8D4840D6202CC371C32CE0576098\n"
                    "  trevallo decode --explain '*5D4CA2D46B609F;'\n"
                    "  trevallo decode 8D40621D58C382D690C8AC2863A7 8D40621D58C386435CC412692AD6\n"
                    "  trevallo decode --file recording.beast | less\n"
                    "  trevallo decode --json --version-of-mops 2 8D4840D6202CC371C32CE0576098 | jq .values\n"
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
