// SPDX-License-Identifier: MIT
#include "core/recycled.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

using namespace quorvel::modes;

namespace {

// A size of its own for each test: blocks are kept by size and thread.
template <int Test> struct Object {
    static constexpr std::size_t kSize = 2048 + 64 * Test;
    char bytes[kSize - 32]; // the rest is the shared pointer's
    using Blocks = RecycledBlocks<kSize>;
};

bool recycles() { return TREVALLO_RECYCLES != 0; }

} // namespace

TEST(Recycled, TakesBackWhatTheThreadGave) {
    using Blocks = Object<1>::Blocks;
    auto* const block = Blocks::take();
    EXPECT_EQ(Blocks::kept(), 0U);
    Blocks::give(block);
    if (!recycles()) GTEST_SKIP() << "nothing is recycled under this sanitizer";
    EXPECT_EQ(Blocks::kept(), 1U);
    EXPECT_EQ(Blocks::take(), block);
    EXPECT_EQ(Blocks::kept(), 0U);
    Blocks::give(block);
}

TEST(Recycled, NeverHandsOutABlockTwice) {
    using Blocks = Object<2>::Blocks;
    std::set<void*> held;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 100; ++i) ASSERT_TRUE(held.insert(Blocks::take()).second);
        for (int i = 0; i < 50; ++i) {
            Blocks::give(*held.begin());
            held.erase(held.begin());
        }
    }
    for (auto* block : held) Blocks::give(block);
}

TEST(Recycled, KeepsALimitedAmount) {
    using Blocks = Object<3>::Blocks;
    std::vector<void*> blocks(Blocks::kMost + 10);
    for (auto& block : blocks) block = Blocks::take();
    for (auto* block : blocks) Blocks::give(block);
    EXPECT_EQ(Blocks::kept(), recycles() ? Blocks::kMost : 0U);
    EXPECT_LE(Blocks::kMost * Object<3>::kSize, 256U * 1024);
    EXPECT_EQ(RecycledBlocks<64>::kMost * 64, 256U * 1024);
}

TEST(Recycled, IsKeptByTheThreadThatReleases) {
    using Blocks = Object<4>::Blocks;
    auto* const block = Blocks::take();
    std::size_t keptThere = 0;
    std::thread([&] {
        Blocks::give(block);
        keptThere = Blocks::kept();
    }).join(); // which releases what the thread kept
    EXPECT_EQ(keptThere, recycles() ? 1U : 0U);
    EXPECT_EQ(Blocks::kept(), 0U);
}

TEST(Recycled, ObjectsMayBeReleasedAfterTheEndOfTheThreadsOwnOnes) {
    using Shared = std::shared_ptr<Object<5>>;
    struct Late {
        Shared object;
        std::size_t* keptAfter = nullptr;
        ~Late() {
            object.reset();
            *keptAfter = Object<5>::Blocks::kept();
        }
    };
    std::size_t keptBefore = 0;
    std::size_t keptAfter = 99;
    std::thread([&] {
        // made before the first release, and so destroyed after what the thread keeps
        static thread_local Late late;
        late.keptAfter = &keptAfter;
        auto released = makeRecycled<Object<5>>();
        late.object = makeRecycled<Object<5>>();
        released.reset();
        keptBefore = Object<5>::Blocks::kept();
    }).join();
    EXPECT_EQ(keptBefore, recycles() ? 1U : 0U);
    EXPECT_EQ(keptAfter, 0U) << "nobody would release what is kept after the end";
    EXPECT_EQ(Object<5>::Blocks::kept(), 0U);
}

TEST(Recycled, WhatOneAllocatorGaveAnyOtherMayTakeBack) {
    EXPECT_TRUE(RecyclingAllocator<int>() == RecyclingAllocator<int>());
    EXPECT_FALSE(RecyclingAllocator<int>() != RecyclingAllocator<int>(RecyclingAllocator<char>()));
}

TEST(Recycled, AllocatorsTakeBlocksForSingleObjectsOnly) {
    using Blocks = Object<6>::Blocks;
    RecyclingAllocator<Object<6>> allocator;
    auto* const several = allocator.allocate(2);
    allocator.deallocate(several, 2);
    EXPECT_EQ(Blocks::kept(), 0U);
    auto* const one = allocator.allocate(1);
    allocator.deallocate(one, 1);
    if (!recycles()) GTEST_SKIP() << "nothing is recycled under this sanitizer";
    EXPECT_EQ(Blocks::kept(), 1U);
    EXPECT_EQ(allocator.allocate(1), one);
    EXPECT_EQ(Blocks::kept(), 0U);
    allocator.deallocate(one, 1);
}

TEST(Recycled, BlocksAreNeverSmallerThanTheirObjectAndNeverMuchLarger) {
    if (!recycles()) GTEST_SKIP() << "nothing is recycled under this sanitizer";
    constexpr std::size_t size = 4096;
    struct Fits {
        char bytes[size];
    };
    struct IsOneByteTooLarge {
        char bytes[size + 1];
    };
    RecyclingAllocator<Fits> fits;
    fits.deallocate(fits.allocate(1), 1);
    EXPECT_EQ(RecycledBlocks<size>::kept(), 1U);
    RecyclingAllocator<IsOneByteTooLarge> isTooLarge;
    isTooLarge.deallocate(isTooLarge.allocate(1), 1);
    EXPECT_EQ(RecycledBlocks<size>::kept(), 1U);
    EXPECT_EQ(RecycledBlocks<size + 64>::kept(), 1U);
}

TEST(Recycled, SharedObjectsAreConstructedAndDestroyedAsAnyOther) {
    auto const text = makeRecycled<std::string>(100, 'x');
    std::weak_ptr<std::string> const weak = text;
    EXPECT_EQ(*text, std::string(100, 'x'));
    EXPECT_EQ(text.use_count(), 1);
    auto other = makeRecycled<std::string>("other");
    std::weak_ptr<std::string> const gone = other;
    other.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_FALSE(weak.expired());
}
