// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

namespace quorvel::modes {

/// Whether a line of this level would be emitted. For hot callers, so that they format nothing in vain.
bool logShows(Log::Level level) noexcept;

} // namespace quorvel::modes
