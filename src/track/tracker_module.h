// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::modes {

/// The name under which all sources of the tracker log.
inline std::string const kTrackerModule = "ADSBTracker";

} // namespace quorvel::modes
