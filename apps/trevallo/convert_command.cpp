// SPDX-License-Identifier: MIT
#include "trevallo/convert_command.h"

#include "files/byte_sink.h"
#include "files/host_error.h"
#include "files/stop_signals.h"
#include "inspect/conversion.h"
#include "inspect/losses.h"
#include "run/frame_reader.h"
#include "terminal/stderr_log.h"
#include "trevallo/encoding_option.h"
#include "trevallo/log_option.h"
#include "trevallo/target_option.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <unistd.h>

namespace quorvel::program {

namespace {

struct Settings {
    std::vector<std::string> files;
    std::optional<airspace::Encoding> from;
    std::optional<airspace::Encoding> to;
    std::string output = "-";
    LogSettings log;
};

// Time stamps are passed on as they are: what they count does not matter.
airspace::StreamOptions readingOf(Settings const& settings) {
    airspace::StreamOptions options;
    options.encoding = settings.from;
    options.time.reading = airspace::TimeReading::Fixed;
    return options;
}

void report(inspect::Conversion const& conversion, airspace::Encoding to) {
    std::string const name(airspace::nameOf(to));
    std::cerr << conversion.frames() << " frames written as " << name;
    if (conversion.modeAcFrames() > 0) std::cerr << ", " << conversion.modeAcFrames() << " Mode A/C replies";
    std::cerr << "\n";
    auto const reportLeftOut = [&](std::uint64_t count, char const* what) {
        if (count > 0) std::cerr << count << " " << what << " left out: no place for them in " << name << "\n";
    };
    reportLeftOut(conversion.leftOut(), "Mode A/C replies");
    reportLeftOut(conversion.stampsLeftOut(), "time stamps");
    reportLeftOut(conversion.signalsLeftOut(), "signal levels");
    if (conversion.unstamped() > 0) std::cerr << conversion.unstamped() << " frames had no time stamp\n";
}

void convert(Settings const& settings) {
    if (settings.output == "-" && inspect::isBinary(*settings.to) && ::isatty(STDOUT_FILENO) != 0) {
        throw files::HostError(std::string(airspace::nameOf(*settings.to)) +
                               " cannot be shown in a terminal: name a file with -o, or send it through a pipe");
    }
    terminal::StderrLog const log(settings.log.level, settings.log.file);
    files::StopSignals const signals;
    files::ByteSink sink(settings.output);
    inspect::Conversion conversion(*settings.to);
    for (auto const& name : settings.files) {
        run::FrameReader reader(name, readingOf(settings));
        std::string bytes;
        for (auto frames = reader.read(); !frames.empty(); frames = reader.read()) {
            bytes.clear();
            conversion.append(frames, bytes);
            sink.write(bytes);
        }
        std::cerr << inspect::lossesText(reader.name(), reader.stream().counts());
        if (files::StopSignals::requested()) break;
    }
    sink.finish();
    if (files::StopSignals::requested()) std::cerr << "trevallo: stopped by " << files::StopSignals::name() << "\n";
    report(conversion, *settings.to);
}

} // namespace

void addConvertCommand(CLI::App& app) {
    auto settings = std::make_shared<Settings>();
    auto* command = app.add_subcommand("convert", "Write recordings in another encoding");
    command
        ->add_option("FILE", settings->files,
            "Recordings, also compressed ones, written one after the other; - is standard input")
        ->required();
    addEncodingOption(*command, "--from", "Encoding of the recordings, detected when not given", settings->from);
    addEncodingOption(*command, "--to", "Encoding to write", settings->to);
    command->get_option("--to")->required();
    command
        ->add_option("-o,--output", settings->output,
            "Output; compressed when its name ends in .gz or .zst; - is standard output")
        ->capture_default_str()
        ->check(checkedFileOrStandardOutput)
        ->type_name("FILE");
    addLogOptions(*command, settings->log);
    command->footer("Time stamps and signal levels are kept where the encoding has a place for them.\n"
                    "Examples:\n"
                    "  trevallo convert --to avr-time recording.beast | head\n"
                    "  trevallo convert --to beast -o recording.beast.zst monday.avr.gz tuesday.avr.gz\n"
                    "  trevallo convert --from bin --to hex frames.bin -o frames.txt");
    command->callback([settings] { convert(*settings); });
}

} // namespace quorvel::program
