// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

#include <optional>
#include <string>

namespace quorvel::files {

/// Parses "2024-05-01" or "2024-05-01T12:34:56[.789]Z"; none for anything else.
std::optional<airspace::TimeMs> parseTime(std::string const& text);

/// The current time of the host's clock.
airspace::TimeMs hostTime();

} // namespace quorvel::files
