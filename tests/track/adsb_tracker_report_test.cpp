// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include <modes/adsb_target_report.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvel::modes {
namespace {

using ::testing::IsEmpty;

constexpr unsigned kAddress = 0x4840D6;
constexpr unsigned long long kTime = 50'000;

std::shared_ptr<ADSBTargetReport> emptyReport(unsigned address = kAddress) {
    auto report = std::make_shared<ADSBTargetReport>();
    report->setLastUpdate(kTime);
    report->setIcaoAddress(address);
    report->setIcaoAddressValid(true);
    return report;
}

TEST(TrackerReports, AreIgnoredUnlessValid) {
    ADSBTracker tracker;
    EXPECT_FALSE(tracker.procTargetReport(nullptr));
    EXPECT_FALSE(tracker.procTargetReport(std::make_shared<ADSBTargetReport>()));
    auto const neverHeard = emptyReport();
    neverHeard->setLastUpdate(0);
    EXPECT_FALSE(tracker.procTargetReport(neverHeard));
    auto const nameless = emptyReport();
    nameless->setIcaoAddressValid(false);
    EXPECT_FALSE(tracker.procTargetReport(nameless));
    EXPECT_THAT(tracker.allTargets(), IsEmpty());
    EXPECT_EQ(tracker.getNextTrackId(), 1U);
}

TEST(TrackerReports, BringTheirNumber) {
    ADSBTracker tracker;
    auto const report = emptyReport();
    report->setTrackId(77);
    report->setTrackIdValid(true);
    auto const target = tracker.procTargetReport(report);
    ASSERT_TRUE(target);
    EXPECT_EQ(tracker.findTarget(kAddress), target);
    EXPECT_EQ(target->trackId(), 77U);
    EXPECT_EQ(target->lastUpdate(), kTime);
    report->setTrackIdValid(false);
    EXPECT_EQ(tracker.procTargetReport(report), target);
    EXPECT_EQ(target->trackId(), 0U);
    EXPECT_FALSE(target->trackIdValid());
    EXPECT_FALSE(tracker.killTarget(77, kAddress));
    EXPECT_TRUE(tracker.killTarget(0, kAddress));
}

TEST(TrackerReports, TakeANumberForANewTargetBeforeTheirOwn) {
    ADSBTracker tracker;
    auto const report = emptyReport();
    report->setTrackId(3);
    report->setTrackIdValid(true);
    tracker.procTargetReport(report); // took 1 first
    EXPECT_EQ(tracker.createTarget(10)->trackId(), 2U);
    EXPECT_EQ(tracker.createTarget(11)->trackId(), 4U); // 3 is in use
}

TEST(TrackerReports, AreLostWhenNoNumberIsLeft) {
    ADSBTracker tracker;
    for (unsigned i = 1; i <= 4095; ++i) tracker.createTarget(i);
    EXPECT_FALSE(tracker.procTargetReport(emptyReport()));
    EXPECT_TRUE(tracker.procTargetReport(emptyReport(77)));
}

TEST(TrackerReports, LeaveWhatTheyDoNotKnow) {
    ADSBTracker tracker;
    auto const target = tracker.procTargetReport(emptyReport());
    EXPECT_FALSE(target->callsignValid());
    EXPECT_FALSE(target->emitterCategoryValid());
    EXPECT_FALSE(target->squawkValid());
    EXPECT_FALSE(target->positionValid());
    EXPECT_FALSE(target->signalAmplitudeValid());
    EXPECT_FALSE(target->altitudeBaroValid());
    EXPECT_FALSE(target->groundSpeedValid());
    EXPECT_FALSE(target->headingValid());
    EXPECT_FALSE(target->verticalRateBaroValid());
    EXPECT_FALSE(target->groundStatusValid());
}

std::shared_ptr<ADSBTargetReport> fullReport() {
    auto report = emptyReport();
    report->setCallsign("KLM1023 ");
    report->setCallsignLastUpdate(101);
    report->setCallsignLastChange(91);
    report->setEmitterCategory(3);
    report->setEmitterCategoryLastUpdate(102);
    report->setEmitterCategoryLastChange(92);
    report->setSquawk(07700);
    report->setSquawkLastUpdate(103);
    report->setPosition(51.5, -0.425);
    report->setPositionLastUpdate(104);
    report->setSignalAmplitude(200);
    report->setSignalAmplitudeLastUpdate(105);
    report->setAltitudeBaro(18'800);
    report->setAltitudeBaroLastUpdate(106);
    report->setGroundSpeed(450.5);
    report->setGroundSpeedLastUpdate(107);
    report->setHeading(359.5);
    report->setHeadingLastUpdate(108);
    report->setVerticalRateBaro(-64);
    report->setVerticalRateBaroLastUpdate(109);
    report->setGroundStatus(true);
    report->setGroundStatusLastUpdate(110);
    return report;
}

TEST(TrackerReports, BringEveryValidItemWithItsTime) {
    ADSBTracker tracker;
    auto const target = tracker.procTargetReport(fullReport());
    ASSERT_TRUE(target);
    EXPECT_EQ(target->callsign(), "KLM1023 ");
    EXPECT_EQ(target->callsignLastUpdate(), 101U);
    EXPECT_EQ(target->callsignLastChange(), 91U);
    EXPECT_EQ(target->emitterCategory(), 3);
    EXPECT_EQ(target->emitterCategoryLastUpdate(), 102U);
    EXPECT_EQ(target->emitterCategoryLastChange(), 92U);
    EXPECT_EQ(target->squawk(), 07700U);
    EXPECT_EQ(target->squawkLastUpdate(), 103U);
    EXPECT_EQ(target->squawkLastChange(), 103U);
    EXPECT_EQ(target->latitude(), 51.5);
    EXPECT_EQ(target->longitude(), -0.425);
    EXPECT_EQ(target->positionLastUpdate(), 104U);
    EXPECT_EQ(target->signalAmplitude(), 200);
    EXPECT_EQ(target->signalAmplitudeLastUpdate(), 105U);
    EXPECT_EQ(target->altitudeBaro(), 18'800);
    EXPECT_EQ(target->altitudeBaroLastUpdate(), 106U);
    EXPECT_EQ(target->groundSpeed(), 450.5);
    EXPECT_EQ(target->groundSpeedLastUpdate(), 107U);
    EXPECT_EQ(target->verticalRateBaro(), -64);
    EXPECT_EQ(target->verticalRateBaroLastUpdate(), 109U);
    EXPECT_EQ(target->groundStatus(), ADSBTarget::ON_GROUND);
    EXPECT_EQ(target->groundStatusLastUpdate(), 110U);
}

// Deliberate: the heading's own time is not used.
TEST(TrackerReports, StampTheHeadingWithTheirOwnTime) {
    ADSBTracker tracker;
    auto const target = tracker.procTargetReport(fullReport());
    EXPECT_EQ(target->heading(), 359.5);
    EXPECT_TRUE(target->headingValid());
    EXPECT_EQ(target->headingLastUpdate(), kTime);
}

TEST(TrackerReports, MeanAirborneWhenNotOnGround) {
    ADSBTracker tracker;
    auto const report = emptyReport();
    report->setGroundStatus(false);
    report->setGroundStatusLastUpdate(110);
    EXPECT_EQ(tracker.procTargetReport(report)->groundStatus(), ADSBTarget::AIRBORNE);
}

TEST(TrackerReports, BringNoVersionNoQualityNoSpiAndNoCounts) {
    ADSBTracker tracker;
    auto const report = fullReport();
    report->setMopsVersion(MOPS_V2);
    report->setMopsVersionConfirmed(true);
    report->setNUCp(7);
    report->setNUCpValid(true);
    report->setNUCpLastUpdate(100);
    report->setNICSuppA(true);
    report->setNICSuppAValid(true);
    report->setSpiStatus(true);
    report->setSpiStatusValid(true);
    report->setAlertStatus(true);
    report->setAlertStatusValid(true);
    auto const target = tracker.procTargetReport(report);
    EXPECT_EQ(target->mopsVersion(), MOPS_V0);
    EXPECT_TRUE(target->mopsVersionAssumed());
    EXPECT_FALSE(target->nucpValid());
    EXPECT_FALSE(target->nicSupplementA());
    EXPECT_FALSE(target->spiStatusValid());
    EXPECT_FALSE(target->alertStatusValid());
    EXPECT_FALSE(target->statisticValid());
}

TEST(TrackerReports, GoThroughTheAltitudeCheck) {
    ADSBTracker tracker;
    tracker.setAltituteBaroChecking(true, 4, 150);
    auto const target = tracker.createTarget(kAddress);
    target->setAltitudeBaro(10'000, 100);
    tracker.procTargetReport(fullReport()); // 18800 ft, 6 ms later
    EXPECT_EQ(target->altitudeBaro(), 10'000);
}

} // namespace
} // namespace quorvel::modes
