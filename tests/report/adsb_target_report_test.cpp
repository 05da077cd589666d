// SPDX-License-Identifier: MIT
#include <modes/adsb_target_report.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace quorvel::modes;

namespace {

using Report = ADSBTargetReport;
using Time = unsigned long long;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

struct TimeAccessors {
    char const* name;
    Time (Report::*get)() const;
    void (Report::*set)(Time const&);
};

TimeAccessors const kTimes[] = {
    {"lastUpdate", &Report::lastUpdate, &Report::setLastUpdate},
    {"callsignLastUpdate", &Report::callsignLastUpdate, &Report::setCallsignLastUpdate},
    {"callsignLastChange", &Report::callsignLastChange, &Report::setCallsignLastChange},
    {"emitterCategoryLastUpdate", &Report::emitterCategoryLastUpdate, &Report::setEmitterCategoryLastUpdate},
    {"emitterCategoryLastChange", &Report::emitterCategoryLastChange, &Report::setEmitterCategoryLastChange},
    {"squawkLastUpdate", &Report::squawkLastUpdate, &Report::setSquawkLastUpdate},
    {"squawkLastChange", &Report::squawkLastChange, &Report::setSquawkLastChange},
    {"positionLastUpdate", &Report::positionLastUpdate, &Report::setPositionLastUpdate},
    {"signalAmplitudeLastUpdate", &Report::signalAmplitudeLastUpdate, &Report::setSignalAmplitudeLastUpdate},
    {"altitudeBaroLastUpdate", &Report::altitudeBaroLastUpdate, &Report::setAltitudeBaroLastUpdate},
    {"groundSpeedLastUpdate", &Report::groundSpeedLastUpdate, &Report::setGroundSpeedLastUpdate},
    {"headingLastUpdate", &Report::headingLastUpdate, &Report::setHeadingLastUpdate},
    {"verticalRateBaroLastUpdate", &Report::verticalRateBaroLastUpdate, &Report::setVerticalRateBaroLastUpdate},
    {"groundStatusLastUpdate", &Report::groundStatusLastUpdate, &Report::setGroundStatusLastUpdate},
    {"groundStatusLastChange", &Report::groundStatusLastChange, &Report::setGroundStatusLastChange},
    {"spiStatusLastUpdate", &Report::spiStatusLastUpdate, &Report::setSpiStatusLastUpdate},
    {"spiStatusLastChange", &Report::spiStatusLastChange, &Report::setSpiStatusLastChange},
    {"alertStatusLastUpdate", &Report::alertStatusLastUpdate, &Report::setAlertStatusLastUpdate},
    {"alertStatusLastChange", &Report::alertStatusLastChange, &Report::setAlertStatusLastChange},
    {"mopsVersionLastUpdate", &Report::mopsVersionLastUpdate, &Report::setMopsVersionLastUpdate},
    {"mopsVersionLastChange", &Report::mopsVersionLastChange, &Report::setMopsVersionLastChange},
    {"nucpLastUpdate", &Report::nucpLastUpdate, &Report::setNUCpLastUpdate},
    {"nucpLastChange", &Report::nucpLastChange, &Report::setNUCpLastChange},
    {"nucrLastUpdate", &Report::nucrLastUpdate, &Report::setNUCrLastUpdate},
    {"nucrLastChange", &Report::nucrLastChange, &Report::setNUCrLastChange},
    {"nicLastUpdate", &Report::nicLastUpdate, &Report::setNICLastUpdate},
    {"nicLastChange", &Report::nicLastChange, &Report::setNICLastChange},
    {"nicSuppALastUpdate", &Report::nicSuppALastUpdate, &Report::setNICSuppALastUpdate},
    {"nicSuppBLastUpdate", &Report::nicSuppBLastUpdate, &Report::setNICSuppBLastUpdate},
    {"nicSuppCLastUpdate", &Report::nicSuppCLastUpdate, &Report::setNICSuppCLastUpdate},
    {"picLastUpdate", &Report::picLastUpdate, &Report::setPICLastUpdate},
    {"picLastChange", &Report::picLastChange, &Report::setPICLastChange},
    {"nacpLastUpdate", &Report::nacpLastUpdate, &Report::setNACpLastUpdate},
    {"nacpLastChange", &Report::nacpLastChange, &Report::setNACpLastChange},
    {"silLastUpdate", &Report::silLastUpdate, &Report::setSILLastUpdate},
    {"silLastChange", &Report::silLastChange, &Report::setSILLastChange},
};

struct FlagAccessors {
    char const* name;
    bool (Report::*get)() const;
    void (Report::*set)(bool);
};

FlagAccessors const kFlags[] = {
    {"trackIdValid", &Report::trackIdValid, &Report::setTrackIdValid},
    {"icaoAddressValid", &Report::icaoAddressValid, &Report::setIcaoAddressValid},
    {"callsignValid", &Report::callsignValid, &Report::setCallsignValid},
    {"emitterCategoryValid", &Report::emitterCategoryValid, &Report::setEmitterCategoryValid},
    {"squawkValid", &Report::squawkValid, &Report::setSquawkValid},
    {"positionValid", &Report::positionValid, &Report::setPositionValid},
    {"signalAmplitudeValid", &Report::signalAmplitudeValid, &Report::setSignalAmplitudeValid},
    {"altitudeBaroValid", &Report::altitudeBaroValid, &Report::setAltitudeBaroValid},
    {"groundSpeedValid", &Report::groundSpeedValid, &Report::setGroundSpeedValid},
    {"headingValid", &Report::headingValid, &Report::setHeadingValid},
    {"verticalRateBaroValid", &Report::verticalRateBaroValid, &Report::setVerticalRateBaroValid},
    {"groundStatusValid", &Report::groundStatusValid, &Report::setGroundStatusValid},
    {"spiStatus", &Report::spiStatus, &Report::setSpiStatus},
    {"spiStatusValid", &Report::spiStatusValid, &Report::setSpiStatusValid},
    {"alertStatus", &Report::alertStatus, &Report::setAlertStatus},
    {"alertStatusValid", &Report::alertStatusValid, &Report::setAlertStatusValid},
    {"mopsVersionConfirmed", &Report::mopsVersionConfirmed, &Report::setMopsVersionConfirmed},
    {"nucpValid", &Report::nucpValid, &Report::setNUCpValid},
    {"nucrValid", &Report::nucrValid, &Report::setNUCrValid},
    {"nicValid", &Report::nicValid, &Report::setNICValid},
    {"nicSuppA", &Report::nicSuppA, &Report::setNICSuppA},
    {"nicSuppAValid", &Report::nicSuppAValid, &Report::setNICSuppAValid},
    {"nicSuppB", &Report::nicSuppB, &Report::setNICSuppB},
    {"nicSuppBValid", &Report::nicSuppBValid, &Report::setNICSuppBValid},
    {"nicSuppC", &Report::nicSuppC, &Report::setNICSuppC},
    {"nicSuppCValid", &Report::nicSuppCValid, &Report::setNICSuppCValid},
    {"picValid", &Report::picValid, &Report::setPICValid},
    {"nacpValid", &Report::nacpValid, &Report::setNACpValid},
    {"silValid", &Report::silValid, &Report::setSILValid},
};

std::string latitude(double degrees) {
    Report report;
    report.setPosition(degrees, 0.0);
    return report.latitudeString();
}

std::string longitude(double degrees) {
    Report report;
    report.setPosition(0.0, degrees);
    return report.longitudeString();
}

} // namespace

