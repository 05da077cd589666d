// SPDX-License-Identifier: MIT
#include <airspace/squawk.h>

#include <gtest/gtest.h>

#include <string_view>

using namespace quorvel::airspace;

namespace {

// The pulses of the field in order; each digit is the sum of its pulses' numbers. ICAO Annex 10 Vol. IV, 3.1.2.6.7.1.
constexpr std::string_view kPulses[] = {"C1", "A1", "C2", "A2", "C4", "A4", "X", "B1", "D1", "B2", "D2", "B4", "D4"};

unsigned codeOf(unsigned field) {
    unsigned code = 0;
    for (unsigned i = 0; i < 13; ++i) {
        if ((field >> (12 - i) & 1) == 0 || kPulses[i] == "X") continue;
        auto const digit = static_cast<unsigned>(kPulses[i][0] - 'A');
        code += static_cast<unsigned>(kPulses[i][1] - '0') << (3 * (3 - digit));
    }
    return code;
}

} // namespace

TEST(Squawk, OfEveryIdentityFieldIsTheSumOfItsPulses) {
    for (unsigned field = 0; field < 8192; ++field) ASSERT_EQ(readIdentityCode(field).code, codeOf(field)) << field;
}

TEST(Squawk, IgnoresTheBitThatIsNotUsed) {
    for (unsigned field = 0; field < 8192; ++field)
        ASSERT_EQ(readIdentityCode(field).code, readIdentityCode(field ^ 0x40).code) << field;
}

TEST(Squawk, TellsItsEmergency) {
    EXPECT_EQ(Squawk{07500}.emergency(), Emergency::Unlawful);
    EXPECT_EQ(Squawk{07600}.emergency(), Emergency::Radio);
    EXPECT_EQ(Squawk{07700}.emergency(), Emergency::General);
    EXPECT_EQ(Squawk{07000}.emergency(), Emergency::None);
    EXPECT_EQ(textOf(Squawk{07500}), "7500");
}
