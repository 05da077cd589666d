// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <string>

namespace quorvel::modes {

/// printf-style formatting into a string, for short texts: what exceeds 63 characters is cut.
TREVALLO_PRINTF(1, 2) std::string formatted(char const* format, ...);

} // namespace quorvel::modes
