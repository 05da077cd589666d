// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::host {

/// Text that came over the air or from a command line, safe to show in a line of plain text: printable ASCII,
/// "?" for all else, no trailing blanks.
std::string printable(std::string const& text);

} // namespace quorvel::host
