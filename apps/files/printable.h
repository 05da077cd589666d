// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::files {

/// Text that came over the air or from a command line, safe to show in a line of plain text: printable ASCII,
/// "?" for everything else, no trailing blanks.
std::string printable(std::string const& text);

} // namespace quorvel::files
