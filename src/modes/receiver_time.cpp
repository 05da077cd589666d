// SPDX-License-Identifier: MIT
#include "modes/receiver_time.h"

#include "core/bits.h"
#include "core/clock.h"

namespace quorvel::modes {

namespace {

constexpr std::uint64_t kDayMilliseconds = 86'400'000;
constexpr unsigned kSecondBits = 18;
constexpr unsigned kNanosecondBits = 30;

} // namespace

std::uint64_t receiverTime(std::string_view bytes) {
    auto const now = clock::nowMilliseconds();
    auto const second = bits<std::uint64_t>(bytes, 0, kSecondBits);
    auto const nanosecond = bits<std::uint64_t>(bytes, kSecondBits, kNanosecondBits);
    return now - now % kDayMilliseconds + second * 1000 + nanosecond / 1'000'000;
}

std::uint64_t receiverTimeBits(std::uint64_t milliseconds) {
    auto const ofDay = milliseconds % kDayMilliseconds;
    return ofDay / 1000 << kNanosecondBits | ofDay % 1000 * 1000;
}

} // namespace quorvel::modes
