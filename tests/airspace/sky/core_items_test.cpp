// SPDX-License-Identifier: MIT
#include "airspace/sky/core_items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string_view>

using namespace quorvel::airspace;
using quorvel::modes::ADSBTargetReport;

namespace {

// The times of the items, a hundred for each in the order of lists: reported at 100, 200, …, changed one ms later.
constexpr TimeMs kStep = 100;

void setIdentityAndMotion(ADSBTargetReport& report, TimeMs time) {
    report.setCallsignLastUpdate(time += kStep);
    report.setCallsignLastChange(time + 1);
    report.setEmitterCategoryLastUpdate(time += kStep);
    report.setEmitterCategoryLastChange(time + 1);
    report.setSquawkLastUpdate(time += kStep);
    report.setSquawkLastChange(time + 1);
    report.setPositionLastUpdate(time += kStep);
    report.setSignalAmplitudeLastUpdate(time += kStep);
    report.setAltitudeBaroLastUpdate(time += kStep);
    report.setGroundSpeedLastUpdate(time += kStep);
    report.setHeadingLastUpdate(time += kStep);
    report.setVerticalRateBaroLastUpdate(time + kStep);
}

void setStatus(ADSBTargetReport& report, TimeMs time) {
    report.setGroundStatusLastUpdate(time += kStep);
    report.setGroundStatusLastChange(time + 1);
    report.setSpiStatusLastUpdate(time += kStep);
    report.setSpiStatusLastChange(time + 1);
    report.setAlertStatusLastUpdate(time += kStep);
    report.setAlertStatusLastChange(time + 1);
    report.setMopsVersionLastUpdate(time += kStep);
    report.setMopsVersionLastChange(time + 1);
}

void setQuality(ADSBTargetReport& report, TimeMs time) {
    report.setNUCpLastUpdate(time += kStep);
    report.setNUCpLastChange(time + 1);
    report.setNUCrLastUpdate(time += kStep);
    report.setNUCrLastChange(time + 1);
    report.setNICLastUpdate(time += kStep);
    report.setNICLastChange(time + 1);
    report.setNICSuppALastUpdate(time += kStep);
    report.setNICSuppBLastUpdate(time += kStep);
    report.setNICSuppCLastUpdate(time += kStep);
    report.setPICLastUpdate(time += kStep);
    report.setPICLastChange(time + 1);
    report.setNACpLastUpdate(time += kStep);
    report.setNACpLastChange(time + 1);
    report.setSILLastUpdate(time += kStep);
    report.setSILLastChange(time + 1);
}

ADSBTargetReport timedReport() {
    ADSBTargetReport report;
    setIdentityAndMotion(report, 0);
    setStatus(report, 9 * kStep);
    setQuality(report, 13 * kStep);
    return report;
}

// The items that the core reads, in order.
template <class Visit> void visitCoreItems(Aircraft& aircraft, Visit const& visit) {
    constexpr std::string_view names[] = {"callsign", "emitterCategory", "squawk", "position", "signalAmplitude",
        "altitudeBaro", "groundSpeed", "track", "verticalRateBaro", "groundStatus", "spiStatus", "alertStatus",
        "mopsVersion", "nucp", "nucr", "nic", "nicSuppA", "nicSuppB", "nicSuppC", "pic", "nacp", "sil"};
    visitItems(aircraft, [&](ItemText const& text, auto& item) {
        if (std::ranges::find(names, text.name) != std::end(names)) visit(text, item);
    });
}

Aircraft copied(ADSBTargetReport const& report) {
    Aircraft aircraft;
    copyItems(report, aircraft);
    return aircraft;
}

} // namespace

TEST(CoreItems, HaveTheTimesOfTheReport) {
    auto aircraft = copied(timedReport());
    TimeMs expected = 0;
    visitCoreItems(aircraft, [&](ItemText const& text, auto const& item) {
        expected += kStep;
        EXPECT_EQ(item.updated, expected) << text.name;
        EXPECT_EQ(item.changed, text.hasChange ? expected + 1 : 0) << text.name;
    });
    EXPECT_EQ(expected, 22 * kStep);
}

TEST(CoreItems, HaveNoSourceWhenTheyWereNeverReported) {
    auto aircraft = copied(ADSBTargetReport());
    visitItems(
        aircraft, [](ItemText const& text, auto const& item) { EXPECT_EQ(item.source, Source::None) << text.name; });
}

TEST(CoreItems, AreOfSquittersButForThoseThatOnlyInterrogationsBring) {
    auto aircraft = copied(timedReport());
    visitCoreItems(aircraft, [](ItemText const& text, auto const& item) {
        bool const isOfReplies = text.name == "squawk" || text.name == "spiStatus" || text.name == "alertStatus";
        EXPECT_EQ(item.source, isOfReplies ? Source::ModeS : Source::AdsB) << text.name;
    });
}

