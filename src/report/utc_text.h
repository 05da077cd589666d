// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::modes {

/// Milliseconds since 1970-01-01 00:00:00 UTC as "2024-05-01T12:34:56.789Z"; years have as many digits as
/// they need. Empty when the platform's calendar does not reach so far.
std::string utcText(unsigned long long milliseconds);

} // namespace quorvel::modes
