// SPDX-License-Identifier: MIT
#include <modes/mops_version.h>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace quorvel::modes;

TEST(MOPSVersion, HasTheNumbersOfTheStandard) {
    EXPECT_EQ(MOPS_V0, 0U);
    EXPECT_EQ(MOPS_V1, 1U);
    EXPECT_EQ(MOPS_V2, 2U);
    EXPECT_EQ(MOPS_UNKNOWN, 3U);
    static_assert(sizeof(MOPSVersion) == 4);
}

TEST(MOPSVersion, IsReadFromDecimalText) {
    struct {
        char const* text;
        MOPSVersion version;
    } const cases[] = {
        {"0", MOPS_V0},
        {"1", MOPS_V1},
        {"2", MOPS_V2},
        {"3", MOPS_UNKNOWN},
        {"7", MOPS_UNKNOWN},
        {"-1", MOPS_UNKNOWN},
        {" 2", MOPS_V2},
        {"+1", MOPS_V1},
        {"2\r", MOPS_V2},
        {"2x", MOPS_V2},
        {"010", MOPS_UNKNOWN},
        {"2147483647", MOPS_UNKNOWN},
        {"-2147483648", MOPS_UNKNOWN},
    };
    for (auto const& [text, version] : cases) {
        auto out = version == MOPS_V0 ? MOPS_V1 : MOPS_V0;
        ConvMOPSVersion(text, out);
        EXPECT_EQ(out, version) << text;
    }
}

TEST(MOPSVersion, ThrowsForTextThatIsNoNumber) {
    auto out = MOPS_V1;
    EXPECT_THROW(ConvMOPSVersion("", out), std::invalid_argument);
    EXPECT_THROW(ConvMOPSVersion("x", out), std::invalid_argument);
    EXPECT_THROW(ConvMOPSVersion("2147483648", out), std::out_of_range);
    EXPECT_EQ(out, MOPS_V1);
}
