// SPDX-License-Identifier: MIT
#include <modes/adsb_target.h>

#include "support/captured_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace quorvel::modes {
namespace {

using test::CapturedLog;
using test::Holds;
using ::testing::IsEmpty;
using Time = unsigned long long;

constexpr unsigned kAddress = 0x4840D6;

template <class Result> using Reader = Result (ADSBTarget::*)() const;

// The items that keep the time of their last change: how to report the initial value (0) or another one (1,
// 2), and how to read them.
struct ChangeItem {
    char const* name;
    std::function<void(ADSBTarget&, int, Time)> set;
    Reader<bool> valid;
    Reader<Time> lastUpdate;
    Reader<Time> lastChange;
    bool validOnceChanged; // else: once updated
};

template <class Value> auto setter(void (ADSBTarget::*set)(Value, Time)) {
    return [set](ADSBTarget& target, int value, Time time) { (target.*set)(static_cast<Value>(value), time); };
}

void setCallsign(ADSBTarget& target, int value, Time time) {
    char const* const callsigns[] = {"", "KLM1023 ", "DLH4YA  "};
    target.setCallsign(callsigns[value], time);
}

std::vector<ChangeItem> changeItems() {
    using T = ADSBTarget;
    return {
        {"callsign", setCallsign, &T::callsignValid, &T::callsignLastUpdate, &T::callsignLastChange, true},
        {"emitter category", setter<unsigned char>(&T::setEmitterCategory), &T::emitterCategoryValid,
            &T::emitterCategoryLastUpdate, &T::emitterCategoryLastChange, true},
        {"squawk", setter(&T::setSquawk), &T::squawkValid, &T::squawkLastUpdate, &T::squawkLastChange, false},
        {"SPI", setter(&T::setSpi), &T::spiStatusValid, &T::spiStatusLastUpdate, &T::spiStatusLastChange, false},
        {"alert", setter(&T::setAlert), &T::alertStatusValid, &T::alertStatusLastUpdate, &T::alertStatusLastChange,
            false},
        {"NUCp", setter(&T::setNUCp), &T::nucpValid, &T::nucpLastUpdate, &T::nucpLastChange, false},
        {"NUCr", setter(&T::setNUCr), &T::nucrValid, &T::nucrLastUpdate, &T::nucrLastChange, false},
        {"NIC", setter(&T::setNIC), &T::nicValid, &T::nicLastUpdate, &T::nicLastChange, false},
        {"PIC", setter(&T::setPIC), &T::picValid, &T::picLastUpdate, &T::picLastChange, false},
        {"NACp", setter(&T::setNACp), &T::nacpValid, &T::nacpLastUpdate, &T::nacpLastChange, true},
        {"SIL", setter(&T::setSIL), &T::silValid, &T::silLastUpdate, &T::silLastChange, true},
    };
}

void expectTimes(ADSBTarget const& target, ChangeItem const& item, Time update, Time change) {
    EXPECT_EQ((target.*item.lastUpdate)(), update) << item.name;
    EXPECT_EQ((target.*item.lastChange)(), change) << item.name;
}

TEST(ADSBTarget, StartsEmpty) {
    ADSBTarget const target{kAddress};
    EXPECT_EQ(target.trackId(), 0U);
    EXPECT_FALSE(target.trackIdValid());
    EXPECT_EQ(target.lastUpdate(), 0U);
    EXPECT_EQ(target.icaoAddr(), kAddress);
    EXPECT_TRUE(target.icaoAddrValid());
    EXPECT_FALSE(ADSBTarget{0}.icaoAddrValid());
    EXPECT_EQ(target.callsign(), "");
    EXPECT_EQ(target.emitterCategory(), 0);
    EXPECT_EQ(target.squawk(), 0U);
    EXPECT_FALSE(target.spiStatus());
    EXPECT_FALSE(target.alertStatus());
    for (auto const& item : changeItems()) {
        EXPECT_FALSE((target.*item.valid)()) << item.name;
        expectTimes(target, item, 0, 0);
    }
    EXPECT_FALSE(target.statisticValid());
    EXPECT_EQ(target.statisticLastUpdate(), 0U);
    EXPECT_EQ(target.statisticDfMsgCount(), 0U);
}

TEST(ADSBTarget, StartsWithoutMotion) {
    ADSBTarget const target{kAddress};
    EXPECT_EQ(target.latitude(), 0.0);
    EXPECT_EQ(target.longitude(), 0.0);
    EXPECT_FALSE(target.positionValid());
    EXPECT_EQ(target.positionLastUpdate(), 0U);
    EXPECT_EQ(target.signalAmplitude(), 0);
    EXPECT_FALSE(target.signalAmplitudeValid());
    EXPECT_EQ(target.signalAmplitudeLastUpdate(), 0U);
    EXPECT_EQ(target.altitudeBaro(), 0);
    EXPECT_FALSE(target.altitudeBaroValid());
    EXPECT_EQ(target.altitudeBaroLastUpdate(), 0U);
    EXPECT_EQ(target.groundSpeed(), 0.0);
    EXPECT_FALSE(target.groundSpeedValid());
    EXPECT_EQ(target.groundSpeedLastUpdate(), 0U);
    EXPECT_EQ(target.heading(), 0.0);
    EXPECT_FALSE(target.headingValid());
    EXPECT_EQ(target.headingLastUpdate(), 0U);
    EXPECT_EQ(target.verticalRateBaro(), 0);
    EXPECT_FALSE(target.verticalRateBaroValid());
    EXPECT_EQ(target.verticalRateBaroLastUpdate(), 0U);
    EXPECT_EQ(target.transponderCommCapability(), 0);
    EXPECT_FALSE(target.transponderCommCapabilityValid());
    EXPECT_EQ(target.transponderCommCapabilityLastUpdate(), 0U);
    EXPECT_EQ(target.groundStatus(), ADSBTarget::UNKNOWN);
    EXPECT_FALSE(target.groundStatusValid());
    EXPECT_EQ(target.groundStatusLastUpdate(), 0U);
    EXPECT_EQ(target.groundStatusLastChange(), 0U);
}

TEST(ADSBTarget, StartsAsVersionZeroWithoutQuality) {
    ADSBTarget const target{kAddress};
    EXPECT_EQ(target.mopsVersion(), MOPS_V0);
    EXPECT_FALSE(target.mopsVersionConfirmed());
    EXPECT_TRUE(target.mopsVersionAssumed());
    EXPECT_EQ(target.mopsVersionLastUpdate(), 0U);
    EXPECT_EQ(target.mopsVersionLastChange(), 0U);
    EXPECT_EQ(target.nucp(), 0);
    EXPECT_EQ(target.nucr(), 0);
    EXPECT_EQ(target.nic(), 0);
    EXPECT_EQ(target.pic(), 0);
    EXPECT_EQ(target.nacp(), 0);
    EXPECT_EQ(target.sil(), 0);
    EXPECT_FALSE(target.nicSupplementA());
    EXPECT_FALSE(target.nicSupplementAValid());
    EXPECT_EQ(target.nicSuppALastUpdate(), 0U);
    EXPECT_FALSE(target.nicSupplementB());
    EXPECT_FALSE(target.nicSupplementBValid());
    EXPECT_EQ(target.nicSuppBLastUpdate(), 0U);
    EXPECT_FALSE(target.nicSupplementC());
    EXPECT_FALSE(target.nicSupplementCValid());
    EXPECT_EQ(target.nicSuppCLastUpdate(), 0U);
}

TEST(ADSBTarget, StaysSmall) { EXPECT_LT(sizeof(ADSBTarget), 1600U); }

TEST(ADSBTarget, TakesAFirstReportOfTheInitialValueAsAChange) {
    for (auto const& item : changeItems()) {
        ADSBTarget target{kAddress};
        item.set(target, 0, 100);
        expectTimes(target, item, 100, 100);
        EXPECT_TRUE((target.*item.valid)()) << item.name;
    }
}

TEST(ADSBTarget, StampsTheChangeOfAnItemWithItsValueOnly) {
    for (auto const& item : changeItems()) {
        ADSBTarget target{kAddress};
        item.set(target, 1, 100);
        item.set(target, 1, 200);
        expectTimes(target, item, 200, 100);
        item.set(target, 0, 300);
        expectTimes(target, item, 300, 300);
        item.set(target, 0, 250); // times are taken as they come
        expectTimes(target, item, 250, 300);
    }
}

TEST(ADSBTarget, TakesTheValidityOfAnItemFromItsUpdateOrItsChange) {
    for (auto const& item : changeItems()) {
        ADSBTarget target{kAddress};
        item.set(target, 1, 100);
        item.set(target, 1, 0); // changed once, "never" updated
        expectTimes(target, item, 0, 100);
        EXPECT_EQ((target.*item.valid)(), item.validOnceChanged) << item.name;
    }
}

TEST(ADSBTarget, KeepsItsTimeAndPlainItems) {
    ADSBTarget target{kAddress};
    target.setLastUpdate(90);
    target.setPosition(51.5, -0.425, 100);
    target.setSignalAmplitude(200, 101);
    target.setAltitudeBaro(-1000, 102);
    target.setGroundSpeed(450.5, 103);
    target.setVerticalRateBaro(-64, 104);
    EXPECT_EQ(target.lastUpdate(), 90U);
    EXPECT_EQ(target.latitude(), 51.5);
    EXPECT_EQ(target.longitude(), -0.425);
    EXPECT_TRUE(target.positionValid());
    EXPECT_EQ(target.positionLastUpdate(), 100U);
    EXPECT_EQ(target.signalAmplitude(), 200);
    EXPECT_TRUE(target.signalAmplitudeValid());
    EXPECT_EQ(target.signalAmplitudeLastUpdate(), 101U);
    EXPECT_EQ(target.altitudeBaro(), -1000);
    EXPECT_TRUE(target.altitudeBaroValid());
    EXPECT_EQ(target.altitudeBaroLastUpdate(), 102U);
    EXPECT_EQ(target.groundSpeed(), 450.5);
    EXPECT_TRUE(target.groundSpeedValid());
    EXPECT_EQ(target.groundSpeedLastUpdate(), 103U);
    EXPECT_EQ(target.verticalRateBaro(), -64);
    EXPECT_TRUE(target.verticalRateBaroValid());
    EXPECT_EQ(target.verticalRateBaroLastUpdate(), 104U);
}

TEST(ADSBTarget, TakesTheValidityOfPlainItemsFromTheirUpdate) {
    ADSBTarget target{kAddress};
    target.setPosition(51.5, -0.425, 0);
    target.setSignalAmplitude(200, 0);
    target.setAltitudeBaro(-1000, 0);
    target.setGroundSpeed(450.5, 0);
    target.setVerticalRateBaro(-64, 0);
    target.setGroundStatus(ADSBTarget::AIRBORNE, 0);
    EXPECT_FALSE(target.positionValid());
    EXPECT_FALSE(target.signalAmplitudeValid());
    EXPECT_FALSE(target.altitudeBaroValid());
    EXPECT_FALSE(target.groundSpeedValid());
    EXPECT_FALSE(target.verticalRateBaroValid());
    EXPECT_FALSE(target.groundStatusValid());
}

TEST(ADSBTarget, HasAValidHeadingFromItsFirstReportOnWhateverItsTime) {
    ADSBTarget target{kAddress};
    target.setHeading(90.0, 0);
    EXPECT_TRUE(target.headingValid());
    EXPECT_EQ(target.headingLastUpdate(), 0U);
    target.setHeading(91.0, 100);
    EXPECT_EQ(target.heading(), 91.0);
    EXPECT_EQ(target.headingLastUpdate(), 100U);
}

TEST(ADSBTarget, TakesOnlyADifferentGroundStatusAsAChangeAndLogsNone) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setGroundStatus(ADSBTarget::UNKNOWN, 100);
    EXPECT_TRUE(target.groundStatusValid());
    EXPECT_EQ(target.groundStatusLastUpdate(), 100U);
    EXPECT_EQ(target.groundStatusLastChange(), 0U);
    target.setGroundStatus(ADSBTarget::ON_GROUND, 200);
    target.setGroundStatus(ADSBTarget::ON_GROUND, 300);
    EXPECT_EQ(target.groundStatus(), ADSBTarget::ON_GROUND);
    EXPECT_EQ(target.groundStatusLastUpdate(), 300U);
    EXPECT_EQ(target.groundStatusLastChange(), 200U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(ADSBTarget, LogsAChangedCallsignOnceThereWasOne) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setCallsign("", 50);
    target.setCallsign("KLM1023 ", 100);
    target.setCallsign("KLM1023 ", 200);
    EXPECT_THAT(log.take(), IsEmpty());
    target.setCallsign("KLM1024 ", 300);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", "Callsign Change old = KLM1023  new = KLM1024 "));
    EXPECT_EQ(target.callsign(), "KLM1024 ");
}

TEST(ADSBTarget, TakesTheChangeTimeOfACallsignAsGiven) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setCallsign("KLM1023 ", 100, 40);
    EXPECT_EQ(target.callsignLastUpdate(), 100U);
    EXPECT_EQ(target.callsignLastChange(), 40U);
    target.setCallsign("KLM1023 ", 200, 60);
    EXPECT_EQ(target.callsignLastUpdate(), 200U);
    EXPECT_EQ(target.callsignLastChange(), 60U);
    EXPECT_THAT(log.take(), IsEmpty());
    target.setCallsign("DLH4YA  ", 300, 0);
    EXPECT_FALSE(target.callsignValid());
    EXPECT_EQ(log.take().size(), 1U);
    target.setCallsign("DLH4YA  ", 400); // never changed: a change again, and logged as one
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", "Callsign Change old = DLH4YA   new = DLH4YA  "));
    EXPECT_EQ(target.callsignLastChange(), 400U);
}