TEST(TargetReport, StartsEmpty) {
    Report const report;
    EXPECT_FALSE(report.valid());
    for (auto const& time : kTimes) EXPECT_EQ((report.*time.get)(), 0U) << time.name;
    for (auto const& flag : kFlags) EXPECT_FALSE((report.*flag.get)()) << flag.name;
    EXPECT_EQ(report.trackId(), 0U);
    EXPECT_EQ(report.icaoAddress(), 0U);
    EXPECT_EQ(report.callsign(), "");
    EXPECT_EQ(report.emitterCategory(), 0U);
    EXPECT_EQ(report.squawk(), 0U);
    EXPECT_EQ(report.latitude(), 0.0);
    EXPECT_EQ(report.longitude(), 0.0);
    EXPECT_EQ(report.signalAmplitude(), 0U);
    EXPECT_EQ(report.altitudeBaro(), 0);
    EXPECT_EQ(report.groundSpeed(), 0.0);
    EXPECT_EQ(report.heading(), 0.0);
    EXPECT_EQ(report.verticalRateBaro(), 0);
    EXPECT_FALSE(report.groundStatus());
    EXPECT_EQ(report.mopsVersion(), MOPS_V0);
    for (unsigned const quality :
        {report.nucp(), report.nucr(), report.nic(), report.pic(), report.nacp(), report.sil()}) {
        EXPECT_EQ(quality, 0U);
    }
}

