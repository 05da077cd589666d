// SPDX-License-Identifier: MIT
#include "airspace/readings/payload.h"
#include "support/bytes.h"

#include <airspace/extended_squitter.h>

#include <gtest/gtest.h>

#include <set>

using namespace quorvel::airspace;
using test::Payload;

namespace {

template <class Content> Content contentOf(Payload const& me, Reading const& how = {}) {
    return std::get<Content>(readSquitterContent(me.bytes(), SquitterOrigin::Aircraft, how));
}

template <class Content>
bool isRead(Payload const& me, Reading const& how = {}, SquitterOrigin origin = SquitterOrigin::Aircraft) {
    return std::holds_alternative<Content>(readSquitterContent(me.bytes(), origin, how));
}

Reading ofVersion(std::uint8_t version) { return {version}; }

constexpr unsigned kAirborneTypes[] = {9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 20, 21, 22};

} // namespace

// RTCA DO-260B, 2.2.3.2.3.1.3
TEST(NoPosition, HasItsAltitudeAlone) {
    auto const me = Payload().with(6, 7, 3).with(9, 20, 0x010);
    auto const content = contentOf<NoPosition>(me);
    EXPECT_EQ(content.surveillanceStatus, SurveillanceStatus::Ident);
    EXPECT_EQ(content.altitude.altitudeFt, -1000);
    EXPECT_EQ(contentOf<NoPosition>(Payload()).altitude.coding, AltitudeCoding::None);
}

// RTCA DO-260B, 2.2.3.2.3
TEST(AirbornePosition, OfEachTypeHasEachField) {
    for (auto const typeCode : kAirborneTypes) {
        auto const me = Payload::ofType(typeCode)
                            .with(6, 7, 2)
                            .with(8)
                            .with(9, 20, 0xC38)
                            .with(21)
                            .with(22)
                            .with(23, 39, 74158)
                            .with(40, 56, 50194);
        auto const content = contentOf<AirbornePosition>(me);
        EXPECT_EQ(content.surveillanceStatus, SurveillanceStatus::TemporaryAlert);
        EXPECT_TRUE(content.nicSupplementB);
        EXPECT_EQ(content.altitude.altitudeFt, 38000);
        EXPECT_EQ(content.altitudeType, typeCode < 20 ? AltitudeType::Barometric : AltitudeType::Gnss);
        EXPECT_TRUE(content.isTimeSynchronized);
        EXPECT_TRUE(content.position.isOdd);
        EXPECT_FALSE(content.position.isOnSurface);
        EXPECT_EQ(content.position.latitude, 74158U);
        EXPECT_EQ(content.position.longitude, 50194U);
    }
}

TEST(AirbornePosition, OfZerosHasNoFlagAndNoAltitude) {
    auto const content = contentOf<AirbornePosition>(Payload::ofType(11));
    EXPECT_EQ(content.surveillanceStatus, SurveillanceStatus::NoCondition);
    EXPECT_FALSE(content.nicSupplementB);
    EXPECT_EQ(content.altitude.altitudeFt, std::nullopt);
    EXPECT_FALSE(content.isTimeSynchronized);
    EXPECT_FALSE(content.position.isOdd);
    EXPECT_EQ(content.position.latitude, 0U);
}

// RTCA DO-260, 2.2.3.2.3.3; DO-260B, 2.2.3.2.3.3
TEST(AirbornePosition, TellsASingleAntennaBeforeVersion2) {
    auto const content = contentOf<AirbornePosition>(Payload::ofType(11).with(8));
    EXPECT_EQ(content.hasSingleAntenna(0), true);
    EXPECT_EQ(content.hasSingleAntenna(1), true);
    EXPECT_EQ(content.hasSingleAntenna(2), std::nullopt);
}

// RTCA DO-260B, 2.2.3.2.4
TEST(SurfacePosition, OfEachTypeHasEachField) {
    for (unsigned typeCode = 5; typeCode <= 8; ++typeCode) {
        auto const me = Payload::ofType(typeCode)
                            .with(6, 12, 42)
                            .with(13)
                            .with(14, 20, 64)
                            .with(21)
                            .with(22)
                            .with(23, 39, 115609)
                            .with(40, 56, 116941);
        auto const content = contentOf<SurfacePosition>(me);
        EXPECT_EQ(content.movement, 42);
        EXPECT_EQ(content.speed->lowerKt, 18.0);
        EXPECT_EQ(content.speed->upperKt, 19.0);
        EXPECT_EQ(content.trackDegrees, 180.0);
        EXPECT_TRUE(content.isTimeSynchronized);
        EXPECT_TRUE(content.position.isOdd);
        EXPECT_TRUE(content.position.isOnSurface);
        EXPECT_EQ(content.position.latitude, 115609U);
        EXPECT_EQ(content.position.longitude, 116941U);
    }
}

