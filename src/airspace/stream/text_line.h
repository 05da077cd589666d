// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

#include <optional>
#include <string_view>

namespace quorvel::airspace {

/// The frame of one AVR line, without its line feed: "*" or ":" and the hexadecimal digits of 2, 7 or 14
/// bytes, or "@" and a time stamp of twelve digits before them; then ";". None for any other line. A frame
/// whose stamp has characters other than digits has none.
std::optional<Frame> readAvrLine(std::string_view line);

/// The frame of a line of hexadecimal digits.
std::optional<Frame> readHexLine(std::string_view line);

/// Whether a line is a comment of a receiver.
inline bool isComment(std::string_view line) { return !line.empty() && line.front() == '?'; }

} // namespace quorvel::airspace
