// SPDX-License-Identifier: MIT
#include "trevallo/decode_command.h"

#include "host/frame_reader.h"
#include "host/host_error.h"
#include "host/stderr_log.h"
#include "host/stop_signals.h"
#include "inspect/bit_ruler.h"
#include "inspect/dissection_text.h"
#include "inspect/frame_text.h"
#include "inspect/terminal.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace quorvel::host {

namespace {

struct Settings {
    std::vector<std::string> frames;
    std::string file;
    std::optional<Encoding> from;
    std::optional<unsigned> version; // all of them when not given
    bool json = false;
    bool explain = false;
    LogSettings log;
};

class DecodeRun {
public:
    explicit DecodeRun(Settings const& settings)
        : _settings(settings), _dissector(versionsOf(settings)), _style(standardOutputStyle()) {}

    void show(std::string const& frame, TimeMs time) {
        auto const dissection = _dissector.dissect(frame, time);
        if (_settings.json) {
            std::cout << dissectionJson(dissection);
        } else {
            std::cout << (_isFirst ? "" : "\n") << dissectionText(dissection);
            if (_settings.explain) std::cout << "\n" << bitRuler(dissection, _style.columns, _style.coloured);
        }
        _isFirst = false;
        if (!std::cout) throw HostError("cannot write to standard output");
    }

    void finish() {
        if (!std::cout.flush()) throw HostError("cannot write to standard output");
    }

private:
    static Versions versionsOf(Settings const& settings) {
        if (settings.version) return {static_cast<modes::MOPSVersion>(*settings.version)};
        return {modes::MOPS_V0, modes::MOPS_V1, modes::MOPS_V2};
    }

    Settings const& _settings;
    Dissector _dissector;
    TerminalStyle _style;
    bool _isFirst = true;
};

void decodeFile(Settings const& settings, DecodeRun& run) {
    ReadOptions options;
    options.encoding = settings.from;
    FrameReader reader(settings.file, options);
    for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
        bool const isTimed = reader.clock().reading() != TimeReading::Fixed;
        for (auto const& frame : frames)
            run.show(frame.record->data(), isTimed ? frame.record->timeStamp() : 0);
    }
    run.finish();
    auto const badLines = reader.counters().badLines + reader.counters().overlongLines;
    if (badLines > 0)
        throw HostError("lines of " + reader.name() + " that are no frames: " + std::to_string(badLines));
}

void decode(Settings const& settings) {
    StderrLog const log(settings.log.level, settings.log.file);
    StopSignals const signals;
    std::vector<std::string> frames;
    for (auto const& text : settings.frames) frames.push_back(parseFrame(text));
    DecodeRun run(settings);
    for (auto const& frame : frames) run.show(frame, 0);
    if (!settings.file.empty()) decodeFile(settings, run);
    run.finish();
}

} // namespace

void addDecodeCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("decode", "Show everything about frames");
    command->add_option(
        "HEX", settings->frames,
        "Frames as hexadecimal digits or AVR lines; later ones are judged by what came before, and "
        "two that make a pair give a position");
    command
        ->add_option("--file", settings->file,
                     "A recording whose frames are shown, one after the other; - is standard input")
        ->type_name("FILE");
    addEncodingOption(*command, "--from", "Encoding of the recording, found out when it is not given",
                      settings->from);
    command
        ->add_option(
            "--version-of-mops", settings->version,
            "Read ADS-B payloads as transmitters of this version mean them; without it as all of them, "
            "which are told apart where they differ")
        ->check(CLI::IsMember({0U, 1U, 2U}).description(""))
        ->type_name("0|1|2");
    command->add_flag("--explain", settings->explain, "Show the bits with the fields that they make");
    command->add_flag("--json", settings->json, "One JSON object a line for each frame");
    addLogOptions(*command, settings->log);
    command->footer(
        "Examples:\n"
        "  trevallo decode 8D4840D6202CC371C32CE0576098\n"
        "  trevallo decode --explain '*5D4CA2D46B609F;'\n"
        "  trevallo decode 8D40621D58C382D690C8AC2863A7 8D40621D58C386435CC412692AD6\n"
        "  trevallo decode --file recording.beast | less\n"
        "  trevallo decode --json --version-of-mops 2 8D4840D6202CC371C32CE0576098 | jq .payload");
    command->callback([settings] {
        if (settings->frames.empty() && settings->file.empty())
            throw CLI::RequiredError("a frame (HEX) or a recording (--file)");
        decode(*settings);
    });
}

} // namespace quorvel::host