TEST(CoreItems, HaveNoValueThatIsNotValidWhateverItsTimes) {
    auto report = timedReport();
    report.setMopsVersion(quorvel::modes::MOPS_UNKNOWN);
    auto aircraft = copied(report);
    visitItems(aircraft, [](ItemText const& text, auto const& item) { EXPECT_FALSE(item.value) << text.name; });
}

TEST(CoreItems, OfIdentityAndMotionHaveTheValuesOfTheReport) {
    ADSBTargetReport report;
    report.setIcaoAddress(0x4840D6);
    report.setTrackId(4095);
    report.setLastUpdate(12'345);
    report.setCallsign("KLM1023 ");
    report.setEmitterCategory(5);
    report.setSquawk(07700);
    report.setPosition(52.25, -3.5);
    report.setSignalAmplitude(200);
    report.setAltitudeBaro(-975);
    report.setGroundSpeed(480.5);
    report.setHeading(359.5);
    report.setVerticalRateBaro(-1984);
    auto const aircraft = copied(report);
    EXPECT_EQ(aircraft.address, 0x4840D6U);
    EXPECT_EQ(aircraft.trackNumber, 4095);
    EXPECT_EQ(aircraft.heard, 12'345U);
    EXPECT_EQ(aircraft.callsign.value, "KLM1023 ");
    EXPECT_EQ(aircraft.emitterCategory.value->number, 5);
    EXPECT_EQ(aircraft.emitterCategory.value->set, 0) << "reports do not say";
    EXPECT_EQ(aircraft.squawk.value->code, 07700);
    EXPECT_EQ(aircraft.position.value->latitude, 52.25);
    EXPECT_EQ(aircraft.position.value->longitude, -3.5);
    EXPECT_EQ(aircraft.signalAmplitude.value, 200);
    EXPECT_EQ(aircraft.altitudeBaro.value, -975);
    EXPECT_EQ(aircraft.groundSpeed.value, 480.5);
    EXPECT_EQ(aircraft.track.value, 359.5);
    EXPECT_EQ(aircraft.verticalRateBaro.value, -1984);
}

TEST(CoreItems, OfStatusHaveTheValuesOfTheReport) {
    for (bool const value : {false, true}) {
        ADSBTargetReport report;
        report.setGroundStatus(value);
        report.setSpiStatus(!value);
        report.setSpiStatusValid(true);
        report.setAlertStatus(value);
        report.setAlertStatusValid(true);
        report.setMopsVersion(value ? quorvel::modes::MOPS_V0 : quorvel::modes::MOPS_V2);
        report.setMopsVersionConfirmed(value);
        auto const aircraft = copied(report);
        EXPECT_EQ(aircraft.groundStatus.value, value);
        EXPECT_EQ(aircraft.spiStatus.value, !value);
        EXPECT_EQ(aircraft.alertStatus.value, value);
        EXPECT_EQ(aircraft.mopsVersion.value, value ? quorvel::modes::MOPS_V0 : quorvel::modes::MOPS_V2);
        EXPECT_EQ(aircraft.mopsVersionConfirmed, value);
    }
}

TEST(CoreItems, OfQualityHaveTheValuesOfTheReport) {
    ADSBTargetReport report;
    report.setNUCp(1);
    report.setNUCpValid(true);
    report.setNUCr(2);
    report.setNUCrValid(true);
    report.setNIC(3);
    report.setNICValid(true);
    report.setNICSuppA(true);
    report.setNICSuppAValid(true);
    report.setNICSuppB(false);
    report.setNICSuppBValid(true);
    report.setNICSuppC(true);
    report.setNICSuppCValid(true);
    report.setPIC(4);
    report.setPICValid(true);
    report.setNACp(5);
    report.setNACpValid(true);
    report.setSIL(6);
    report.setSILValid(true);
    auto const aircraft = copied(report);
    EXPECT_EQ(aircraft.nucp.value, 1);
    EXPECT_EQ(aircraft.nucr.value, 2);
    EXPECT_EQ(aircraft.nic.value, 3);
    EXPECT_EQ(aircraft.nicSuppA.value, true);
    EXPECT_EQ(aircraft.nicSuppB.value, false);
    EXPECT_EQ(aircraft.nicSuppC.value, true);
    EXPECT_EQ(aircraft.pic.value, 4);
    EXPECT_EQ(aircraft.nacp.value, 5);
    EXPECT_EQ(aircraft.sil.value, 6);
}
