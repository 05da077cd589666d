// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

namespace CLI {
class App;
}

namespace quorvel::host {

/// A level above all others: no line of the library's log is shown.
inline constexpr auto kNoLog = static_cast<modes::Log::Level>(modes::Log::Error + 1);

/// Adds `--log LEVEL`. `level` must outlive the command; its value is the default.
void addLogOption(CLI::App& command, modes::Log::Level& level);

} // namespace quorvel::host
