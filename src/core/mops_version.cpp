// SPDX-License-Identifier: MIT
#include <modes/mops_version.h>

#include <algorithm>

namespace quorvel::modes {

void ConvMOPSVersion(std::string const& text, MOPSVersion& out) {
    auto const number = static_cast<std::uint32_t>(std::stoi(text)); // a negative number becomes a large one
    out = static_cast<MOPSVersion>(std::min<std::uint32_t>(number, MOPS_UNKNOWN));
}

} // namespace quorvel::modes
