// SPDX-License-Identifier: MIT
#include "modes/parity.h"

#include "reference/repair.h"
#include "support/bytes.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;
using test::Noise;

namespace {

constexpr std::uint64_t kSeed = 20240501;
constexpr unsigned kLengths[] = {56, 112};

} // namespace

TEST(Parity, IsTheRemainderOfThePolynomialDivision) {
    Noise noise(kSeed);
    for (unsigned i = 0; i < 20'000; ++i) {
        auto const bits = kLengths[i % 2];
        auto const frame = noise.bytes(bits / 8);
        ASSERT_EQ(parity::remainder(frame, bits), reference::parityOfFrame(frame)) << "seed " << kSeed << ", " << i;
    }
}

TEST(Parity, OfASingleBitIsTheRemainderOfItsPower) {
    std::string const nothing(14, '\0');
    EXPECT_EQ(parity::remainder(test::withBitsInverted(nothing, {0}), 112), 0x3935EAU);
    EXPECT_EQ(parity::remainder(test::withBitsInverted(nothing, {1}), 112), 0x1C9AF5U);
    EXPECT_EQ(parity::remainder(test::withBitsInverted(nothing, {87}), 112), 0xFFF409U);
    for (unsigned i = 88; i < 112; ++i) {
        EXPECT_EQ(parity::remainder(test::withBitsInverted(nothing, {i}), 112), 0U) << i;
    }
}

TEST(Parity, OfAKnownFrameIsItsParityField) {
    EXPECT_EQ(parity::remainder(fromHex("8D4840D6202CC371C32CE0576098"), 112), 0x576098U);
}

TEST(Parity, TakesMissingBytesAsZeros) {
    auto const frame = fromHex("8D4840D6202CC371C32CE0576098");
    for (std::size_t length = 0; length < frame.size(); ++length) {
        auto padded = frame.substr(0, length);
        padded.resize(14, '\0');
        EXPECT_EQ(parity::remainder(frame.substr(0, length), 112), parity::remainder(padded, 112)) << length;
    }
}

TEST(Parity, IsDefinedForEveryNumberOfBits) {
    auto const bytes = std::string(32, '\xFF');
    EXPECT_EQ(parity::remainder(bytes, 0), 0U);
    for (unsigned bits = 1; bits < 256; ++bits) {
        std::uint32_t expected = 0; // bits are counted from where a short frame starts, unless the frame is a long one
        auto const offset = bits == 112 ? 0U : 56U;
        for (unsigned i = 0; i < bits && offset + i < 88; ++i) {
            expected ^= parity::remainder(test::withBitsInverted(std::string(14, '\0'), {offset + i}), 112);
        }
        EXPECT_EQ(parity::remainder(bytes, bits), expected) << bits;
    }
}