TEST(TargetReport, KeepsEachTimeByItself) {
    Report report;
    Time time = 1'000'000'000'000;
    for (auto const& item : kTimes) (report.*item.set)(++time);
    time = 1'000'000'000'000;
    for (auto const& item : kTimes) EXPECT_EQ((report.*item.get)(), ++time) << item.name;
}

TEST(TargetReport, KeepsEachFlagByItself) {
    for (auto const& set : kFlags) {
        Report report;
        (report.*set.set)(true);
        for (auto const& flag : kFlags)
            EXPECT_EQ((report.*flag.get)(), set.get == flag.get) << set.name << ", " << flag.name;
        (report.*set.set)(false);
        EXPECT_FALSE((report.*set.get)()) << set.name;
    }
}

TEST(TargetReport, StoresNumbersWithoutJudgingThem) {
    Report report;
    report.setTrackId(4095);
    report.setIcaoAddress(0x4840D6);
    report.setMopsVersion(MOPS_V2);
    report.setNUCp(7);
    report.setNUCr(3);
    report.setNIC(8);
    report.setPIC(11);
    report.setNACp(9);
    report.setSIL(2);
    EXPECT_EQ(report.trackId(), 4095U);
    EXPECT_EQ(report.icaoAddress(), 0x4840D6U);
    EXPECT_EQ(report.mopsVersion(), MOPS_V2);
    EXPECT_EQ(report.nucp(), 7U);
    EXPECT_EQ(report.nucr(), 3U);
    EXPECT_EQ(report.nic(), 8U);
    EXPECT_EQ(report.pic(), 11U);
    EXPECT_EQ(report.nacp(), 9U);
    EXPECT_EQ(report.sil(), 2U);
    for (auto const& flag : kFlags) EXPECT_FALSE((report.*flag.get)()) << flag.name;
}

TEST(TargetReport, JudgesWhatSomeSettersAreGiven) {
    Report report;
    report.setCallsign("KLM1023 ");
    EXPECT_TRUE(report.callsignValid());
    report.setCallsign("");
    EXPECT_FALSE(report.callsignValid());

    report.setSignalAmplitude(1);
    EXPECT_TRUE(report.signalAmplitudeValid());
    report.setSignalAmplitude(0);
    EXPECT_FALSE(report.signalAmplitudeValid());

    report.setEmitterCategory(0);
    EXPECT_TRUE(report.emitterCategoryValid());
    report.setAltitudeBaro(0);
    EXPECT_TRUE(report.altitudeBaroValid());
    report.setGroundSpeed(0.0);
    EXPECT_TRUE(report.groundSpeedValid());
    report.setHeading(0.0);
    EXPECT_TRUE(report.headingValid());
    report.setVerticalRateBaro(0);
    EXPECT_TRUE(report.verticalRateBaroValid());
    report.setGroundStatus(false);
    EXPECT_TRUE(report.groundStatusValid());
}

TEST(TargetReport, TakesSquawksFrom1To4095ForValid) {
    for (auto const& [code, valid] :
        {std::pair{0U, false}, {1U, true}, {04032U, true}, {4095U, true}, {4096U, false}}) {
        Report report;
        report.setSquawk(code);
        EXPECT_EQ(report.squawk(), code);
        EXPECT_EQ(report.squawkValid(), valid) << code;
    }
}

TEST(TargetReport, TakesPositionsOnEarthForValid) {
    struct {
        double latitude;
        double longitude;
        bool valid;
    } const cases[] = {{0, 0, true}, {90, 180, true}, {-90, -180, true}, {91, 0, false}, {-90.01, 0, false},
        {0, 180.01, false}, {0, -181, false}, {kNotANumber, 0, false}, {0, kNotANumber, false}, {kInfinity, 0, false},
        {0, -kInfinity, false}};
    for (auto const& [latitude, longitude, valid] : cases) {
        Report report;
        report.setPosition(latitude, longitude);
        EXPECT_EQ(report.positionValid(), valid) << latitude << ", " << longitude;
        EXPECT_TRUE(report.latitude() == latitude || std::isnan(latitude));
        EXPECT_TRUE(report.longitude() == longitude || std::isnan(longitude));
    }
}

