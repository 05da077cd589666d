// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_operational_status_message.h>

#include "support/captured_log.h"
#include "support/temporary_folder.h"
#include "track/replies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvel::modes {
namespace {

using namespace test;
using ::testing::IsEmpty;

constexpr unsigned kAddress = 0x4840D6;
constexpr unsigned long long kTime = 1'700'000'000'000;

// Squitters of one aircraft, a second apart.
class OneAircraft {
public:
    std::shared_ptr<ADSBTarget> send(std::string const& payload) {
        return tracker.procModeSMsg(squitterReply(kAddress, payload, time += 1000));
    }
    std::shared_ptr<ADSBTarget> send(std::string const& payload, int times) {
        for (int i = 1; i < times; ++i) send(payload);
        return send(payload);
    }

    ADSBTracker tracker;
    unsigned long long time = kTime;
};

std::string const kIdentification = identification("KLM1023");
std::string const kAircraftStatus = payload(28, 1);

TEST(TrackerVersion, IsConfirmedAsZeroOnThe21stSquitterWithoutStatus) {
    OneAircraft aircraft;
    auto const target = aircraft.send(kIdentification, 19);
    CapturedLog log;
    aircraft.send(airbornePosition({}));
    EXPECT_EQ(target->statisticDfMsgCount(DFMessage::DF17), 20U);
    EXPECT_TRUE(target->mopsVersionAssumed());
    EXPECT_THAT(log.take(), IsEmpty());
    aircraft.send(kIdentification);
    EXPECT_TRUE(target->mopsVersionConfirmed());
    EXPECT_EQ(target->mopsVersion(), MOPS_V0);
    EXPECT_EQ(target->mopsVersionLastChange(), aircraft.time);
    EXPECT_EQ(target->mopsVersionLastUpdate(), aircraft.time);
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTracker", "Track #1 MOPS version 0 confirmed."));
    aircraft.send(kIdentification);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(target->mopsVersionLastUpdate(), aircraft.time - 1000); // nothing more to say
}

TEST(TrackerVersion, IsNotConfirmedBySquittersThatCannotBeDecoded) {
    OneAircraft aircraft;
    aircraft.send(payload(0), 30);
    auto const target = aircraft.send(kIdentification, 20);
    EXPECT_TRUE(target->mopsVersionAssumed());
    aircraft.send(payload(0));
    EXPECT_TRUE(target->mopsVersionAssumed());
    aircraft.send(kIdentification);
    EXPECT_TRUE(target->mopsVersionConfirmed());
}

TEST(TrackerVersion, IsNotConfirmedByOtherReplies) {
    OneAircraft aircraft;
    for (int i = 0; i < 30; ++i) {
        aircraft.tracker.procModeSMsg(reply<DF4Message>(shortFrame(4, altitudeCode(1000), kAddress), kTime));
    }
    EXPECT_TRUE(aircraft.send(kIdentification)->mopsVersionAssumed());
}

TEST(TrackerVersion, StoresNoNACpAndNoSILOfStatusMessages) {
    for (unsigned const version : {1U, 2U}) {
        OneAircraft aircraft;
        auto const status = withBits(withBits(withBits(payload(31), 40, 3, version), 44, 4, 9), 50, 2, 3);
        aircraft.send(kIdentification);
        auto const target = aircraft.send(status, 3);
        EXPECT_EQ(target->statisticADSBMsgCount(ADSBMessage::OP_STATUS), 3U);
        EXPECT_FALSE(target->nacpValid() || target->silValid()) << version;
        EXPECT_EQ(target->nacp() + target->sil(), 0) << version;
    }
}

TEST(TrackerVersion, StaysAssumedAfterAnyStatusMessage) {
    OneAircraft aircraft;
    aircraft.send(kAircraftStatus);
    auto const target = aircraft.send(kIdentification, 40);
    EXPECT_TRUE(target->mopsVersionAssumed());
}

TEST(TrackerVersion, StaysAssumedAfterAnOperationalOrTargetStatusMessage) {
    for (auto const type : {ADSBMessage::OP_STATUS, ADSBMessage::TG_STATUS}) {
        OneAircraft aircraft;
        auto const target = aircraft.send(kIdentification);
        target->increaseStatistic(type, kTime);
        aircraft.send(kIdentification, 40);
        EXPECT_TRUE(target->mopsVersionAssumed()) << type;
    }
}

// The status message itself is counted after the version has been looked at: the next squitter shows it.
TEST(TrackerVersion, FallsBackToAssumedAfterAStatusMessage) {
    OneAircraft aircraft;
    auto const target = aircraft.send(kIdentification, 21);
    ASSERT_TRUE(target->mopsVersionConfirmed());
    aircraft.send(kAircraftStatus);
    EXPECT_TRUE(target->mopsVersionConfirmed());
    aircraft.send(kIdentification);
    EXPECT_TRUE(target->mopsVersionAssumed());
    EXPECT_EQ(target->mopsVersionLastChange(), aircraft.time);
    aircraft.send(kIdentification, 40);
    EXPECT_TRUE(target->mopsVersionAssumed());
    EXPECT_EQ(target->mopsVersion(), MOPS_V0);
}

TEST(TrackerVersion, FallsBackToAssumedAfterATargetStateMessageButNotAfterOperationalStatus) {
    OneAircraft aircraft;
    auto const target = aircraft.send(kIdentification, 21);
    target->increaseStatistic(ADSBMessage::OP_STATUS, kTime);
    aircraft.send(kIdentification);
    EXPECT_TRUE(target->mopsVersionConfirmed());
    target->increaseStatistic(ADSBMessage::TG_STATUS, kTime);
    aircraft.send(kIdentification);
    EXPECT_TRUE(target->mopsVersionAssumed());
}

TEST(TrackerVersion, OfConfirmedLaterVersionsIsNotInferredFromCounts) {
    OneAircraft aircraft;
    auto const target = aircraft.send(operationalStatus(2));
    aircraft.send(kAircraftStatus);
    aircraft.send(kIdentification, 40);
    EXPECT_EQ(target->mopsVersion(), MOPS_V2);
    EXPECT_TRUE(target->mopsVersionConfirmed());
}

TEST(TrackerVersion, ComesFromOperationalStatus) {
    struct {
        unsigned version;
        MOPSVersion believed;
        bool confirmed;
    } const rows[] = {{1, MOPS_V1, true}, {2, MOPS_V2, true}, {3, MOPS_V2, false}, {4, MOPS_V2, false},
        {5, MOPS_V2, false}, {6, MOPS_V2, false}, {7, MOPS_V2, false}};
    for (auto const& row : rows) {
        OneAircraft aircraft;
        auto const target = aircraft.send(operationalStatus(row.version, true));
        EXPECT_EQ(target->mopsVersion(), row.believed) << row.version;
        EXPECT_EQ(target->mopsVersionConfirmed(), row.confirmed) << row.version;
        EXPECT_EQ(target->mopsVersionLastUpdate(), aircraft.time);
        EXPECT_EQ(target->mopsVersionLastChange(), aircraft.time);
        EXPECT_TRUE(target->nicSupplementA());
        EXPECT_EQ(target->nicSuppALastUpdate(), aircraft.time);
        EXPECT_EQ(target->statisticADSBMsgCount(ADSBMessage::OP_STATUS), 1U);
    }
}

TEST(TrackerVersion, OfAnOperationalStatusOfVersionZeroIsNotLearntFromASquitter) {
    OneAircraft aircraft;
    auto const target = aircraft.send(operationalStatus(0, true));
    EXPECT_TRUE(target->mopsVersionAssumed());
    EXPECT_EQ(target->nicSuppALastUpdate(), 0U);
    EXPECT_EQ(target->statisticDfMsgCount(), 0U);
}

TEST(TrackerVersion, OfAHandedOverStatusMessageOfVersionZeroIsConfirmed) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    target->setMOPSVersion(MOPS_V2, 1);
    auto const message = std::make_shared<ADSBAircraftOperationalStatusMessage>();
    message->setTimeStamp(kTime);
    tracker.procADSBAircraftOperationalStatusMsg(target, message);
    EXPECT_EQ(target->mopsVersion(), MOPS_V0);
    EXPECT_TRUE(target->mopsVersionConfirmed());
    EXPECT_EQ(target->nicSuppALastUpdate(), kTime);
}

