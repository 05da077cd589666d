// SPDX-License-Identifier: MIT
#include <modes/adsb_target.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quorvel::modes {
namespace {

constexpr MOPSVersion kNegativeVersion = static_cast<MOPSVersion>(0xFFFFFFFF);
constexpr MOPSVersion kVersionFour = static_cast<MOPSVersion>(4);

// NUCp, NIC, PIC, NACp, SIL.
std::array<int, 5> qualityOf(ADSBTarget const& target) {
    return {target.nucp(), target.nic(), target.pic(), target.nacp(), target.sil()};
}
std::array<unsigned long long, 5> updatesOf(ADSBTarget const& target) {
    return {target.nucpLastUpdate(), target.nicLastUpdate(), target.picLastUpdate(), target.nacpLastUpdate(),
        target.silLastUpdate()};
}
std::array<unsigned long long, 5> changesOf(ADSBTarget const& target) {
    return {target.nucpLastChange(), target.nicLastChange(), target.picLastChange(), target.nacpLastChange(),
        target.silLastChange()};
}

ADSBTarget withQuality(MOPSVersion version) {
    ADSBTarget target{1};
    target.setMOPSVersion(version, 10);
    target.setNUCp(1, 20);
    target.setNIC(2, 20);
    target.setPIC(3, 20);
    target.setNACp(4, 20);
    target.setSIL(3, 20);
    return target;
}

TEST(ADSBTargetVersion, ChangesWithADifferentVersionOnly) {
    ADSBTarget target{1};
    target.setMOPSVersion(MOPS_V0, 100);
    EXPECT_EQ(target.mopsVersionLastUpdate(), 100U);
    EXPECT_EQ(target.mopsVersionLastChange(), 0U);
    target.setMOPSVersion(MOPS_V2, 200);
    EXPECT_EQ(target.mopsVersion(), MOPS_V2);
    EXPECT_EQ(target.mopsVersionLastUpdate(), 200U);
    EXPECT_EQ(target.mopsVersionLastChange(), 200U);
    target.setMOPSVersion(MOPS_V2, 300);
    EXPECT_EQ(target.mopsVersionLastUpdate(), 300U);
    EXPECT_EQ(target.mopsVersionLastChange(), 200U);
    EXPECT_TRUE(target.mopsVersionAssumed());
}

TEST(ADSBTargetVersion, KeepsTheQualityWithTheSameVersionAndClearsItWithAnother) {
    auto target = withQuality(MOPS_V1);
    target.setMOPSVersion(MOPS_V1, 30);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{1, 2, 3, 4, 3}));
    target.setMOPSVersion(MOPS_V2, 40);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{}));
    EXPECT_EQ(updatesOf(target), (std::array<unsigned long long, 5>{}));
    EXPECT_EQ(changesOf(target), (std::array<unsigned long long, 5>{}));
}

TEST(ADSBTargetVersion, KeepsNUCrAndTheSupplementsWhenItChanges) {
    ADSBTarget target{1};
    target.setNUCr(3, 20);
    target.setNICSupplementA(true, 21);
    target.setNICSupplementB(true, 22);
    target.setNICSupplementC(true, 23);
    target.setMOPSVersion(MOPS_V2, 40);
    EXPECT_EQ(target.nucr(), 3);
    EXPECT_EQ(target.nucrLastUpdate(), 20U);
    EXPECT_EQ(target.nucrLastChange(), 20U);
    EXPECT_TRUE(target.nicSupplementA());
    EXPECT_EQ(target.nicSuppALastUpdate(), 21U);
    EXPECT_TRUE(target.nicSupplementB());
    EXPECT_EQ(target.nicSuppBLastUpdate(), 22U);
    EXPECT_TRUE(target.nicSupplementC());
    EXPECT_EQ(target.nicSuppCLastUpdate(), 23U);
}

TEST(ADSBTargetVersion, IsConfirmedAndAssumedWithItsOwnTimes) {
    ADSBTarget target{1};
    target.setMOPSVersionAssumed(50);
    EXPECT_EQ(target.mopsVersionLastUpdate(), 50U);
    EXPECT_EQ(target.mopsVersionLastChange(), 0U);
    target.setMOPSVersionConfirmed(100);
    EXPECT_TRUE(target.mopsVersionConfirmed());
    EXPECT_FALSE(target.mopsVersionAssumed());
    EXPECT_EQ(target.mopsVersionLastChange(), 100U);
    target.setMOPSVersionConfirmed(200);
    EXPECT_EQ(target.mopsVersionLastUpdate(), 200U);
    EXPECT_EQ(target.mopsVersionLastChange(), 100U);
    target.setMOPSVersion(MOPS_V1, 250);
    EXPECT_TRUE(target.mopsVersionConfirmed());
    target.setMOPSVersionAssumed(300);
    EXPECT_TRUE(target.mopsVersionAssumed());
    EXPECT_EQ(target.mopsVersionLastUpdate(), 300U);
    EXPECT_EQ(target.mopsVersionLastChange(), 300U);
}

TEST(ADSBTargetQuality, KeepsTheChangeTimeOfItemsThatHeldZero) {
    auto target = withQuality(MOPS_V1);
    target.setPIC(0, 30);
    target.setNACp(0, 31);
    target.setSIL(0, 32);
    target.resetQualityIndicators();
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{}));
    EXPECT_EQ(updatesOf(target), (std::array<unsigned long long, 5>{}));
    EXPECT_EQ(changesOf(target), (std::array<unsigned long long, 5>{0, 0, 30, 31, 32}));
    EXPECT_FALSE(target.picValid());
    EXPECT_TRUE(target.nacpValid()); // judged by its change
    EXPECT_TRUE(target.silValid());
}

