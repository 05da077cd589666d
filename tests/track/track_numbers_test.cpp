// SPDX-License-Identifier: MIT
#include "track/track_numbers.h"

#include "reference/track_numbers.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

namespace quorvel::modes {
namespace {

unsigned take(TrackNumbers& numbers) {
    auto const number = numbers.next();
    if (number != 0) numbers.hold(number);
    return number;
}

TEST(TrackNumbers, RiseFromOne) {
    TrackNumbers numbers;
    EXPECT_EQ(take(numbers), 1U);
    EXPECT_EQ(take(numbers), 2U);
    EXPECT_EQ(take(numbers), 3U);
}

TEST(TrackNumbers, MoveOnEvenIfNobodyHoldsThem) {
    TrackNumbers numbers;
    EXPECT_EQ(numbers.next(), 1U);
    EXPECT_EQ(numbers.next(), 2U);
}

TEST(TrackNumbers, RunOutAfter4095) {
    TrackNumbers numbers;
    for (unsigned expected = 1; expected <= 4095; ++expected) ASSERT_EQ(take(numbers), expected);
    EXPECT_EQ(numbers.next(), 0U);
    numbers.release(77);
    EXPECT_EQ(take(numbers), 77U);
    EXPECT_EQ(numbers.next(), 0U);
}

TEST(TrackNumbers, ComeBackOnlyAfterTheWrap) {
    TrackNumbers numbers;
    for (int i = 0; i < 9; ++i) take(numbers);
    numbers.release(1);
    numbers.release(5);
    for (unsigned expected = 10; expected <= 4095; ++expected) ASSERT_EQ(take(numbers), expected);
    EXPECT_EQ(take(numbers), 1U);
    EXPECT_EQ(take(numbers), 5U);
    EXPECT_EQ(numbers.next(), 0U);
}

TEST(TrackNumbers, WrapWhenTheNextWouldBe4096) {
    TrackNumbers numbers;
    for (int i = 0; i < 4095; ++i) numbers.next();
    EXPECT_EQ(numbers.next(), 1U);
}

TEST(TrackNumbers, CountHoldersOfForeignNumbers) {
    TrackNumbers numbers;
    numbers.hold(2);
    numbers.hold(2);
    EXPECT_EQ(numbers.next(), 1U);
    EXPECT_EQ(numbers.next(), 3U);
    numbers.release(2);
    for (int i = 0; i < 4092; ++i) numbers.next();
    EXPECT_EQ(numbers.next(), 1U);
    EXPECT_EQ(numbers.next(), 3U); // one still holds 2
}

TEST(TrackNumbers, RunOutWithForeignNumbersToo) {
    TrackNumbers numbers;
    for (unsigned i = 0; i < 4094; ++i) numbers.hold(i % 2 == 0 ? 0U : 0xFFFFFFFFU);
    EXPECT_EQ(take(numbers), 1U);
    EXPECT_EQ(numbers.next(), 0U);
}

// Targets come and go and bring numbers of their own, at every degree of filling; the search through all of
// them finds the same.
void compareWithSearch(unsigned seed, std::size_t targets, int steps) {
    std::mt19937 random{seed};
    auto const below = [&random](std::size_t end) { return static_cast<unsigned>(random() % end); };
    TrackNumbers numbers;
    reference::SearchedTrackNumbers searched;
    unsigned address = 0;
    auto const add = [&] {
        auto const number = numbers.next();
        ASSERT_EQ(number, searched.next()) << "seed " << seed;
        if (number == 0) return;
        searched.numberOf[++address] = number;
        numbers.hold(number);
    };
    auto const someTarget = [&] {
        return std::next(searched.numberOf.begin(), static_cast<int>(below(searched.numberOf.size())));
    };
    while (searched.numberOf.size() < targets) add();
    for (int i = 0; i < steps && !::testing::Test::HasFatalFailure(); ++i) {
        auto const what = below(10);
        if (searched.numberOf.empty() || what < 4) {
            add();
        } else if (what < 8) {
            auto const gone = someTarget();
            numbers.release(gone->second);
            searched.numberOf.erase(gone);
        } else {
            auto const renumbered = someTarget();
            unsigned const choices[] = {0, below(4100), 4095, 4096, someTarget()->second};
            numbers.release(renumbered->second);
            renumbered->second = choices[below(std::size(choices))];
            numbers.hold(renumbered->second);
        }
    }
}

TEST(TrackNumbers, AreThoseOfASearchThroughAllTargets) {
    compareWithSearch(1, 0, 20'000);
    compareWithSearch(2, 100, 5'000);
    compareWithSearch(3, 4000, 60);
    compareWithSearch(4, 4094, 60);
    compareWithSearch(5, 4095, 60);
}

} // namespace
} // namespace quorvel::modes
