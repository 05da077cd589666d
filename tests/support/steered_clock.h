// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"

#include <cstdint>

namespace quorvel::modes::test {

/// The clock of the process shows a time of the test's choice while this lives. One at a time.
class SteeredClock {
public:
    explicit SteeredClock(std::uint64_t milliseconds);
    ~SteeredClock();
    SteeredClock(SteeredClock const&) = delete;
    SteeredClock& operator=(SteeredClock const&) = delete;

    void set(std::uint64_t milliseconds);
    void advanceSeconds(std::int64_t seconds);

private:
    clock::Source _before;
};

} // namespace quorvel::modes::test