TEST(SurfacePosition, WithoutItsStatusBitHasNoTrack) {
    EXPECT_EQ(contentOf<SurfacePosition>(Payload::ofType(7).with(14, 20, 64)).trackDegrees, std::nullopt);
}

TEST(SurfacePosition, OfEveryTrackCodeIsInStepsOf2Point8125Degrees) {
    for (unsigned code = 0; code < 128; ++code)
        EXPECT_EQ(
            contentOf<SurfacePosition>(Payload::ofType(7).with(13).with(14, 20, code)).trackDegrees, 2.8125 * code);
}

TEST(SurfacePosition, HasTheBoundsOfItsVersion) {
    auto const me = Payload::ofType(7).with(6, 12, 3);
    EXPECT_EQ(contentOf<SurfacePosition>(me).speed->lowerKt, 0.25);
    EXPECT_EQ(contentOf<SurfacePosition>(me, ofVersion(1)).speed->lowerKt, 0.25);
    EXPECT_EQ(contentOf<SurfacePosition>(me, ofVersion(2)).speed->lowerKt, 0.125);
}

namespace {

// What the tables say in words, code by code.
struct Movement {
    unsigned first, last;
    double from, step;
};
constexpr Movement kCommon[] = {
    {9, 12, 1, 0.25}, {13, 38, 2, 0.5}, {39, 93, 15, 1}, {94, 108, 70, 2}, {109, 123, 100, 5}};

void expectMovement(Movement const& row, std::uint8_t version) {
    for (auto code = row.first; code <= row.last; ++code) {
        auto const range = speedOfMovement(static_cast<std::uint8_t>(code), version);
        ASSERT_TRUE(range.has_value()) << code;
        EXPECT_NEAR(range->lowerKt, row.from + (code - row.first) * row.step, 1e-12) << code;
        EXPECT_NEAR(range->upperKt.value(), row.from + (code - row.first + 1) * row.step, 1e-12) << code;
    }
}

} // namespace

// RTCA DO-260 and DO-260A, 2.2.3.2.4.2
TEST(Movement, OfVersions0And1HasTheirBounds) {
    for (std::uint8_t version = 0; version < 2; ++version) {
        expectMovement({1, 8, 0, 0.125}, version);
        for (auto const& row : kCommon) expectMovement(row, version);
    }
}

// RTCA DO-260B, 2.2.3.2.4.2
TEST(Movement, OfVersion2HasItsBounds) {
    expectMovement({1, 1, 0, 0}, 2);
    expectMovement({2, 2, 0, 0.125}, 2);
    expectMovement({3, 8, 0.125, 0.875 / 6}, 2);
    for (auto const& row : kCommon) expectMovement(row, 2);
}

TEST(Movement, IsContinuousFromStopToTheFastestCode) {
    for (std::uint8_t version = 0; version < 3; ++version) {
        for (std::uint8_t code = 2; code <= 124; ++code) {
            auto const before = speedOfMovement(static_cast<std::uint8_t>(code - 1), version);
            EXPECT_NEAR(before->upperKt.value(), speedOfMovement(code, version)->lowerKt, 1e-12) << int{code};
        }
    }
}

TEST(Movement, OfTheFastestCodeHasNoUpperBound) {
    EXPECT_EQ(speedOfMovement(124)->lowerKt, 175.0);
    EXPECT_EQ(speedOfMovement(124)->upperKt, std::nullopt);
}

TEST(Movement, OfNoInformationAndReservedCodesIsNothing) {
    for (auto const code : {0, 125, 126, 127, 128, 255})
        EXPECT_FALSE(speedOfMovement(static_cast<std::uint8_t>(code)).has_value()) << code;
}

// RTCA DO-260B, 2.2.3.2.5.2
TEST(Identification, OfEachTypeHasItsSetOfCategories) {
    for (unsigned typeCode = 1; typeCode <= 4; ++typeCode) {
        for (unsigned number = 0; number < 8; ++number) {
            auto const content = contentOf<Identification>(Payload::ofType(typeCode).with(6, 8, number));
            EXPECT_EQ(content.category.set, "DCBA"[typeCode - 1]);
            EXPECT_EQ(content.category.number, number);
        }
    }
}

TEST(Identification, HasACallsignOfTheSixBitAlphabet) {
    auto const me = quorvel::modes::test::fromHex("2015A678D4D220");
    auto const content = std::get<Identification>(readSquitterContent(me));
    EXPECT_EQ(content.callsign.text(), "EZY85MH");
}