TEST(ADSBTarget, LogsADifferentEmitterCategoryTheFirstOneIncluded) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setEmitterCategory(0, 50);
    EXPECT_THAT(log.take(), IsEmpty());
    target.setEmitterCategory(3, 100);
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTarget", "Emitter category change old = 0 new = 3"));
    target.setEmitterCategory(3, 200);
    EXPECT_THAT(log.take(), IsEmpty());
    target.setEmitterCategory(5, 300, 250);
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ADSBTarget", "Emitter category change old = 3 new = 5"));
    EXPECT_EQ(target.emitterCategory(), 5);
    EXPECT_EQ(target.emitterCategoryLastUpdate(), 300U);
    EXPECT_EQ(target.emitterCategoryLastChange(), 250U);
    target.setEmitterCategory(5, 400, 0);
    EXPECT_EQ(target.emitterCategoryLastUpdate(), 400U);
    EXPECT_FALSE(target.emitterCategoryValid());
    EXPECT_THAT(log.take(), IsEmpty());
}

// What the platform's formatting makes of a conversion that no standard knows; nothing else may come out.
std::string squawkText(unsigned before, unsigned after) {
    char text[1024];
    char const* volatile format = "Squawk Change old = %.4O new = %.4O";
    std::snprintf(text, sizeof text, format, before, after);
    return text;
}

