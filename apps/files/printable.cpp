// SPDX-License-Identifier: MIT
#include "files/printable.h"

namespace quorvel::files {

std::string printable(std::string const& text) {
    std::string result;
    for (char const character : text) result += character >= 0x20 && character < 0x7F ? character : '?';
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
}

} // namespace quorvel::files