TEST(TrackerVersion, ClearsTheQualityWhenItChangesUntilTheNextPosition) {
    OneAircraft aircraft;
    auto const target = aircraft.send(airbornePosition({}));
    EXPECT_EQ(target->nic(), 8);
    aircraft.send(operationalStatus(2));
    EXPECT_FALSE(
        target->nicValid() || target->nucpValid() || target->picValid() || target->nacpValid() || target->silValid());
    aircraft.send(airbornePosition({0, 0, false, 0, true}));
    EXPECT_EQ(target->nic(), 9);
    EXPECT_FALSE(target->silValid());
}

TEST(TrackerVersion, FallsBackToAssumedWithAStatusOfANewerVersion) {
    OneAircraft aircraft;
    auto const target = aircraft.send(operationalStatus(1));
    EXPECT_TRUE(target->mopsVersionConfirmed());
    aircraft.send(operationalStatus(3));
    EXPECT_EQ(target->mopsVersion(), MOPS_V2);
    EXPECT_TRUE(target->mopsVersionAssumed());
}

std::string const kDatabase = "icao_addr,mops_version,airline\n4840D6,2,KLM\n3C6586,1,DLH\n";

TEST(TrackerVersion, ComesFromTheDatabaseBeforeThePayloadIsDecoded) {
    TemporaryFolder const folder;
    OneAircraft aircraft;
    aircraft.tracker.setAircraftDbFile(folder.write("aircraft.csv", kDatabase));
    CapturedLog log;
    auto const target = aircraft.send(airbornePosition({0, 0, false, 0, true}));
    EXPECT_EQ(target->mopsVersion(), MOPS_V2);
    EXPECT_TRUE(target->mopsVersionConfirmed());
    EXPECT_EQ(target->mopsVersionLastChange(), aircraft.time);
    EXPECT_TRUE(target->nicSupplementB()); // decoded as version 2
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTracker", "Track #1 confirms MOPS version 2 from aircraft DB."));
    aircraft.send(airbornePosition({}));
    EXPECT_THAT(log.take(), IsEmpty()); // confirmed once
}