TEST(ADSBTarget, LogsAChangedSquawkOnceThereWasOne) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setSquawk(07500, 100);
    EXPECT_THAT(log.take(), IsEmpty());
    target.setSquawk(07700, 200);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", squawkText(07500, 07700)));
    EXPECT_EQ(target.squawkLastChange(), 200U);
    target.setSquawk(07700, 300);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(target.squawk(), 07700U);
    EXPECT_EQ(target.squawkLastUpdate(), 300U);
    EXPECT_EQ(target.squawkLastChange(), 200U);
    target.setSquawk(0, 400);
    EXPECT_EQ(log.take().size(), 1U);
    target.setSquawk(01200, 500); // the code before was 0
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(ADSBTarget, LogsDifferentSpiAndAlertTheFirstIncluded) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setSpi(false, 50);
    target.setAlert(false, 50);
    EXPECT_THAT(log.take(), IsEmpty());
    target.setSpi(true, 100);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", "SPI change old = 0 new = 1"));
    target.setAlert(true, 100);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", "Alert status change old = 0 new = 1"));
    target.setSpi(true, 200);
    target.setAlert(true, 200);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_TRUE(target.spiStatus());
    EXPECT_TRUE(target.alertStatus());
    target.setSpi(false, 300);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", "SPI change old = 1 new = 0"));
    target.setAlert(false, 300);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBTarget", "Alert status change old = 1 new = 0"));
}

