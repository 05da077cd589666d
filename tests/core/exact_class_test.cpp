// SPDX-License-Identifier: MIT
#include "core/exact_class.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

namespace {

struct Base {
    virtual ~Base() = default;
};
struct Middle : Base {};
struct Leaf : Middle {};
struct OtherLeaf : Middle {};
struct Stranger : Base {};

Base const& asBase(Base const& object) { return object; }

} // namespace

TEST(ExactClass, TellsAClassFromItsBasesAndDerivedOnes) {
    EXPECT_TRUE(isExactly<Middle>(asBase(Middle())));
    EXPECT_FALSE(isExactly<Middle>(asBase(Leaf())));
    EXPECT_FALSE(isExactly<Leaf>(asBase(Middle())));
}

TEST(ExactClass, CastsToTheClassItselfAndToItsBases) {
    Leaf const leaf;
    EXPECT_EQ(asClass<Leaf>(asBase(leaf)), &leaf);
    EXPECT_EQ(asClass<Middle>(asBase(leaf)), &leaf);
    EXPECT_EQ(asClass<OtherLeaf>(asBase(leaf)), nullptr);
    EXPECT_EQ(asClass<Leaf>(asBase(Stranger())), nullptr);
}

TEST(ExactClass, CastsToABaseAlsoWhatIsNoneOfTheLikelyClasses) {
    Leaf const likely;
    OtherLeaf const unlikely;
    EXPECT_EQ((asBaseOf<Middle, Leaf>(asBase(likely))), &likely);
    EXPECT_EQ((asBaseOf<Middle, Leaf>(asBase(unlikely))), &unlikely);
    EXPECT_EQ((asBaseOf<Middle, Leaf>(asBase(Stranger()))), nullptr);
}
