// SPDX-License-Identifier: MIT
#include "airspace/readings/payload.h"

#include <airspace/extended_squitter.h>

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using test::Payload;

namespace {

Payload version2() { return Payload::ofType(29).with(6, 7, 1); }
Payload version1() { return Payload::ofType(29); }

TargetState stateOf(Payload const& me) { return std::get<TargetState>(readSquitterContent(me.bytes())); }
TargetStateVersion1 oldStateOf(Payload const& me) {
    return std::get<TargetStateVersion1>(readSquitterContent(me.bytes()));
}

} // namespace

// RTCA DO-260B, 2.2.3.2.7.1.3.3
TEST(TargetState, ReadsEverySelectedAltitudeAndItsSource) {
    for (unsigned code = 1; code < 2048; ++code) {
        ASSERT_EQ(stateOf(version2().with(10, 20, code)).selectedAltitudeFt, 32 * (static_cast<int>(code) - 1));
    }
    EXPECT_EQ(stateOf(version2().with(9)).selectedAltitudeFt, std::nullopt);
    EXPECT_EQ(stateOf(version2().with(9)).altitudeSource, SelectedAltitudeSource::FlightManagement);
    EXPECT_EQ(stateOf(version2()).altitudeSource, SelectedAltitudeSource::ControlPanel);
}

// RTCA DO-260B, 2.2.3.2.7.1.3.4
TEST(TargetState, ReadsEveryPressureSetting) {
    for (unsigned code = 1; code < 512; ++code)
        ASSERT_NEAR(stateOf(version2().with(21, 29, code)).pressureSettingHpa.value(), 800 + 0.8 * (code - 1), 1e-9);
    EXPECT_EQ(stateOf(version2()).pressureSettingHpa, std::nullopt);
}

// RTCA DO-260B, 2.2.3.2.7.1.3.5 to 2.2.3.2.7.1.3.7
TEST(TargetState, ReadsEverySelectedHeading) {
    for (unsigned code = 0; code < 512; ++code)
        ASSERT_EQ(stateOf(version2().with(30).with(31, 39, code)).selectedHeadingDegrees, code * 0.703125);
    EXPECT_EQ(stateOf(version2().with(31, 39, 300)).selectedHeadingDegrees, std::nullopt);
}

TEST(TargetState, HasAccuracyAndIntegrity) {
    auto const state = stateOf(version2().with(8).with(40, 43, 10).with(44).with(45, 46, 3));
    EXPECT_TRUE(state.silSupplement);
    EXPECT_EQ(state.nacP, 10);
    EXPECT_TRUE(state.isNicBaroChecked);
    EXPECT_EQ(state.sil, 3);
    auto const none = stateOf(version2());
    EXPECT_FALSE(none.silSupplement);
    EXPECT_EQ(none.nacP, 0);
    EXPECT_FALSE(none.isNicBaroChecked);
    EXPECT_EQ(none.sil, 0);
}

// RTCA DO-260B, 2.2.3.2.7.1.3.11 to 2.2.3.2.7.1.3.17
TEST(TargetState, HasEachModeIfTheirStatusBitIsSet) {
    struct {
        unsigned position;
        bool AutopilotModes::*mode;
    } const rows[] = {{48, &AutopilotModes::isEngaged}, {49, &AutopilotModes::isVnav},
        {50, &AutopilotModes::isAltitudeHold}, {52, &AutopilotModes::isApproach}, {54, &AutopilotModes::isLnav}};
    for (auto const& row : rows) {
        auto const modes = stateOf(version2().with(47).with(row.position)).modes;
        ASSERT_TRUE(modes.has_value());
        for (auto const& other : rows)
            EXPECT_EQ((*modes).*other.mode, other.position == row.position) << other.position;
        EXPECT_FALSE(stateOf(version2().with(row.position)).modes.has_value());
    }
}

TEST(TargetState, TellsOfCollisionAvoidanceWhateverTheStatusBitOfTheModes) {
    EXPECT_TRUE(stateOf(version2().with(53)).isTcasOperational);
    EXPECT_TRUE(stateOf(version2().with(47).with(53)).isTcasOperational);
    EXPECT_FALSE(stateOf(version2().with(47)).isTcasOperational);
}

// RTCA DO-260A, 2.2.3.2.7.1
TEST(TargetStateVersion1, ReadsEveryTargetAltitudeOfASource) {
    for (unsigned code = 0; code < 1024; ++code) {
        auto const altitude = oldStateOf(version1().with(8, 9, 1).with(16, 25, code)).targetAltitudeFt;
        if (code <= 1010)
            ASSERT_EQ(altitude, 100 * static_cast<int>(code) - 1000);
        else
            ASSERT_EQ(altitude, std::nullopt);
    }
    EXPECT_EQ(oldStateOf(version1().with(16, 25, 100)).targetAltitudeFt, std::nullopt);
}

TEST(TargetStateVersion1, ReadsEveryTargetDirectionOfASource) {
    for (unsigned code = 0; code < 512; ++code) {
        auto const direction = oldStateOf(version1().with(26, 27, 1).with(28, 36, code)).targetDirectionDegrees;
        if (code < 360)
            ASSERT_EQ(direction, code);
        else
            ASSERT_EQ(direction, std::nullopt);
    }
    EXPECT_EQ(oldStateOf(version1().with(28, 36, 100)).targetDirectionDegrees, std::nullopt);
}

TEST(TargetStateVersion1, HasEachCode) {
    struct {
        unsigned first, last;
        std::uint8_t TargetStateVersion1::*code;
    } const rows[] = {{8, 9, &TargetStateVersion1::verticalDataSource},
        {12, 13, &TargetStateVersion1::targetAltitudeCapability}, {14, 15, &TargetStateVersion1::verticalMode},
        {26, 27, &TargetStateVersion1::horizontalDataSource}, {38, 39, &TargetStateVersion1::horizontalMode},
        {40, 43, &TargetStateVersion1::nacP}, {45, 46, &TargetStateVersion1::sil},
        {52, 53, &TargetStateVersion1::capabilityMode}, {54, 56, &TargetStateVersion1::emergency}};
    for (auto const& row : rows) {
        auto const highest = (1U << (row.last - row.first + 1)) - 1;
        for (unsigned value = 0; value <= highest; ++value) {
            auto const state = oldStateOf(version1().with(row.first, row.last, value));
            for (auto const& other : rows)
                EXPECT_EQ(state.*other.code, other.first == row.first ? value : 0) << other.first;
        }
    }
}

TEST(TargetStateVersion1, HasEachFlag) {
    EXPECT_TRUE(oldStateOf(version1().with(10)).isMeanSeaLevel);
    EXPECT_TRUE(oldStateOf(version1().with(37)).isDirectionTrack);
    EXPECT_TRUE(oldStateOf(version1().with(44)).isNicBaroChecked);
    auto const none = oldStateOf(version1());
    EXPECT_FALSE(none.isMeanSeaLevel || none.isDirectionTrack || none.isNicBaroChecked);
}