TEST(ADSBTarget, LogsNothingOfQualityAndVersion) {
    CapturedLog log;
    ADSBTarget target{kAddress};
    target.setMOPSVersion(MOPS_V2, 100);
    target.setMOPSVersionConfirmed(100);
    target.setNIC(8, 100);
    target.setNIC(9, 200);
    target.updateQualityIndicators(7, 300);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(ADSBTarget, CountsByFormatAndType) {
    ADSBTarget target{kAddress};
    for (unsigned format = 0; format <= 24; ++format) {
        for (unsigned i = 0; i <= format; ++i) {
            target.increaseStatistic(static_cast<DFMessage::DownlinkFormat>(format), 100 + format);
        }
    }
    EXPECT_EQ(target.statisticDfMsgCount(), 25U * 26 / 2);
    EXPECT_EQ(target.statisticLastUpdate(), 124U);
    for (unsigned type = 0; type <= 8; ++type) {
        for (unsigned i = 0; i <= type; ++i) {
            target.increaseStatistic(static_cast<ADSBMessage::ADSBMessageType>(type), 200 + type);
        }
    }
    EXPECT_TRUE(target.statisticValid());
    EXPECT_EQ(target.statisticLastUpdate(), 208U);
    for (unsigned format = 0; format <= 24; ++format) {
        EXPECT_EQ(target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(format)), format + 1);
    }
    for (unsigned type = 0; type <= 8; ++type) {
        EXPECT_EQ(target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(type)), type + 1);
    }
    target.resetStatistic();
    EXPECT_FALSE(target.statisticValid());
    EXPECT_EQ(target.statisticDfMsgCount(), 0U);
    EXPECT_EQ(target.statisticADSBMsgCount(ADSBMessage::RESERVED), 0U);
}

