// SPDX-License-Identifier: MIT
#include "inspect/known_states.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

namespace quorvel::inspect {

namespace {

using modes::test::fromHex;

airspace::Message messageOf(std::string const& hex) { return airspace::read(fromHex(hex)); }

// All of aircraft 4840D6: a callsign, its callsign with a damaged bit, and a reply with the parity of 4840D6.
constexpr char kCallsign[] = "8D4840D6202CC371C32CE0576098";
constexpr char kDamagedCallsign[] = "8D4840D620ACC371C32CE0576098";
constexpr std::uint32_t kAddress = 0x4840D6;

// Ground speed 159 kt and track 182.9 degrees of 485020.
constexpr char kVelocity[] = "8D485020994409940838175B284F";

// An altitude of 34,975 ft of a reply whose parity gives 400940.
constexpr char kAltitude[] = "2000171806A983";

} // namespace

TEST(KnownStates, LearnWhatIntactSquittersSay) {
    KnownStates states;
    states.take(messageOf(kCallsign), 100.0);
    states.take(messageOf(kVelocity), 100.0);
    EXPECT_EQ(states.at(kAddress, 5000.0).callsign->text(), "KLM1023");
    auto const state = states.at(0x485020, 115.0);
    EXPECT_NEAR(*state.groundSpeedKt, 159.2, 0.1);
    EXPECT_NEAR(*state.trackDegrees, 182.88, 0.01);
    EXPECT_EQ(state.verticalRateFtMin, -832);
}

TEST(KnownStates, ForgetMotionAfterAQuarterOfAMinuteInBothDirections) {
    KnownStates states;
    states.take(messageOf(kVelocity), 100.0);
    EXPECT_TRUE(states.at(0x485020, 85.0).trackDegrees);
    EXPECT_FALSE(states.at(0x485020, 84.9).trackDegrees);
    EXPECT_FALSE(states.at(0x485020, 115.1).trackDegrees);
}

TEST(KnownStates, LearnNothingFromDamagedSquitters) {
    KnownStates states;
    states.take(messageOf(kDamagedCallsign), 1.0);
    EXPECT_FALSE(states.isHeard(kAddress));
    EXPECT_FALSE(states.at(kAddress, 1.0).callsign);
}

TEST(KnownStates, BelieveAnAddressThatSeveralRepliesHave) {
    KnownStates states;
    auto const reply = messageOf(kAltitude);
    auto const address = airspace::headerOf(reply)->address;
    states.take(reply, 1.0);
    EXPECT_FALSE(states.isHeard(address));
    EXPECT_FALSE(states.at(address, 1.0).altitudeFt);
    states.take(reply, 2.0);
    EXPECT_TRUE(states.isHeard(address));
    EXPECT_EQ(states.at(address, 2.0).altitudeFt, std::get<airspace::AltitudeReply>(reply).altitude.altitudeFt);
}

TEST(KnownStates, KnowNothingOfOthers) {
    KnownStates const states;
    EXPECT_FALSE(states.isHeard(kAddress));
    EXPECT_FALSE(states.at(kAddress, 0.0).altitudeFt);
}

} // namespace quorvel::inspect