TEST(EmitterCategory, TellsTheWakeOfSetA) {
    using Wake = std::optional<WakeVortexClass>;
    Wake const wakes[] = {std::nullopt, WakeVortexClass::Light, WakeVortexClass::Medium, WakeVortexClass::Medium,
        WakeVortexClass::HighVortex, WakeVortexClass::Heavy, std::nullopt, WakeVortexClass::Rotorcraft};
    for (std::uint8_t number = 0; number < 8; ++number) {
        EXPECT_EQ((EmitterCategory{'A', number}.wakeVortexClass()), wakes[number]) << int{number};
        EXPECT_EQ((EmitterCategory{'B', number}.wakeVortexClass()), std::nullopt) << int{number};
    }
}

// RTCA DO-260B, 2.2.3.2.7.8.1
TEST(EmergencyStatus, HasEachStateAndTheModeACode) {
    for (unsigned state = 0; state < 8; ++state) {
        auto const content =
            contentOf<EmergencyStatus>(Payload::ofType(28).with(6, 8, 1).with(9, 11, state).with(12, 24, 0x0AAA));
        EXPECT_EQ(static_cast<unsigned>(content.emergency), state);
        EXPECT_EQ(content.squawk.code, 07700);
    }
}

// RTCA DO-260B, 2.2.3.2.7.8.2
TEST(AdvisoryBroadcast, IsReadAsAnAdvisory) {
    auto const content = contentOf<AdvisoryBroadcast>(Payload::ofType(28).with(6, 8, 2).with(9).with(10).with(27));
    EXPECT_EQ(content.advisory.ara, 0x3000);
    EXPECT_TRUE(content.advisory.isTerminated);
}

// RTCA DO-260A, 2.2.3.2.7.3
TEST(TestMessage, OfSubtype7HasTheModeACode) {
    EXPECT_EQ(contentOf<TestMessage>(Payload::ofType(23).with(6, 8, 7).with(9, 21, 0x0AAA)).squawk.code, 07700);
    for (unsigned subtype = 0; subtype < 7; ++subtype)
        EXPECT_TRUE(isRead<UnreadSquitter>(Payload::ofType(23).with(6, 8, subtype))) << subtype;
}

TEST(ExtendedSquitter, OfAVersionThatDoesNotHaveItIsNotRead) {
    struct {
        Payload me;
        bool isInVersion[4];
    } const cases[] = {
        {Payload::ofType(23).with(6, 8, 7), {true, true, false, false}},
        {Payload::ofType(28).with(6, 8, 1), {true, true, true, true}},
        {Payload::ofType(28).with(6, 8, 2), {false, false, true, true}},
        {Payload::ofType(29).with(6, 7, 0), {false, true, false, false}},
        {Payload::ofType(29).with(6, 7, 1), {false, false, true, true}},
    };
    for (auto const& one : cases) {
        EXPECT_FALSE(isRead<UnreadSquitter>(one.me));
        for (std::uint8_t version = 0; version < 4; ++version)
            EXPECT_EQ(isRead<UnreadSquitter>(one.me, ofVersion(version)), !one.isInVersion[version]) << int{version};
    }
}

TEST(ExtendedSquitter, OfAReservedTypeOrSubtypeIsNotRead) {
    for (auto const typeCode : {24U, 25U, 26U, 27U, 30U})
        EXPECT_TRUE(isRead<UnreadSquitter>(Payload::ofType(typeCode)));
    for (auto const subtype : {0U, 3U, 4U, 5U, 6U, 7U})
        EXPECT_TRUE(isRead<UnreadSquitter>(Payload::ofType(28).with(6, 8, subtype))) << subtype;
    for (auto const subtype : {2U, 3U}) EXPECT_TRUE(isRead<UnreadSquitter>(Payload::ofType(29).with(6, 7, subtype)));
    for (auto const subtype : {2U, 3U, 4U, 5U, 6U, 7U})
        EXPECT_TRUE(isRead<UnreadSquitter>(Payload::ofType(31).with(6, 8, subtype))) << subtype;
}

TEST(ExtendedSquitter, ThatIsNotReadKeepsItsBytes) {
    auto const me = quorvel::modes::test::fromHex("D8123456789ABC");
    auto const content = std::get<UnreadSquitter>(readSquitterContent(me));
    EXPECT_EQ(std::string(content.me.begin(), content.me.end()), me);
}

// RTCA DO-260B, 2.2.17.3
TEST(ExtendedSquitter, OfAGroundStationsOwnPictureHasNoStatus) {
    for (auto const typeCode : {28U, 29U, 31U}) {
        auto const me = Payload::ofType(typeCode).with(8);
        EXPECT_TRUE(isRead<UnreadSquitter>(me, {}, SquitterOrigin::TisB)) << typeCode;
        EXPECT_FALSE(isRead<UnreadSquitter>(me, {}, SquitterOrigin::Rebroadcast)) << typeCode;
    }
}