TEST(ADSBTarget, DoesNotCountWhatDoesNotExist) {
    ADSBTarget target{kAddress};
    for (unsigned const value : {25U, 26U, 34U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        auto const format = static_cast<DFMessage::DownlinkFormat>(value);
        auto const type = static_cast<ADSBMessage::ADSBMessageType>(value);
        target.increaseStatistic(format, 100);
        target.increaseStatistic(type, 100);
        EXPECT_EQ(target.statisticDfMsgCount(format), 0U);
        EXPECT_EQ(target.statisticADSBMsgCount(type), 0U);
    }
    EXPECT_EQ(target.statisticDfMsgCount(), 0U);
    EXPECT_EQ(target.statisticLastUpdate(), 100U);
}

TEST(ADSBTarget, CountsNoFormatForATypeThatDoesNotExist) {
    ADSBTarget target{kAddress};
    auto const beyond = static_cast<ADSBMessage::ADSBMessageType>(ADSBMessage::RESERVED + 1);
    target.increaseStatistic(beyond, 100);
    EXPECT_EQ(target.statisticDfMsgCount(), 0U);
    target.increaseStatistic(DFMessage::DF0, 100);
    EXPECT_EQ(target.statisticADSBMsgCount(beyond), 0U);
}

// Both slots start with the same empty frame, which lies where equator and zero meridian cross.
TEST(ADSBTarget, DecodesEmptyFramesToTheOriginAtNoTime) {
    ADSBTarget target{kAddress};
    target.setPosition(51.5, -0.425, 100);
    target.decodeCPRPosition();
    EXPECT_EQ(target.latitude(), 0.0);
    EXPECT_EQ(target.longitude(), 0.0);
    EXPECT_FALSE(target.positionValid());
}

} // namespace
} // namespace quorvel::modes
