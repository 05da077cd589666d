// SPDX-License-Identifier: MIT
#pragma once

namespace quorvel::modes::detail {

// One half of a position pair. Internal: installed because targets hold these by value, not part of the interface.

/// Position in compact position reporting form: 17-bit coordinates and when they were received, in
/// milliseconds since 1970-01-01 00:00:00 UTC.
struct CPRFrame {
    unsigned int latitude = 0;
    unsigned int longitude = 0;
    unsigned long long time = 0;
};

} // namespace quorvel::modes::detail
