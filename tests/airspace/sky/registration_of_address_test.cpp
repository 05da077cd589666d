// SPDX-License-Identifier: MIT
#include "airspace/sky/registration_of_address.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace quorvel::airspace;

namespace {

std::string registration(std::uint32_t address) { return std::string(registrationOfAddress(address).text()); }

// Letters come before digits, and what is shorter before what begins with it.
bool isBefore(std::string_view one, std::string_view other) {
    auto const rank = [](char c) { return c <= '9' ? c + 100 : static_cast<int>(c); };
    return std::lexicographical_compare(
        one.begin(), one.end(), other.begin(), other.end(), [&](char a, char b) { return rank(a) < rank(b); });
}

bool isValid(std::string_view text) {
    if (text.size() < 2 || text.size() > 6 || text[0] != 'N' || text[1] < '1' || text[1] > '9') return false;
    auto const letters = text.substr(std::min(text.find_first_not_of("0123456789", 1), text.size()));
    return letters.size() <= 2 && letters.find_first_not_of("ABCDEFGHJKLMNPQRSTUVWXYZ") == letters.npos;
}

} // namespace

TEST(RegistrationOfAddress, TheUnitedStatesNumberTheirsInOrder) {
    EXPECT_EQ(registration(0xA00001), "N1");
    EXPECT_EQ(registration(0xA00002), "N1A");
    EXPECT_EQ(registration(0xA00003), "N1AA");
    EXPECT_EQ(registration(0xA0001A), "N1AZ");
    EXPECT_EQ(registration(0xA0001B), "N1B");
    EXPECT_EQ(registration(0xA00259), "N1ZZ");
    EXPECT_EQ(registration(0xA0025A), "N10");
    EXPECT_EQ(registration(0xA061D9), "N12345");
    EXPECT_EQ(registration(0xADF7C7), "N99999");
}

// Of aircraft that were heard with their registration as callsign.
TEST(RegistrationOfAddress, HeardAircraftSayTheSame) {
    EXPECT_EQ(registration(0xA00986), "N101MH");
    EXPECT_EQ(registration(0xA0B277), "N144KK");
    EXPECT_EQ(registration(0xA3204C), "N300L");
    EXPECT_EQ(registration(0xA5AA20), "N464T");
    EXPECT_EQ(registration(0xA9FA5C), "N742E");
}

TEST(RegistrationOfAddress, EveryAddressOfTheirsHasARegistrationOfItsOwn) {
    std::string last;
    for (std::uint32_t address = 0xA00001; address <= 0xADF7C7; ++address) {
        auto const text = registration(address);
        ASSERT_TRUE(isValid(text)) << text;
        ASSERT_TRUE(isBefore(last, text)) << last << " " << text;
        last = text;
    }
}

TEST(RegistrationOfAddress, OtherAddressesTellNone) {
    for (auto const address : {0U, 0xA00000U, 0xADF7C8U, 0xAFFFFFU, 0x3C6444U, 0xFFFFFFU})
        EXPECT_TRUE(registrationOfAddress(address).isEmpty()) << std::hex << address;
}
