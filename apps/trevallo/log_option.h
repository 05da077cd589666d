// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

#include <string>

namespace CLI {
class App;
}

namespace quorvel::program {

/// A level above all others: no line of the library's log is shown.
inline constexpr auto kNoLog = static_cast<modes::Log::Level>(modes::Log::Error + 1);

/// Which lines of the library's log are shown, and where.
struct LogSettings {
    modes::Log::Level level = kNoLog;
    std::string file; ///< standard error when empty
};

/// Adds `--log LEVEL` and `--log-file FILE`. `settings` must outlive the command; its values are the
/// defaults.
void addLogOptions(CLI::App& command, LogSettings& settings);

} // namespace quorvel::program
