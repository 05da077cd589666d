// SPDX-License-Identifier: MIT
#include "modes/receiver_time.h"

#include "core/bits.h"

namespace quorvel::modes {

namespace {

constexpr std::uint64_t kDayMilliseconds = 86'400'000;
constexpr unsigned kSecondBits = 18;
constexpr unsigned kNanosecondBits = 30;

} // namespace

std::uint64_t midnightBefore(std::uint64_t milliseconds) {
    return milliseconds - milliseconds % kDayMilliseconds;
}

std::uint64_t receiverTime(std::string_view bytes, std::uint64_t midnight) {
    auto const stamp = bits<std::uint64_t>(bytes, 0, kSecondBits + kNanosecondBits);
    auto const second = stamp >> kNanosecondBits;
    auto const nanosecond = stamp & ((std::uint64_t{1} << kNanosecondBits) - 1);
    return midnight + second * 1000 + nanosecond / 1'000'000;
}

std::uint64_t receiverTimeBits(std::uint64_t milliseconds) {
    auto const ofDay = milliseconds % kDayMilliseconds;
    return ofDay / 1000 << kNanosecondBits | ofDay % 1000 * 1000;
}

} // namespace quorvel::modes
