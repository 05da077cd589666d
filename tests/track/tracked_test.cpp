// SPDX-License-Identifier: MIT
#include <modes/detail/tracked.h>

#include <gtest/gtest.h>

namespace quorvel::modes::detail {
namespace {

void expectItem(Tracked<int> const& item, int value, unsigned long long update, unsigned long long change) {
    EXPECT_EQ(item.value, value);
    EXPECT_EQ(item.lastUpdate, update);
    EXPECT_EQ(item.lastChange, change);
}

TEST(Updated, KeepsValueAndTime) {
    Updated<int> item;
    EXPECT_EQ(item.value, 0);
    EXPECT_EQ(item.lastUpdate, 0U);
    item.report(7, 100);
    EXPECT_EQ(item.value, 7);
    EXPECT_EQ(item.lastUpdate, 100U);
}

TEST(Tracked, TakesTheFirstReportAsAChangeEvenOfTheInitialValue) {
    Tracked<int> item;
    expectItem(item, 0, 0, 0);
    item.report(0, 100);
    expectItem(item, 0, 100, 100);
}

TEST(Tracked, ChangesWithTheValueOnly) {
    Tracked<int> item;
    item.report(7, 100);
    item.report(7, 200);
    expectItem(item, 7, 200, 100);
    item.report(8, 300);
    expectItem(item, 8, 300, 300);
}

TEST(Tracked, CanTakeOnlyADifferentValueAsAChange) {
    Tracked<int> item;
    item.reportDifferent(0, 100);
    expectItem(item, 0, 100, 0);
    item.reportDifferent(7, 200);
    expectItem(item, 7, 200, 200);
    item.reportDifferent(7, 300);
    expectItem(item, 7, 300, 200);
}

TEST(Tracked, ResetsToNeverReported) {
    Tracked<int> item;
    item.report(7, 100);
    item.reset();
    expectItem(item, 0, 0, 0);
}

TEST(Tracked, KeepsItsChangeTimeWhenResetFromTheEmptyValue) {
    Tracked<int> item;
    item.report(7, 100);
    item.report(0, 200);
    item.reset();
    expectItem(item, 0, 0, 200);
}

} // namespace
} // namespace quorvel::modes::detail
