// SPDX-License-Identifier: MIT
#include <modes/trevallo.h>

#include "files/host_error.h"
#include "trevallo/convert_command.h"
#include "trevallo/db_command.h"
#include "trevallo/decode_command.h"
#include "trevallo/simulate_command.h"
#include "trevallo/stats_command.h"
#include "trevallo/track_command.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <numeric>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kFailure = 1;
constexpr int kUsage = 2;
constexpr std::size_t kMostEdits = 2; // in a command that was probably meant

std::string versionText() {
    quorvel::modes::Trevallo trevallo;
    return "trevallo " + trevallo.version() + " (" + trevallo.build() + ")\n" + trevallo.about() + "\n" +
           trevallo.contact();
}

// How many letters must be changed, added or removed to turn one word into the other.
std::size_t editDistance(std::string const& a, std::string const& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        auto diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            auto const replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, replaced}));
        }
    }
    return row[b.size()];
}

// A question about the command that was probably meant; empty when none is near.
std::string guessOf(CLI::App const& app, std::string const& word) {
    std::string nearest;
    auto least = std::min<std::size_t>(kMostEdits, (word.size() + 1) / 2) + 1;
    for (auto const* command : app.get_subcommands([](auto const*) { return true; })) {
        auto const distance = command->get_name().starts_with(word) ? 0 : editDistance(word, command->get_name());
        if (distance >= least) continue;
        least = distance;
        nearest = command->get_name();
    }
    return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

// What is wrong with the first word where a command should be; empty when it is right.
std::string unknownCommand(CLI::App const& app, std::span<char* const> words) {
    auto const* command = &app;
    for (std::string const word : words) {
        if (command->get_require_subcommand_min() == 0 || word.starts_with('-')) return "";
        auto const named = command->get_subcommands([&](auto const* each) { return each->check_name(word); });
        if (named.empty()) return "there is no command '" + word + "'" + guessOf(*command, word);
        command = named.front();
    }
    return "";
}

int run(int argc, char** argv) {
    CLI::App app("Decodes and tracks the replies of aircraft transponders on 1090 MHz.", "trevallo");
    app.set_version_flag("--version", versionText());
    app.require_subcommand(1);
    quorvel::program::addTrackCommand(app);
    quorvel::program::addDecodeCommand(app);
    quorvel::program::addConvertCommand(app);
    quorvel::program::addStatsCommand(app);
    quorvel::program::addDbCommand(app);
    quorvel::program::addSimulateCommand(app);
    try {
        app.parse(argc, argv);
    } catch (CLI::CallForHelp const& help) {
        return app.exit(help);
    } catch (CLI::CallForVersion const& version) {
        return app.exit(version);
    } catch (CLI::ParseError const& error) {
        auto const unknown = unknownCommand(app, {argv + 1, argv + argc});
        std::cerr << "trevallo: " << (unknown.empty() ? error.what() : unknown) << " (see trevallo --help)\n";
        return kUsage;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE,
        SIG_IGN); // an output that went away is an error like any other, and the database is still saved
    try {
        return run(argc, argv);
    } catch (quorvel::files::AlreadyReported const&) {
        return kFailure;
    } catch (quorvel::files::UsageError const& error) {
        std::cerr << "trevallo: " << error.what() << "\n";
        return kUsage;
    } catch (quorvel::files::HostError const& error) {
        if (error.code() != EPIPE) std::cerr << "trevallo: " << error.what() << "\n"; // `head` has seen enough
        return kFailure;
    } catch (std::exception const& error) {
        std::cerr << "trevallo: " << error.what() << "\n";
        return kFailure;
    }
}
