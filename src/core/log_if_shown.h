// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

#include <string>

namespace quorvel::modes {

// How the library writes its own lines: most lines of a busy receiver are suppressed, and those cost no
// formatting.

/// Whether a line of this level would be emitted.
bool logShows(Log::Level level) noexcept;

/// As the printf-style `Log::log`, but a suppressed line is not formatted.
TREVALLO_PRINTF(3, 4)
void logIfShown(Log::Level level, std::string const& module, char const* format, ...);

} // namespace quorvel::modes