TEST(TrackerVersion, ComesFromTheDatabaseEvenIfThePayloadCannotBeDecoded) {
    TemporaryFolder const folder;
    OneAircraft aircraft;
    aircraft.tracker.setAircraftDbFile(folder.write("aircraft.csv", kDatabase));
    EXPECT_TRUE(aircraft.send(payload(0))->mopsVersionConfirmed());
}

TEST(TrackerVersion, ComesFromTheDatabaseWheneverItIsAssumed) {
    TemporaryFolder const folder;
    OneAircraft aircraft;
    aircraft.tracker.setAircraftDbFile(folder.write("aircraft.csv", "icao_addr,mops_version,airline\n4840D6,1,\n"));
    auto const target = aircraft.send(operationalStatus(3));
    EXPECT_EQ(target->mopsVersion(), MOPS_V2);
    EXPECT_TRUE(target->mopsVersionAssumed());
    CapturedLog log;
    aircraft.send(kIdentification);
    EXPECT_EQ(target->mopsVersion(), MOPS_V1);
    EXPECT_TRUE(target->mopsVersionConfirmed());
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTracker", "Track #1 confirms MOPS version 1 from aircraft DB."));
}

TEST(TrackerVersion, OfTheDatabaseIsOverruledByOperationalStatus) {
    TemporaryFolder const folder;
    OneAircraft aircraft;
    aircraft.tracker.setAircraftDbFile(folder.write("aircraft.csv", kDatabase));
    auto const target = aircraft.send(operationalStatus(1));
    EXPECT_EQ(target->mopsVersion(), MOPS_V1);
    EXPECT_TRUE(target->mopsVersionConfirmed());
}

TEST(TrackerVersion, IsForTheDatabaseToRememberWhenTheTargetIsKilled) {
    OneAircraft aircraft;
    aircraft.send(operationalStatus(2));
    aircraft.tracker.killTargets(aircraft.time);
    CapturedLog log;
    auto const again = aircraft.send(kIdentification);
    EXPECT_EQ(again->trackId(), 2U);
    EXPECT_EQ(again->mopsVersion(), MOPS_V2);
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTracker", "Track #2 confirms MOPS version 2 from aircraft DB."));
}

template <class Message> bool is(std::shared_ptr<ADSBMessage> const& message) {
    return std::dynamic_pointer_cast<Message>(message) != nullptr;
}

TEST(TrackerPayloads, AreDecodedForTheVersionThatIsKnown) {
    TemporaryFolder const folder;
    ADSBTracker tracker;
    tracker.setAircraftDbFile(folder.write("aircraft.csv", kDatabase));
    auto const position = airbornePosition({});
    EXPECT_TRUE(is<ADSBAirbornePositionMessageV0>(tracker.decodeADSBMsg(0x123456, position)));
    EXPECT_TRUE(is<ADSBAirbornePositionMessageV2>(tracker.decodeADSBMsg(0x4840D6, position)));

    auto const target = tracker.createTarget(0x3C6586);
    target->setMOPSVersion(MOPS_V2, kTime); // assumed: the database knows better
    EXPECT_TRUE(is<ADSBAirbornePositionMessageV1>(tracker.decodeADSBMsg(0x3C6586, position)));
    target->setMOPSVersionConfirmed(kTime);
    EXPECT_TRUE(is<ADSBAirbornePositionMessageV2>(tracker.decodeADSBMsg(0x3C6586, position)));

    auto const unlisted = tracker.createTarget(0x123456);
    unlisted->setMOPSVersion(MOPS_V2, kTime);
    EXPECT_TRUE(is<ADSBAirbornePositionMessageV0>(tracker.decodeADSBMsg(0x123456, position)));
}

TEST(TrackerPayloads, ChangeNothing) {
    ADSBTracker tracker;
    auto const target = tracker.createTarget(kAddress);
    EXPECT_TRUE(tracker.decodeADSBMsg(kAddress, kIdentification));
    EXPECT_TRUE(tracker.decodeADSBMsg(0x123456, kIdentification));
    EXPECT_FALSE(tracker.decodeADSBMsg(kAddress, ""));
    EXPECT_FALSE(tracker.decodeADSBMsg(kAddress, kIdentification.substr(0, 6)));
    EXPECT_EQ(tracker.allTargets().size(), 1U);
    EXPECT_FALSE(target->callsignValid());
    EXPECT_EQ(target->statisticDfMsgCount(), 0U);
    EXPECT_EQ(target->lastUpdate(), 0U);
}

} // namespace
} // namespace quorvel::modes
