// SPDX-License-Identifier: MIT
#include <modes/adsb_target.h>
#include <modes/adsb_target_report.h>

#include <gtest/gtest.h>

namespace quorvel::modes {
namespace {

TEST(TargetSnapshot, TellsTheVersionOfTheTarget) {
    for (auto const version : {MOPS_V0, MOPS_V1, MOPS_V2, MOPS_UNKNOWN}) {
        ADSBTarget target{0x4840D6};
        target.setMOPSVersion(version, 100);
        EXPECT_EQ(target.report()->mopsVersion(), version);
    }
}

TEST(TargetSnapshot, OfANewTargetHoldsTheAddressOnly) {
    auto const report = ADSBTarget{0x4840D6}.report();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->icaoAddress(), 0x4840D6U);
    EXPECT_TRUE(report->icaoAddressValid());
    EXPECT_FALSE(report->valid());
    EXPECT_FALSE(report->trackIdValid());
    EXPECT_FALSE(report->callsignValid());
    EXPECT_FALSE(report->emitterCategoryValid());
    EXPECT_FALSE(report->squawkValid());
    EXPECT_FALSE(report->positionValid());
    EXPECT_FALSE(report->signalAmplitudeValid());
    EXPECT_FALSE(report->altitudeBaroValid());
    EXPECT_FALSE(report->groundSpeedValid());
    EXPECT_FALSE(report->headingValid());
    EXPECT_FALSE(report->verticalRateBaroValid());
    EXPECT_FALSE(report->groundStatusValid());
    EXPECT_FALSE(report->spiStatusValid());
    EXPECT_FALSE(report->alertStatusValid());
    EXPECT_EQ(report->mopsVersion(), MOPS_V0);
    EXPECT_FALSE(report->mopsVersionConfirmed());
    EXPECT_FALSE(report->nucpValid() || report->nucrValid() || report->nicValid());
    EXPECT_FALSE(report->nicSuppAValid() || report->nicSuppBValid() || report->nicSuppCValid());
    EXPECT_FALSE(report->picValid() || report->nacpValid() || report->silValid());
    EXPECT_FALSE(ADSBTarget{0}.report()->icaoAddressValid());
}

TEST(TargetSnapshot, CarriesIdentityWithItsTimes) {
    ADSBTarget target{0x4840D6};
    target.setLastUpdate(99);
    target.setCallsign("KLM1023 ", 200, 100);
    target.setEmitterCategory(3, 201, 101);
    target.setSquawk(01000, 102);
    target.setSquawk(01000, 202);
    auto const report = target.report();
    EXPECT_EQ(report->lastUpdate(), 99U);
    EXPECT_TRUE(report->valid());
    EXPECT_EQ(report->callsign(), "KLM1023 ");
    EXPECT_TRUE(report->callsignValid());
    EXPECT_EQ(report->callsignLastUpdate(), 200U);
    EXPECT_EQ(report->callsignLastChange(), 100U);
    EXPECT_EQ(report->emitterCategory(), 3);
    EXPECT_TRUE(report->emitterCategoryValid());
    EXPECT_EQ(report->emitterCategoryLastUpdate(), 201U);
    EXPECT_EQ(report->emitterCategoryLastChange(), 101U);
    EXPECT_EQ(report->squawk(), 01000U);
    EXPECT_TRUE(report->squawkValid());
    EXPECT_EQ(report->squawkLastUpdate(), 202U);
    EXPECT_EQ(report->squawkLastChange(), 102U);
}

TEST(TargetSnapshot, CarriesMotionWithItsTimes) {
    ADSBTarget target{1};
    target.setPosition(51.5, -0.425, 100);
    target.setSignalAmplitude(200, 101);
    target.setAltitudeBaro(-975, 102);
    target.setGroundSpeed(450.5, 103);
    target.setHeading(359.5, 104);
    target.setVerticalRateBaro(-64, 105);
    auto const report = target.report();
    EXPECT_EQ(report->latitude(), 51.5);
    EXPECT_EQ(report->longitude(), -0.425);
    EXPECT_TRUE(report->positionValid());
    EXPECT_EQ(report->positionLastUpdate(), 100U);
    EXPECT_EQ(report->signalAmplitude(), 200);
    EXPECT_TRUE(report->signalAmplitudeValid());
    EXPECT_EQ(report->signalAmplitudeLastUpdate(), 101U);
    EXPECT_EQ(report->altitudeBaro(), -975);
    EXPECT_TRUE(report->altitudeBaroValid());
    EXPECT_EQ(report->altitudeBaroLastUpdate(), 102U);
    EXPECT_EQ(report->groundSpeed(), 450.5);
    EXPECT_TRUE(report->groundSpeedValid());
    EXPECT_EQ(report->groundSpeedLastUpdate(), 103U);
    EXPECT_EQ(report->heading(), 359.5);
    EXPECT_TRUE(report->headingValid());
    EXPECT_EQ(report->headingLastUpdate(), 104U);
    EXPECT_EQ(report->verticalRateBaro(), -64);
    EXPECT_TRUE(report->verticalRateBaroValid());
    EXPECT_EQ(report->verticalRateBaroLastUpdate(), 105U);
}

TEST(TargetSnapshot, CarriesStatusWithItsTimes) {
    ADSBTarget target{1};
    target.setGroundStatus(ADSBTarget::ON_GROUND, 100);
    target.setGroundStatus(ADSBTarget::ON_GROUND, 200);
    target.setSpi(true, 101);
    target.setSpi(true, 201);
    target.setAlert(true, 102);
    target.setAlert(true, 202);
    target.setMOPSVersionConfirmed(103);
    target.setMOPSVersion(MOPS_V0, 203);
    auto const report = target.report();
    EXPECT_TRUE(report->groundStatus());
    EXPECT_TRUE(report->groundStatusValid());
    EXPECT_EQ(report->groundStatusLastUpdate(), 200U);
    EXPECT_EQ(report->groundStatusLastChange(), 100U);
    EXPECT_TRUE(report->spiStatus());
    EXPECT_TRUE(report->spiStatusValid());
    EXPECT_EQ(report->spiStatusLastUpdate(), 201U);
    EXPECT_EQ(report->spiStatusLastChange(), 101U);
    EXPECT_TRUE(report->alertStatus());
    EXPECT_TRUE(report->alertStatusValid());
    EXPECT_EQ(report->alertStatusLastUpdate(), 202U);
    EXPECT_EQ(report->alertStatusLastChange(), 102U);
    EXPECT_EQ(report->mopsVersion(), MOPS_V0);
    EXPECT_TRUE(report->mopsVersionConfirmed());
    EXPECT_EQ(report->mopsVersionLastUpdate(), 203U);
    EXPECT_EQ(report->mopsVersionLastChange(), 103U);
}

TEST(TargetSnapshot, CarriesQualityWithItsTimes) {
    ADSBTarget target{1};
    target.setMOPSVersion(MOPS_V2, 10);
    for (unsigned long long const time : {100ULL, 200ULL}) {
        target.setNUCp(7, time);
        target.setNIC(8, time + 1);
        target.setPIC(11, time + 2);
        target.setNACp(9, time + 3);
        target.setSIL(3, time + 4);
    }
    target.setNICSupplementA(true, 301);
    target.setNICSupplementB(true, 302);
    target.setNICSupplementC(true, 303);
    auto const report = target.report();
    EXPECT_EQ(report->nucp(), 7);
    EXPECT_TRUE(report->nucpValid());
    EXPECT_EQ(report->nucpLastUpdate(), 200U);
    EXPECT_EQ(report->nucpLastChange(), 100U);
    EXPECT_EQ(report->nic(), 8);
    EXPECT_TRUE(report->nicValid());
    EXPECT_EQ(report->nicLastUpdate(), 201U);
    EXPECT_EQ(report->nicLastChange(), 101U);
    EXPECT_EQ(report->pic(), 11);
    EXPECT_TRUE(report->picValid());
    EXPECT_EQ(report->picLastUpdate(), 202U);
    EXPECT_EQ(report->picLastChange(), 102U);
    EXPECT_EQ(report->nacp(), 9);
    EXPECT_TRUE(report->nacpValid());
    EXPECT_EQ(report->nacpLastUpdate(), 203U);
    EXPECT_EQ(report->nacpLastChange(), 103U);
    EXPECT_EQ(report->sil(), 3);
    EXPECT_TRUE(report->silValid());
    EXPECT_EQ(report->silLastUpdate(), 204U);
    EXPECT_EQ(report->silLastChange(), 104U);
    EXPECT_TRUE(report->nicSuppA() && report->nicSuppAValid());
    EXPECT_EQ(report->nicSuppALastUpdate(), 301U);
    EXPECT_TRUE(report->nicSuppB() && report->nicSuppBValid());
    EXPECT_EQ(report->nicSuppBLastUpdate(), 302U);
    EXPECT_TRUE(report->nicSuppC() && report->nicSuppCValid());
    EXPECT_EQ(report->nicSuppCLastUpdate(), 303U);
}

// Deliberate: the value of one item with the validity and times of another.
TEST(TargetSnapshot, CarriesNUCpWhereNUCrBelongs) {
    ADSBTarget target{1};
    target.setNUCp(7, 100);
    target.setNUCr(3, 200);
    target.setNUCr(3, 300);
    auto const report = target.report();
    EXPECT_EQ(report->nucr(), 7);
    EXPECT_TRUE(report->nucrValid());
    EXPECT_EQ(report->nucrLastUpdate(), 300U);
    EXPECT_EQ(report->nucrLastChange(), 200U);

    ADSBTarget unheard{1};
    unheard.setNUCp(7, 100);
    EXPECT_EQ(unheard.report()->nucr(), 7);
    EXPECT_FALSE(unheard.report()->nucrValid());
}

TEST(TargetSnapshot, JudgesTheCallsignByItsTextAlone) {
    ADSBTarget target{1};
    target.setCallsign("", 100);
    EXPECT_TRUE(target.callsignValid());
    EXPECT_FALSE(target.report()->callsignValid());
    target.setCallsign("KLM1023 ", 200, 0);
    EXPECT_FALSE(target.callsignValid());
    EXPECT_TRUE(target.report()->callsignValid());
}

TEST(TargetSnapshot, KnowsOnlyGroundOrNot) {
    ADSBTarget target{1};
    for (auto const status : {ADSBTarget::AIRBORNE, ADSBTarget::UNKNOWN}) {
        target.setGroundStatus(status, 100);
        EXPECT_FALSE(target.report()->groundStatus());
        EXPECT_TRUE(target.report()->groundStatusValid());
    }
}

TEST(TargetSnapshot, OverridesWhatTheReportWouldJudge) {
    ADSBTarget target{1};
    target.setSquawk(0, 100);
    target.setSignalAmplitude(0, 100);
    target.setPosition(123.0, 0.0, 100);
    auto const report = target.report();
    EXPECT_TRUE(report->squawkValid());
    EXPECT_TRUE(report->signalAmplitudeValid());
    EXPECT_TRUE(report->positionValid());
    EXPECT_FALSE(report->altitudeBaroValid());
}

TEST(TargetSnapshot, IsACopy) {
    ADSBTarget target{1};
    target.setSquawk(07500, 100);
    auto const report = target.report();
    target.setAltitudeBaro(1000, 200);
    EXPECT_FALSE(report->altitudeBaroValid());
    EXPECT_NE(target.report(), target.report());
}

} // namespace
} // namespace quorvel::modes
