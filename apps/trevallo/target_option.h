// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::program {

// For CLI11's checks of where an output goes: empty when it can, an explanation otherwise. Targets of a kind that only
// other outputs accept are refused, as they would become the names of files and folders.

std::string checkedFile(std::string const& target);
std::string checkedFolder(std::string const& target);
std::string checkedFileOrPort(std::string const& target);
std::string checkedFileOrStandardOutput(std::string const& target);

} // namespace quorvel::program
