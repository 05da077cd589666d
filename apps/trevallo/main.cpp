// SPDX-License-Identifier: MIT
#include <modes/trevallo.h>

#include "host/host_error.h"
#include "trevallo/convert_command.h"
#include "trevallo/db_command.h"
#include "trevallo/decode_command.h"
#include "trevallo/simulate_command.h"
#include "trevallo/stats_command.h"
#include "trevallo/track_command.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>

namespace {

constexpr int kFailure = 1;
constexpr int kUsage = 2;

std::string versionText() {
    quorvel::modes::Trevallo trevallo;
    return "trevallo " + trevallo.version() + " (" + trevallo.build() + ")\n" + trevallo.about() + "\n" +
           trevallo.contact();
}

int run(int argc, char** argv) {
    CLI::App app("Decodes and tracks the replies of aircraft transponders on 1090 MHz.", "trevallo");
    app.set_version_flag("--version", versionText());
    app.require_subcommand(1);
    quorvel::host::addTrackCommand(app);
    quorvel::host::addDecodeCommand(app);
    quorvel::host::addConvertCommand(app);
    quorvel::host::addStatsCommand(app);
    quorvel::host::addDbCommand(app);
    quorvel::host::addSimulateCommand(app);
    try {
        app.parse(argc, argv);
    } catch (CLI::CallForHelp const& help) {
        return app.exit(help);
    } catch (CLI::CallForVersion const& version) {
        return app.exit(version);
    } catch (CLI::ParseError const& error) {
        std::cerr << "trevallo: " << error.what() << " (see trevallo --help)\n";
        return kUsage;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    std::signal(
        SIGPIPE,
        SIG_IGN); // an output that went away is an error like any other, and the database is still saved
    try {
        return run(argc, argv);
    } catch (quorvel::host::FailureTold const&) {
        return kFailure;
    } catch (quorvel::host::UsageError const& error) {
        std::cerr << "trevallo: " << error.what() << "\n";
        return kUsage;
    } catch (quorvel::host::HostError const& error) {
        if (error.code() != EPIPE)
            std::cerr << "trevallo: " << error.what() << "\n"; // `head` has seen enough
        return kFailure;
    } catch (std::exception const& error) {
        std::cerr << "trevallo: " << error.what() << "\n";
        return kFailure;
    }
}
