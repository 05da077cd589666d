// SPDX-License-Identifier: MIT
#include "core/short_bytes.h"

#include "support/random_bytes.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;

TEST(ShortBytes, ReplaceAnyStringByAnyBytes) {
    test::Noise noise(1);
    for (std::size_t before = 0; before < 40; ++before) {
        for (std::size_t size = 0; size < 40; ++size) {
            auto target = noise.bytes(before);
            auto const bytes = noise.bytes(size);
            assignBytes(target, bytes.data(), bytes.size());
            ASSERT_EQ(target, bytes) << before << ", " << size;
        }
    }
}

TEST(ShortBytes, MayBeTheStringsOwn) {
    for (std::size_t const size : {2U, 7U, 14U}) {
        for (std::size_t const length : {14U, 20U}) {
            std::string target = std::string("abcdefghijklmnopqrst").substr(0, length);
            auto const start = length - size;
            auto const expected = target.substr(start);
            assignBytes(target, target.data() + start, size);
            EXPECT_EQ(target, expected);
        }
    }
}
