// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvel::host {

/// Milliseconds since 1970-01-01 00:00:00 UTC; 0 is none.
using TimeMs = unsigned long long;

/// One frame as a receiver sent it: the library's record of it, and what the record does not keep.
struct Frame {
    std::shared_ptr<modes::ModeSEncapsulation> record; ///< bytes and time of reception
    std::optional<std::uint64_t> stamp; ///< the receiver's own time stamp, 48 bits, whatever it counts
    std::uint8_t signal = 0;            ///< the receiver's signal level; 0 where the encoding has none
};

using Frames = std::vector<Frame>;

} // namespace quorvel::host
