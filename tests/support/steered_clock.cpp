// SPDX-License-Identifier: MIT
#include "support/steered_clock.h"

namespace quorvel::modes::test {

namespace {

clock::TimePoint standing;

} // namespace

SteeredClock::SteeredClock(std::uint64_t milliseconds) : _before(clock::setSource([] { return standing; })) {
    set(milliseconds);
}

SteeredClock::~SteeredClock() { clock::setSource(_before); }

void SteeredClock::set(std::uint64_t milliseconds) {
    standing = clock::TimePoint(std::chrono::milliseconds(milliseconds));
}

void SteeredClock::advanceSeconds(std::int64_t seconds) { standing += std::chrono::seconds(seconds); }

} // namespace quorvel::modes::test
