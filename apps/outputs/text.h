// SPDX-License-Identifier: MIT
#pragma once

#include "host/frame.h"
#include "host/printable.h" // IWYU pragma: export

#include <string>

namespace quorvel::host {

/// A number with so many decimals and a point, whatever the locale of the host.
std::string fixed(double number, int decimals);

/// Milliseconds in seconds.
double seconds(TimeMs time);

/// An aircraft address as six upper-case digits, and a Mode A code as four octal ones.
std::string addressText(unsigned int address);
std::string squawkText(unsigned int code);

/// Text in which what is not valid UTF-8 has become U+FFFD.
std::string validUtf8(std::string const& text);

} // namespace quorvel::host