TEST(ADSBTargetQuality, ResetLeavesNUCrAndTheSupplements) {
    ADSBTarget target{1};
    target.setNUCr(3, 20);
    target.setNICSupplementA(true, 21);
    target.resetQualityIndicators();
    EXPECT_EQ(target.nucr(), 3);
    EXPECT_TRUE(target.nucrValid());
    EXPECT_TRUE(target.nicSupplementA());
    EXPECT_EQ(target.nicSuppALastUpdate(), 21U);
}

TEST(ADSBTargetQuality, TakesNUCrForVersionZeroOnly) {
    for (auto const version : {MOPS_V1, MOPS_V2, MOPS_UNKNOWN, kNegativeVersion}) {
        ADSBTarget target{1};
        target.setMOPSVersion(version, 10);
        target.setNUCr(5, 20);
        EXPECT_EQ(target.nucr(), 0);
        EXPECT_EQ(target.nucrLastUpdate(), 0U);
        EXPECT_EQ(target.nucrLastChange(), 0U);
    }
    ADSBTarget target{1};
    target.setNUCr(5, 20);
    EXPECT_EQ(target.nucr(), 5);
    EXPECT_TRUE(target.nucrValid());
    target.setMOPSVersion(MOPS_V1, 30);
    EXPECT_FALSE(target.nucrValid());
    EXPECT_EQ(target.nucr(), 5);
}

TEST(ADSBTargetQuality, JudgesTheSupplementsByTheVersion) {
    struct {
        MOPSVersion version;
        bool a, bc;
    } const rows[] = {{MOPS_V0, false, false}, {MOPS_V1, true, false}, {MOPS_V2, true, true},
        {MOPS_UNKNOWN, true, true}, {kVersionFour, true, true}, {kNegativeVersion, false, true}};
    for (auto const& row : rows) {
        ADSBTarget target{1};
        target.setMOPSVersion(row.version, 10);
        EXPECT_FALSE(target.nicSupplementAValid() || target.nicSupplementBValid() || target.nicSupplementCValid())
            << row.version;
        target.setNICSupplementA(false, 20);
        target.setNICSupplementB(false, 20);
        target.setNICSupplementC(false, 20);
        EXPECT_EQ(target.nicSupplementAValid(), row.a) << row.version;
        EXPECT_EQ(target.nicSupplementBValid(), row.bc) << row.version;
        EXPECT_EQ(target.nicSupplementCValid(), row.bc) << row.version;
    }
}

TEST(ADSBTargetQuality, StampsWhatItDerives) {
    ADSBTarget target{1};
    target.updateQualityIndicators(8, 100);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{}));
    EXPECT_EQ(updatesOf(target), (std::array<unsigned long long, 5>{100, 100, 100, 100, 100}));
    EXPECT_EQ(changesOf(target), (std::array<unsigned long long, 5>{100, 100, 100, 100, 100}));
    target.updateQualityIndicators(18, 200); // 0 again: updated, not changed
    EXPECT_EQ(updatesOf(target), (std::array<unsigned long long, 5>{200, 200, 200, 200, 200}));
    EXPECT_EQ(changesOf(target), (std::array<unsigned long long, 5>{100, 100, 100, 100, 100}));
}

TEST(ADSBTargetQuality, StoresZeroForTypeCodesThatAreNoPosition) {
    ADSBTarget target{1};
    target.setMOPSVersion(MOPS_V1, 10);
    target.updateQualityIndicators(4, 100);
    EXPECT_TRUE(target.nucpValid() && target.nicValid() && target.picValid());
    EXPECT_FALSE(target.nacpValid() || target.silValid());
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{}));
}

TEST(ADSBTargetQuality, LeavesNACpAndSILAloneFromVersionOneOn) {
    for (auto const version : {MOPS_V1, MOPS_V2}) {
        auto target = withQuality(version);
        target.updateQualityIndicators(9, 100);
        EXPECT_EQ(qualityOf(target), (std::array<int, 5>{9, 11, 14, 4, 3}));
        EXPECT_EQ(updatesOf(target), (std::array<unsigned long long, 5>{100, 100, 100, 20, 20}));
    }
}

TEST(ADSBTargetQuality, IsResetForUnknownVersions) {
    for (auto const version : {MOPS_UNKNOWN, kVersionFour, kNegativeVersion}) {
        for (unsigned typeCode = 0; typeCode < 256; ++typeCode) {
            auto target = withQuality(version);
            target.updateQualityIndicators(static_cast<unsigned char>(typeCode), 100);
            EXPECT_EQ(qualityOf(target), (std::array<int, 5>{}));
            EXPECT_EQ(updatesOf(target), (std::array<unsigned long long, 5>{}));
            EXPECT_EQ(changesOf(target), (std::array<unsigned long long, 5>{}));
        }
    }
}

TEST(ADSBTargetQuality, TellsASupplementThatIsOffFromOneNeverReceived) {
    ADSBTarget target{1};
    target.setMOPSVersion(MOPS_V2, 10);
    target.updateQualityIndicators(7, 100);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{7, 8, 11, 0, 0}));
    target.setNICSupplementA(true, 110);
    target.updateQualityIndicators(7, 120);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{7, 9, 12, 0, 0}));
    target.updateQualityIndicators(13, 130);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{4, 6, 7, 0, 0}));
    target.setNICSupplementB(false, 140);
    target.updateQualityIndicators(13, 150);
    EXPECT_EQ(qualityOf(target), (std::array<int, 5>{5, 6, 8, 0, 0}));
}

} // namespace
} // namespace quorvel::modes