TEST(ExtendedSquitter, OfAnotherNumberOfBytesIsNotRead) {
    for (std::size_t size = 0; size < 16; ++size) {
        if (size == 7) continue;
        EXPECT_TRUE(std::holds_alternative<UnreadSquitter>(readSquitterContent(std::string(size, '\x58')))) << size;
    }
}

// RTCA DO-260B, 2.2.17.3.5
TEST(CoarsePosition, HasEachField) {
    auto const me = Payload()
                        .with(1)
                        .with(2, 3, 1)
                        .with(4, 7, 9)
                        .with(8, 19, 0xC38)
                        .with(20)
                        .with(21, 25, 16)
                        .with(26, 31, 10)
                        .with(32)
                        .with(33, 44, 0xABC)
                        .with(45, 56, 0x123);
    auto const coarse = readCoarsePosition(me.bytes());
    EXPECT_EQ(coarse.surveillanceStatus, SurveillanceStatus::PermanentAlert);
    EXPECT_EQ(coarse.serviceVolume, 9);
    EXPECT_EQ(coarse.altitude.altitudeFt, 38000);
    EXPECT_EQ(coarse.trackDegrees, 180.0);
    EXPECT_EQ(coarse.groundSpeed->lowerKt, 272.0);
    EXPECT_EQ(coarse.groundSpeed->upperKt, 304.0);
    EXPECT_TRUE(coarse.isOdd);
    EXPECT_EQ(coarse.latitude, 0xABC);
    EXPECT_EQ(coarse.longitude, 0x123);
}

TEST(CoarsePosition, OfNoInformationHasNoValues) {
    auto const coarse = readCoarsePosition(Payload().with(21, 25, 16).bytes());
    EXPECT_EQ(coarse.altitude.altitudeFt, std::nullopt);
    EXPECT_EQ(coarse.trackDegrees, std::nullopt);
    EXPECT_FALSE(coarse.groundSpeed.has_value());
    EXPECT_FALSE(readCoarsePosition("too short").groundSpeed.has_value());
}

TEST(CoarsePosition, HasASpeedInStepsOf32KnotsAroundTheirMiddles) {
    auto const speed = [](unsigned code) {
        return readCoarsePosition(Payload().with(26, 31, code).bytes()).groundSpeed;
    };
    EXPECT_EQ(speed(1)->lowerKt, 0.0);
    EXPECT_EQ(speed(1)->upperKt, 16.0);
    for (unsigned code = 2; code < 63; ++code) {
        EXPECT_EQ(speed(code)->lowerKt, 32.0 * (code - 1) - 16) << code;
        EXPECT_EQ(speed(code)->upperKt, 32.0 * (code - 1) + 16) << code;
    }
    EXPECT_EQ(speed(63)->lowerKt, 1968.0);
    EXPECT_EQ(speed(63)->upperKt, std::nullopt);
}

TEST(TypeCode, HasARegisterASubtypeAndAName) {
    std::optional<std::uint8_t> const none;
    struct {
        unsigned first, last;
        std::optional<std::uint8_t> registerNumber;
        std::optional<std::uint8_t> subtype;
        char const* name;
    } const rows[] = {
        {0, 0, none, none, "no position"},
        {1, 4, 0x08, none, "identification"},
        {5, 8, 0x06, none, "surface position"},
        {9, 18, 0x05, none, "airborne position"},
        {19, 19, 0x09, 6, "airborne velocity"},
        {20, 22, 0x05, none, "airborne position"},
        {23, 23, none, 6, "test message"},
        {24, 24, none, none, "surface system status"},
        {25, 26, none, none, "reserved"},
        {27, 27, none, none, "trajectory change"},
        {28, 28, 0x61, 6, "aircraft status"},
        {29, 29, 0x62, 3, "target state"},
        {30, 30, none, none, "operational coordination"},
        {31, 31, 0x65, 6, "operational status"},
    };
    for (auto const& row : rows) {
        for (auto typeCode = row.first; typeCode <= row.last; ++typeCode) {
            EXPECT_EQ(registerOfTypeCode(static_cast<std::uint8_t>(typeCode)), row.registerNumber) << typeCode;
            EXPECT_EQ(subtypeOf(Payload::ofType(typeCode).with(6, 8, 6).bytes()), row.subtype) << typeCode;
            EXPECT_EQ(nameOfTypeCode(static_cast<std::uint8_t>(typeCode)), row.name) << typeCode;
        }
    }
    EXPECT_EQ(registerOfTypeCode(32), none);
    EXPECT_EQ(nameOfTypeCode(32), "reserved");
    EXPECT_EQ(subtypeOf(""), none);
}
