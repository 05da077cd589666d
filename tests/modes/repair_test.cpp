// SPDX-License-Identifier: MIT
#include "modes/repair.h"

#include "modes/parity.h"
#include "reference/repair.h"
#include "support/bytes.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

using namespace quorvel::modes;
using test::fromHex;
using test::Noise;

namespace {

constexpr std::uint64_t kSeed = 20240501;
constexpr unsigned kLengths[] = {56, 112};

// Frames as they come: noise, and good ones with some bits inverted.
std::string anyFrame(Noise& noise, unsigned bits, unsigned damage) {
    auto frame = noise.bytes(bits / 8);
    if (damage == 0) return frame;
    frame = test::withParity(frame.substr(0, frame.size() - 3));
    for (unsigned i = 0; i < damage; ++i) {
        frame = test::withBitsInverted(frame, {static_cast<unsigned>(noise.below(bits))});
    }
    return frame;
}

unsigned parityField(std::string const& frame) {
    unsigned field = 0;
    for (char const byte : frame.substr(frame.size() - 3)) field = field << 8 | static_cast<unsigned char>(byte);
    return field;
}

} // namespace

TEST(Repair, FindsTheBitThatTheSearchFinds) {
    Noise noise(kSeed);
    for (unsigned i = 0; i < 400; ++i) {
        auto const bits = kLengths[i % 2];
        auto const frame = anyFrame(noise, bits, i % 4);
        auto const wanted = i % 5 == 0 ? reference::parityOfFrame(frame) : parityField(frame);
        auto const syndrome = reference::parityOfFrame(frame) ^ wanted;
        ASSERT_EQ(repair::findBit(syndrome, bits), reference::searchBit(frame, wanted))
            << "seed " << kSeed << ", " << i;
    }
}

TEST(Repair, FindsThePairThatTheSearchFinds) {
    Noise noise(kSeed + 1);
    for (unsigned i = 0; i < 40; ++i) {
        auto const bits = kLengths[i % 2];
        auto const frame = anyFrame(noise, bits, i % 4);
        auto const wanted = i % 5 == 0 ? reference::parityOfFrame(frame) : parityField(frame);
        auto const syndrome = reference::parityOfFrame(frame) ^ wanted;
        ASSERT_EQ(repair::findPair(syndrome, bits), reference::searchPair(frame, wanted))
            << "seed " << kSeed << ", " << i;
    }
}

// The mark of every pair, by the plain rule: the first pair in lexicographic order that leaves it.
TEST(Repair, FindsEveryPairByItsMark) {
    for (auto const bits : kLengths) {
        std::string const nothing(bits / 8, '\0');
        for (unsigned i = 0; i < bits; ++i) {
            auto const first = parity::remainder(test::withBitsInverted(nothing, {i}), bits);
            EXPECT_EQ(repair::findBit(first, bits), std::min(i, bits - 24)) << i;
            for (unsigned j = i + 1; j < bits; ++j) {
                auto const mark = first ^ parity::remainder(test::withBitsInverted(nothing, {j}), bits);
                auto const found = repair::findPair(mark, bits);
                ASSERT_TRUE(found);
                ASSERT_LE(*found, std::make_pair(i, j));
                auto const [a, b] = *found;
                ASSERT_EQ(parity::remainder(test::withBitsInverted(nothing, {a, b}), bits), mark);
            }
        }
    }
}

TEST(Repair, FindsNothingForAParityOfMoreThan24Bits) {
    EXPECT_FALSE(repair::findBit(0x1000000, 112));
    EXPECT_FALSE(repair::findPair(0x1000000, 112));
}

TEST(Repair, FindsNothingInAFrameWithoutBits) {
    EXPECT_FALSE(repair::findBit(0, 0));
    EXPECT_FALSE(repair::findPair(0, 0));
}

// A short frame is the end of a long one: what damage of the bits before it or behind it would do explains
// nothing.
TEST(Repair, FindsNoDamageOfBitsThatTheFrameDoesNotHave) {
    std::string const nothing(14, '\0');
    std::vector<std::uint32_t> marks;
    for (unsigned i = 0; i < 88; ++i) {
        marks.push_back(parity::remainder(test::withBitsInverted(nothing, {i}), 112));
    }
    for (unsigned const bits : {1U, 16U, 31U, 32U, 56U, 111U, 112U}) {
        unsigned const offset = bits == 112 ? 0 : 56;
        auto const has = [&](unsigned i) { return offset <= i && i < offset + bits; };
        for (unsigned i = 0; i < marks.size(); ++i) {
            ASSERT_EQ(repair::findBit(marks[i], bits).has_value(), has(i)) << bits << ", " << i;
            for (unsigned j = i + 1; j < marks.size(); ++j) {
                ASSERT_EQ(repair::findPair(marks[i] ^ marks[j], bits).has_value(), has(i) && has(j))
                    << bits << ", " << i << ", " << j;
            }
        }
    }
}

// Hosts may derive messages of any length; bits beyond the data of a long frame leave no mark.
TEST(Repair, FindsTheFirstPairInFramesOfAnyLength) {
    for (unsigned const bits : {1U, 2U, 31U, 32U, 33U, 34U, 57U, 80U, 111U, 113U, 255U}) {
        std::string const nothing(32, '\0');
        std::map<std::uint32_t, unsigned> firstBit;
        std::map<std::uint32_t, std::pair<unsigned, unsigned>> firstPair;
        std::vector<std::uint32_t> marks;
        for (unsigned i = 0; i < bits; ++i) {
            marks.push_back(parity::remainder(test::withBitsInverted(nothing, {i}), bits));
        }
        for (unsigned i = 0; i < bits; ++i) {
            firstBit.emplace(marks[i], i);
            for (unsigned j = i + 1; j < bits; ++j) firstPair.emplace(marks[i] ^ marks[j], std::pair(i, j));
        }
        for (auto const& [mark, position] : firstBit) {
            ASSERT_EQ(repair::findBit(mark, bits), position) << bits;
            ASSERT_EQ(repair::findPair(mark, bits).has_value(), firstPair.count(mark) == 1) << bits;
        }
        for (auto const& [mark, pair] : firstPair) {
            ASSERT_EQ(repair::findPair(mark, bits), pair) << bits;
            ASSERT_EQ(repair::findBit(mark, bits).has_value(), firstBit.count(mark) == 1) << bits;
        }
    }
}

TEST(Repair, InvertsTheBitAtAPosition) {
    std::string frame(7, '\0');
    repair::invertBit(frame, 0);
    repair::invertBit(frame, 55);
    EXPECT_EQ(frame, fromHex("80000000000001"));
    repair::invertBit(frame, 55);
    EXPECT_EQ(frame, fromHex("80000000000000"));
}
