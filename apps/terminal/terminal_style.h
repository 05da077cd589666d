// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quorvel::terminal {

/// How standard output shows text. Anything but a terminal gets plain text for 80 columns, so that the same
/// input gives the same bytes everywhere.
struct TerminalStyle {
    std::size_t columns = 80;
    bool coloured = false;  ///< unless NO_COLOR is set
    bool hasBlocks = false; ///< block characters: where the locale's characters are UTF-8
};

TerminalStyle standardOutputStyle();

} // namespace quorvel::terminal