TEST(TargetReport, IsValidWithATimeAndAnAddress) {
    Report report;
    report.setLastUpdate(1);
    EXPECT_FALSE(report.valid());
    report.setIcaoAddressValid(true);
    EXPECT_TRUE(report.valid());
    report.setLastUpdate(0);
    EXPECT_FALSE(report.valid());
}

TEST(TargetReport, ShowsTheAddressInSixCharacters) {
    Report report;
    report.setIcaoAddress(0xABC);
    EXPECT_EQ(report.icaoAddressString(), "");
    report.setIcaoAddressValid(true);
    EXPECT_EQ(report.icaoAddressString(), "   ABC");
    report.setIcaoAddress(0x4840D6);
    EXPECT_EQ(report.icaoAddressString(), "4840D6");
    report.setIcaoAddress(0);
    EXPECT_EQ(report.icaoAddressString(), "    00");
}

TEST(TargetReport, ShowsTheSquawkInFourDigits) {
    Report report;
    EXPECT_EQ(report.squawkString(), "0000");
    report.setSquawk(4032);
    EXPECT_EQ(report.squawkString(), "7700");
    report.setSquawk(8);
    EXPECT_EQ(report.squawkString(), "0010");
    report.setSquawk(010000);
    EXPECT_EQ(report.squawkString(), "10000");
}

TEST(TargetReport, ShowsCoordinatesInDegreesMinutesAndSeconds) {
    EXPECT_EQ(latitude(51.5), "513000N");
    EXPECT_EQ(latitude(-51.5), "513000S");
    EXPECT_EQ(latitude(0.0), "000000S") << "0 degrees is south";
    EXPECT_EQ(latitude(10.99999), "105960N") << "rounded seconds are not carried";
    EXPECT_EQ(latitude(90.0), "900000N");
    EXPECT_EQ(longitude(-0.425), "0002530W");
    EXPECT_EQ(longitude(0.0), "0000000W") << "and west";
    EXPECT_EQ(longitude(179.5), "1793000E");
    EXPECT_EQ(longitude(-180.0), "1800000W");
    Report report;
    report.setPosition(51.5, -0.425);
    EXPECT_EQ(report.positionString(), "513000N0002530W");
}

TEST(TargetReport, ShowsNoMinusBeforeSecondsThatRoundToZero) {
    for (double degrees = 0.0; degrees < 1.0; degrees += 1.0 / 60.0) {
        EXPECT_EQ(latitude(degrees).find('-'), std::string::npos) << degrees;
        EXPECT_EQ(latitude(degrees).size(), 7U) << degrees;
    }
}

TEST(TargetReport, ShowsWhatIsNoPlaceOnEarthInSomeDefinedWay) {
    for (double const degrees : {kNotANumber, kInfinity, -kInfinity}) {
        EXPECT_EQ(latitude(degrees), "");
        EXPECT_EQ(longitude(degrees), "");
    }
    EXPECT_EQ(latitude(12345.5), "123453000N");
    EXPECT_EQ(latitude(1e300).size(), 301U + 5U);
}

TEST(TargetReport, ShowsTruthInCapitals) {
    EXPECT_EQ(Report::boolToString(true), "TRUE");
    EXPECT_EQ(Report::boolToString(false), "FALSE");
}

TEST(TargetReport, ShowsTimesInUTC) {
    EXPECT_EQ(Report::timeToString(0), "");
    EXPECT_EQ(Report::timeToString(999), "1970-01-01T00:00:00.999Z");
    EXPECT_EQ(Report::timeToString(1'714'566'896'789), "2024-05-01T12:34:56.789Z");
}

TEST(TargetReport, IsCopiedByValue) {
    Report report;
    report.setCallsign("KLM1023 ");
    auto const copy = report;
    report.setCallsign("other");
    EXPECT_EQ(copy.callsign(), "KLM1023 ");
    EXPECT_TRUE(copy.callsignValid());
}
