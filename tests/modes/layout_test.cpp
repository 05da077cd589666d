// SPDX-License-Identifier: MIT
#include "modes/layout.h"

#include "support/bytes.h"

#include <gmock/gmock.h>

using namespace quorvel::modes;

TEST(Layout, DecodesEveryFieldEvenAfterOneFailed) {
    ModeSMessageFieldAA address;
    ModeSMessageFieldCA capability;
    ModeSMessageFieldPI parity;
    auto const frame = test::fromHex("5D4CA2D46B609F");
    EXPECT_TRUE(Layout(At{capability, 5}, At{address, 8}, At{parity, 32}).decode(frame));
    EXPECT_FALSE(Layout(At{address, 5}, At{capability, 5}, At{parity, 88}).decode(test::fromHex("FF000000000000")));
    EXPECT_EQ(capability.capability(), 7U);
}

TEST(Layout, LeavesAFieldAsItWasWhenTheFrameDoesNotReachIt) {
    ModeSMessageFieldPI parity;
    EXPECT_FALSE(Layout(At{parity, 88}).decode(std::string(13, '\x5A')));
    EXPECT_EQ(parity.pos(), 0U);
    ASSERT_TRUE(Layout(At{parity, 32}).decode(std::string(7, '\x5A')));
    EXPECT_FALSE(Layout(At{parity, 88}).decode(std::string(13, '\x5A')));
    EXPECT_EQ(parity.pos(), 32U);
    EXPECT_TRUE(parity.valid());
}

TEST(Layout, ListsItsFieldsInOrder) {
    ModeSMessageFieldAA const address;
    ModeSMessageFieldCA const capability;
    EXPECT_THAT(Layout(At{capability, 5}, At{address, 8}).list(), testing::ElementsAre(&capability, &address));
}
