// SPDX-License-Identifier: MIT
#include "airspace/readings/payload.h"

#include <airspace/extended_squitter.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace quorvel::airspace;
using test::Payload;

namespace {

Payload velocity(unsigned subtype) { return Payload::ofType(19).with(6, 8, subtype); }

AirborneVelocity velocityOf(Payload const& me) { return std::get<AirborneVelocity>(readSquitterContent(me.bytes())); }

TisBVelocity groundVelocityOf(Payload const& me) {
    return std::get<TisBVelocity>(readSquitterContent(me.bytes(), SquitterOrigin::TisB));
}

} // namespace

// RTCA DO-260B, 2.2.3.2.6.1.6 to 2.2.3.2.6.1.9 and 2.2.3.2.6.2
TEST(AirborneVelocity, OverGroundReadsEveryCodeOfBothComponents) {
    for (unsigned subtype = 1; subtype <= 2; ++subtype) {
        auto const step = subtype == 1 ? 1 : 4;
        for (unsigned code = 1; code < 1024; ++code) {
            auto const knots = step * (static_cast<int>(code) - 1);
            auto const plus = velocityOf(velocity(subtype).with(15, 24, code).with(26, 35, code)).horizontal;
            ASSERT_EQ(plus.eastKt, knots);
            ASSERT_EQ(plus.northKt, knots);
            auto const minus =
                velocityOf(velocity(subtype).with(14).with(15, 24, code).with(25).with(26, 35, code)).horizontal;
            ASSERT_EQ(minus.eastKt, -knots);
            ASSERT_EQ(minus.northKt, -knots);
        }
        auto const none = velocityOf(velocity(subtype).with(14).with(25)).horizontal;
        EXPECT_EQ(none.eastKt, std::nullopt);
        EXPECT_EQ(none.northKt, std::nullopt);
        EXPECT_EQ(none.airspeedType, std::nullopt);
    }
}

TEST(AirborneVelocity, OverGroundHasASpeedAndATrackOfBothComponents) {
    struct {
        int east, north;
        double speed, track;
    } const rows[] = {{0, 100, 100, 0}, {100, 100, 141.4213562, 45}, {100, 0, 100, 90}, {100, -100, 141.4213562, 135},
        {0, -100, 100, 180}, {-100, -100, 141.4213562, 225}, {-100, 0, 100, 270}, {-100, 100, 141.4213562, 315}};
    for (auto const& row : rows) {
        HorizontalVelocity const horizontal{row.east, row.north, {}, {}, {}};
        EXPECT_NEAR(horizontal.groundSpeedKt().value(), row.speed, 1e-6);
        EXPECT_NEAR(horizontal.trackDegrees().value(), row.track, 1e-9);
    }
}

TEST(AirborneVelocity, OverGroundHasNoTrackWhenItStandsAndNothingWithoutAComponent) {
    HorizontalVelocity const still{0, 0, {}, {}, {}};
    EXPECT_EQ(still.groundSpeedKt(), 0.0);
    EXPECT_EQ(still.trackDegrees(), std::nullopt);
    HorizontalVelocity const half{100, {}, {}, {}, {}};
    EXPECT_EQ(half.groundSpeedKt(), std::nullopt);
    EXPECT_EQ(half.trackDegrees(), std::nullopt);
}

// RTCA DO-260B, 2.2.3.2.6.3 and 2.2.3.2.6.4
TEST(AirborneVelocity, ThroughTheAirReadsEveryCodeOfHeadingAndSpeed) {
    for (unsigned subtype = 3; subtype <= 4; ++subtype) {
        auto const step = subtype == 3 ? 1 : 4;
        for (unsigned code = 1; code < 1024; ++code) {
            auto const read = velocityOf(velocity(subtype).with(14).with(15, 24, code).with(25).with(26, 35, code));
            ASSERT_EQ(read.horizontal.headingDegrees, code * 0.3515625);
            ASSERT_EQ(read.horizontal.airspeedType, AirspeedType::True);
            ASSERT_EQ(read.horizontal.airspeedKt, step * (static_cast<int>(code) - 1));
            ASSERT_EQ(read.horizontal.groundSpeedKt(), std::nullopt);
        }
        auto const none = velocityOf(velocity(subtype).with(15, 24, 100)).horizontal;
        EXPECT_EQ(none.headingDegrees, std::nullopt);
        EXPECT_EQ(none.airspeedType, AirspeedType::Indicated);
        EXPECT_EQ(none.airspeedKt, std::nullopt);
    }
}

// RTCA DO-260B, 2.2.3.2.6.1.10 to 2.2.3.2.6.1.12
TEST(AirborneVelocity, ReadsEveryVerticalRateWithItsSourceInEverySubtype) {
    for (unsigned subtype = 1; subtype <= 4; ++subtype) {
        for (unsigned code = 1; code < 512; ++code) {
            auto const rate = 64 * (static_cast<int>(code) - 1);
            auto const up = velocityOf(velocity(subtype).with(38, 46, code));
            ASSERT_EQ(up.verticalRateFtMin, rate);
            ASSERT_EQ(up.verticalRateSource, VerticalRateSource::Gnss);
            auto const down = velocityOf(velocity(subtype).with(36).with(37).with(38, 46, code));
            ASSERT_EQ(down.verticalRateFtMin, -rate);
            ASSERT_EQ(down.verticalRateSource, VerticalRateSource::Barometric);
        }
        EXPECT_EQ(velocityOf(velocity(subtype).with(37)).verticalRateFtMin, std::nullopt);
    }
}

