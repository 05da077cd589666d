// SPDX-License-Identifier: MIT
#pragma once

#include "files/printable.h" // IWYU pragma: export
#include <airspace/frame.h>

#include <string>

namespace quorvel::outputs {

/// Of all JSON that the program writes: raised when a member goes, or changes its meaning.
inline constexpr int kJsonFormatVersion = 2;

/// A number with so many decimals and a point, whatever the locale of the host.
std::string fixed(double number, int decimals);

/// Milliseconds in seconds.
double seconds(airspace::TimeMs time);

/// Text with everything that is not valid UTF-8 replaced by U+FFFD.
std::string validUtf8(std::string const& text);

} // namespace quorvel::outputs
