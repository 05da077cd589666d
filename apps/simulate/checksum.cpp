// SPDX-License-Identifier: MIT
#include "simulate/checksum.h"

#include <array>

namespace quorvel::simulate {

namespace {

// A shift register that takes a byte at a time: what each value of its top byte turns into.
constexpr std::uint32_t kFeedback = 0xFFF409;

constexpr auto kSteps = [] {
    std::array<std::uint32_t, 256> steps{};
    for (std::uint32_t top = 0; top < 256; ++top) {
        std::uint32_t sum = top << 16;
        for (int i = 0; i < 8; ++i) sum = (sum & 0x800000) != 0 ? (sum << 1 ^ kFeedback) & 0xFFFFFF : sum << 1;
        steps[top] = sum;
    }
    return steps;
}();

} // namespace

std::uint32_t parityOf(std::string const& data) {
    std::uint32_t sum = 0;
    for (char const byte : data) sum = (sum << 8 & 0xFFFFFF) ^ kSteps[sum >> 16 ^ static_cast<unsigned char>(byte)];
    return sum;
}

std::string withParity(std::string const& data, std::uint32_t overlay) {
    auto const parity = parityOf(data) ^ overlay;
    return data + static_cast<char>(parity >> 16 & 0xFF) + static_cast<char>(parity >> 8 & 0xFF) +
           static_cast<char>(parity & 0xFF);
}

} // namespace quorvel::simulate