// RTCA DO-260B, 2.2.3.2.6.1.14 and 2.2.3.2.6.1.15
TEST(AirborneVelocity, ReadsEveryDifferenceOfHeights) {
    for (unsigned code = 1; code < 127; ++code) {
        auto const difference = 25 * (static_cast<int>(code) - 1);
        ASSERT_EQ(velocityOf(velocity(1).with(50, 56, code)).gnssMinusBarometricFt, difference);
        ASSERT_EQ(velocityOf(velocity(1).with(49).with(50, 56, code)).gnssMinusBarometricFt, -difference);
        ASSERT_FALSE(velocityOf(velocity(1).with(50, 56, code)).isDifferenceBeyondScale);
    }
    EXPECT_EQ(velocityOf(velocity(1).with(49)).gnssMinusBarometricFt, std::nullopt);
    EXPECT_FALSE(velocityOf(velocity(1)).isDifferenceBeyondScale);
    EXPECT_EQ(velocityOf(velocity(1).with(50, 56, 127)).gnssMinusBarometricFt, std::nullopt);
    EXPECT_TRUE(velocityOf(velocity(1).with(50, 56, 127)).isDifferenceBeyondScale);
}

// RTCA DO-260B, 2.2.3.2.6.1.3 to 2.2.3.2.6.1.5
TEST(AirborneVelocity, OfEverySubtypeHasIntentCapabilityAndAccuracy) {
    for (unsigned subtype = 0; subtype < 8; ++subtype) {
        for (unsigned nacV = 0; nacV < 8; ++nacV) {
            EXPECT_EQ(velocityOf(velocity(subtype).with(11, 13, nacV)).nacV, nacV);
        }
        EXPECT_TRUE(velocityOf(velocity(subtype).with(9)).isIntentChanging);
        EXPECT_FALSE(velocityOf(velocity(subtype).with(10)).isIntentChanging);
        EXPECT_TRUE(velocityOf(velocity(subtype).with(10)).isIfrCapable);
    }
}

TEST(AirborneVelocity, OfAReservedSubtypeHasNoOtherValue) {
    for (auto const subtype : {0U, 5U, 6U, 7U}) {
        auto const read = velocityOf(velocity(subtype).with(9, 56, 0xFFFFFFFFFFFEULL));
        EXPECT_EQ(read.horizontal.eastKt, std::nullopt);
        EXPECT_EQ(read.horizontal.airspeedType, std::nullopt);
        EXPECT_EQ(read.verticalRateFtMin, std::nullopt);
        EXPECT_EQ(read.gnssMinusBarometricFt, std::nullopt);
    }
}

// RTCA DO-260B, 2.2.17.3.4
TEST(TisBVelocity, HasAccuracyAndIntegrityWithoutADifferenceOfHeights) {
    auto const me = velocity(1)
                        .with(10, 13, 9)
                        .with(15, 24, 101)
                        .with(26, 35, 201)
                        .with(38, 46, 11)
                        .with(47)
                        .with(48, 50, 2)
                        .with(51, 52, 3);
    auto const read = groundVelocityOf(me);
    EXPECT_EQ(read.nacP, 9);
    EXPECT_EQ(read.horizontal.eastKt, 100);
    EXPECT_EQ(read.horizontal.northKt, 200);
    EXPECT_EQ(read.verticalRateFtMin, 640);
    EXPECT_TRUE(read.nicSupplement);
    EXPECT_EQ(read.nacV, 2);
    EXPECT_EQ(read.sil, 3);
    EXPECT_EQ(read.gnssMinusBarometricFt, std::nullopt);
}

TEST(TisBVelocity, HasADifferenceOfHeightsInPlaceOfAccuracyAndIntegrity) {
    auto const read =
        groundVelocityOf(velocity(3).with(14).with(15, 24, 512).with(26, 35, 251).with(36).with(49).with(50, 56, 5));
    EXPECT_EQ(read.horizontal.headingDegrees, 180.0);
    EXPECT_EQ(read.horizontal.airspeedKt, 250);
    EXPECT_EQ(read.nacV, std::nullopt);
    EXPECT_EQ(read.sil, std::nullopt);
    EXPECT_EQ(read.gnssMinusBarometricFt, -100);
}

TEST(TisBVelocity, OfAReservedSubtypeIsNotRead) {
    for (auto const subtype : {0U, 5U, 6U, 7U}) {
        auto const content = readSquitterContent(velocity(subtype).bytes(), SquitterOrigin::TisB);
        EXPECT_TRUE(std::holds_alternative<UnreadSquitter>(content)) << subtype;
    }
}
