// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include "harness/require.h"

#include <string>
#include <vector>

namespace quorvel::fuzz {

/// What a frame record holds, for comparing.
struct Frame {
    unsigned long long time;
    std::string data;

    bool operator==(Frame const& other) const { return time == other.time && data == other.data; }
};

/// Appends what the records hold; a record of any other length than that of a frame does not hold.
inline void append(std::vector<Frame>& frames, modes::ModeSEncapsulation::Records const& records) {
    for (auto const& record : records) {
        auto const size = record->data().size();
        require(size == 2 || size == 7 || size == 14, "a record is 2, 7 or 14 bytes");
        frames.push_back({record->timeStamp(), record->data()});
    }
}

} // namespace quorvel::fuzz
