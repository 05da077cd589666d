// SPDX-License-Identifier: MIT
#include "airspace/sky/track_table.h"

#include "airspace/sky/frame_receiver.h"
#include "support/frames.h"

#include <gtest/gtest.h>

#include <vector>

using namespace quorvel::airspace;
using namespace quorvel::modes::test;

namespace {

constexpr TimeMs kNoon = 43'200'000;

TrackKey keyOf(std::uint32_t address, AddressKind kind = AddressKind::Icao) {
    MessageHeader header;
    header.address = address;
    header.addressKind = kind;
    return TrackKey::of(header);
}

// A squitter of the aircraft comes. False if there is no room for it.
bool hear(TrackTable& table, std::uint32_t address, TimeMs time) {
    static FrameReceiver receiver;
    auto* const track = table.findOrMake(keyOf(address), time);
    if (track) track->take(receiver.receive(squitter(address, identification("TEST")), time), time);
    return track != nullptr;
}

} // namespace

TEST(TrackTable, ATrackIsFoundAgain) {
    TrackTable table;
    EXPECT_EQ(table.find(keyOf(0x4CA123)), nullptr);
    auto* const track = table.findOrMake(keyOf(0x4CA123), kNoon);
    ASSERT_NE(track, nullptr);
    for (std::uint32_t address = 1; address <= 10'000; ++address) table.findOrMake(keyOf(address), kNoon);
    EXPECT_EQ(table.find(keyOf(0x4CA123)), track) << "it stays where it is";
    EXPECT_EQ(table.findOrMake(keyOf(0x4CA123), kNoon), track);
    EXPECT_EQ(table.size(), 10'001U);
}

TEST(TrackTable, AddressesOfOtherKindsAreOfOthers) {
    TrackTable table;
    auto* const aircraft = table.findOrMake(keyOf(0x4CA123), kNoon);
    EXPECT_NE(table.findOrMake(keyOf(0x4CA123, AddressKind::NonIcao), kNoon), aircraft);
    auto const keys = table.keys();
    ASSERT_EQ(keys.size(), 2U);
    EXPECT_EQ(keys[0].kind(), AddressKind::Icao) << "those of states first";
}

TEST(TrackTable, SilentTracksAreDroppedAndTold) {
    TrackTable table;
    hear(table, 1, kNoon);
    hear(table, 2, kNoon + 5'000);
    std::vector<std::uint32_t> told;
    auto const tell = [&](TrackKey key, StandardTrack const& track) {
        told.push_back(key.address());
        EXPECT_EQ(track.heard(), kNoon);
    };
    EXPECT_EQ(table.dropSilent(kNoon + 1, tell), 1U);
    EXPECT_EQ(told, std::vector<std::uint32_t>{1});
    EXPECT_EQ(table.find(keyOf(1)), nullptr);
    EXPECT_NE(table.find(keyOf(2)), nullptr);
}

TEST(TrackTable, ANewTrackKnowsNothingOfTheOneThatWasThere) {
    TrackTable table;
    hear(table, 1, kNoon);
    table.drop(keyOf(1));
    auto const* const track = table.findOrMake(keyOf(2), kNoon + 1);
    EXPECT_EQ(track->messages(), 0U);
    EXPECT_FALSE(track->items().callsign.isThere());
}

TEST(TrackTable, ForgedAddressesDoNotDriveOutAircraftThatAreHeard) {
    constexpr std::size_t most = 1'000;
    TrackTable table(most);
    auto time = kNoon;
    std::uint32_t forged = 0x100000;
    for (unsigned second = 0; second < 60; ++second, time += 1'000) {
        for (std::uint32_t address = 1; address <= 100; ++address) ASSERT_TRUE(hear(table, address, time));
        for (unsigned i = 0; i < 500; ++i) hear(table, forged++, time);
        ASSERT_LE(table.size(), most);
    }
    for (std::uint32_t address = 1; address <= 100; ++address) {
        auto const* const track = table.find(keyOf(address));
        ASSERT_NE(track, nullptr);
        EXPECT_EQ(track->messages(), 60U) << "it was never dropped";
    }
}

TEST(TrackTable, AFullTableTakesNewAircraftOnceOthersAreSilent) {
    TrackTable table(100);
    for (std::uint32_t address = 1; address <= 100; ++address) hear(table, address, kNoon + address);
    EXPECT_FALSE(hear(table, 1'000, kNoon + 9'000)) << "all were heard within 10 s";
    EXPECT_TRUE(hear(table, 1'000, kNoon + 12'000));
    EXPECT_EQ(table.find(keyOf(1)), nullptr) << "silent for the longest time";
    EXPECT_NE(table.find(keyOf(100)), nullptr);
}
