// SPDX-License-Identifier: MIT
#include <airspace/integrity.h>

#include <gtest/gtest.h>

#include <vector>

using namespace quorvel::airspace;

namespace {

using Bound = std::optional<double>;
constexpr Bound kNone = std::nullopt;
Bound miles(double nauticalMiles) { return nauticalMiles * 1852.0; }

void expectBound(Bound actual, Bound expected, int row) {
    ASSERT_EQ(actual.has_value(), expected.has_value()) << row;
    EXPECT_NEAR(actual.value_or(0.0), expected.value_or(0.0), 1e-9) << row;
}

struct Row {
    std::uint8_t typeCode;
    NicSupplements supplements;
    std::optional<std::uint8_t> category;
    Bound radius;
    Bound vertical = kNone;
};

void expectRows(std::uint8_t version, std::vector<Row> const& rows) {
    for (auto const& row : rows) {
        auto const integrity = navigationIntegrity(row.typeCode, version, row.supplements);
        EXPECT_EQ(integrity.nic, row.category) << int{row.typeCode};
        expectBound(integrity.radiusMetres, row.radius, row.typeCode);
        expectBound(integrity.verticalMetres, row.vertical, row.typeCode);
    }
}

constexpr NicSupplements kA{true, false, false};
constexpr NicSupplements kB{false, true, false};
constexpr NicSupplements kC{false, false, true};
constexpr NicSupplements kAB{true, true, false};
constexpr NicSupplements kAC{true, false, true};

constexpr std::uint8_t kPositionTypes[] = {0, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 20, 21, 22};

} // namespace

// RTCA DO-260B, 2.2.3.2.3.1 and 2.2.3.2.7.2.6
TEST(NavigationIntegrity, OfVersion2InTheAirFollowsTypeCodeAndSupplementsAAndB) {
    expectRows(2, {
                      {0, {}, 0, kNone},
                      {9, {}, 11, 7.5},
                      {10, {}, 10, 25.0},
                      {11, kAB, 9, 75.0},
                      {11, {}, 8, miles(0.1)},
                      {12, {}, 7, miles(0.2)},
                      {13, kB, 6, miles(0.3)},
                      {13, {}, 6, miles(0.5)},
                      {13, kAB, 6, miles(0.6)},
                      {14, {}, 5, miles(1)},
                      {15, {}, 4, miles(2)},
                      {16, kAB, 3, miles(4)},
                      {16, {}, 2, miles(8)},
                      {17, {}, 1, miles(20)},
                      {18, {}, 0, kNone},
                      {20, {}, 11, 7.5},
                      {21, {}, 10, 25.0},
                      {22, {}, 0, kNone},
                  });
}

// RTCA DO-260B, 2.2.3.2.3.1 and 2.2.3.2.7.2.6
TEST(NavigationIntegrity, OfVersion2OnTheSurfaceFollowsTypeCodeAndSupplementsAAndC) {
    expectRows(2, {
                      {5, {}, 11, 7.5},
                      {6, {}, 10, 25.0},
                      {7, kA, 9, 75.0},
                      {7, {}, 8, miles(0.1)},
                      {8, kAC, 7, miles(0.2)},
                      {8, kA, 6, miles(0.3)},
                      {8, kC, 6, miles(0.6)},
                      {8, {}, 0, kNone},
                  });
}

TEST(NavigationIntegrity, OfSupplementsThatNoRowNamesIsThatOfTheLargestRadius) {
    expectRows(2, {
                      {11, kA, 8, miles(0.1)},
                      {11, kB, 8, miles(0.1)},
                      {13, kA, 6, miles(0.6)},
                      {16, kA, 2, miles(8)},
                      {16, kB, 2, miles(8)},
                      {7, kC, 8, miles(0.1)},
                      {7, kAC, 8, miles(0.1)},
                  });
}

// RTCA DO-260A, 2.2.3.2.3.1 and 2.2.3.2.7.2.6
TEST(NavigationIntegrity, OfVersion1FollowsTypeCodeAndItsOneSupplement) {
    expectRows(1, {
                      {0, {}, 0, kNone},
                      {5, {}, 11, 7.5, 11.0},
                      {6, {}, 10, 25.0, 37.5},
                      {7, kA, 9, 75.0, 112.0},
                      {7, {}, 8, miles(0.1)},
                      {8, {}, 0, kNone},
                      {9, {}, 11, 7.5, 11.0},
                      {10, {}, 10, 25.0, 37.5},
                      {11, kA, 9, 75.0, 112.0},
                      {11, {}, 8, miles(0.1)},
                      {12, {}, 7, miles(0.2)},
                      {13, {}, 6, miles(0.5)},
                      {13, kA, 6, miles(0.6)},
                      {14, {}, 5, miles(1)},
                      {15, {}, 4, miles(2)},
                      {16, kA, 3, miles(4)},
                      {16, {}, 2, miles(8)},
                      {17, {}, 1, miles(20)},
                      {18, {}, 0, kNone},
                      {20, {}, 11, 7.5, 11.0},
                      {21, {}, 10, 25.0, 37.5},
                      {22, {}, 0, kNone},
                  });
}

// RTCA DO-260, 2.2.3.2.3.1
TEST(NavigationIntegrity, OfVersion0HasAProtectionLimitAndNoCategoryOfItsOwn) {
    std::optional<std::uint8_t> const none;
    expectRows(0, {
                      {0, {}, none, kNone},
                      {5, {}, none, 7.5},
                      {6, {}, none, 25.0},
                      {7, {}, none, miles(0.1)},
                      {8, {}, none, kNone},
                      {9, {}, none, 7.5},
                      {10, {}, none, 25.0},
                      {11, {}, none, miles(0.1)},
                      {12, {}, none, miles(0.2)},
                      {13, {}, none, miles(0.5)},
                      {14, {}, none, miles(1)},
                      {15, {}, none, miles(2)},
                      {16, {}, none, miles(10)},
                      {17, {}, none, miles(20)},
                      {18, {}, none, kNone},
                      {20, {}, none, 7.5},
                      {21, {}, none, 25.0},
                      {22, {}, none, kNone},
                  });
}

TEST(NavigationIntegrity, OfLaterVersionsIsThatOfVersion2) {
    for (auto const typeCode : kPositionTypes) {
        for (auto const& supplements : {NicSupplements{}, kA, kB, kC, kAB, kAC}) {
            auto const third = navigationIntegrity(typeCode, 3, supplements);
            auto const second = navigationIntegrity(typeCode, 2, supplements);
            EXPECT_EQ(third.nic, second.nic);
            EXPECT_EQ(third.radiusMetres, second.radiusMetres);
        }
    }
}

TEST(NavigationIntegrity, OfOtherTypeCodesIsNothing) {
    for (auto const typeCode : {1, 2, 3, 4, 19, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 255}) {
        for (std::uint8_t version = 0; version < 4; ++version) {
            auto const integrity = navigationIntegrity(static_cast<std::uint8_t>(typeCode), version, kAB);
            EXPECT_EQ(integrity.nic, std::nullopt) << typeCode;
            EXPECT_EQ(integrity.radiusMetres, std::nullopt) << typeCode;
        }
        EXPECT_EQ(navigationUncertainty(static_cast<std::uint8_t>(typeCode)), std::nullopt) << typeCode;
    }
}

// RTCA DO-260, 2.2.3.2.3.1
TEST(NavigationUncertainty, FollowsTheTypeCode) {
    constexpr std::uint8_t kCategories[] = {0, 9, 8, 7, 6, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 9, 8, 0};
    for (std::size_t i = 0; i < std::size(kPositionTypes); ++i)
        EXPECT_EQ(navigationUncertainty(kPositionTypes[i]), kCategories[i]) << int{kPositionTypes[i]};
}

// RTCA DO-260, 2.2.3.2.3.1
TEST(Accuracy, OfEachNucPIsThatOfTheTable) {
    Bound const horizontal[] = {
        kNone, miles(10), miles(5), miles(1), miles(0.5), miles(0.25), miles(0.1), miles(0.05), 10.0, 3.0, kNone};
    Bound const vertical[] = {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, 15.0, 4.0, kNone};
    for (std::uint8_t i = 0; i < std::size(horizontal); ++i) {
        expectBound(accuracyOfNucP(i).horizontal, horizontal[i], i);
        expectBound(accuracyOfNucP(i).vertical, vertical[i], i);
    }
}

// RTCA DO-260A and DO-260B, 2.2.3.2.7.2.7
TEST(Accuracy, OfEachNacPIsThatOfTheTable) {
    Bound const horizontal[] = {kNone, miles(10), miles(4), miles(2), miles(1), miles(0.5), miles(0.3), miles(0.1),
        miles(0.05), 30.0, 10.0, 3.0, kNone, kNone, kNone, kNone};
    for (std::uint8_t i = 0; i < std::size(horizontal); ++i) {
        expectBound(accuracyOfNacP(i, 1).horizontal, horizontal[i], i);
        expectBound(accuracyOfNacP(i, 2).horizontal, horizontal[i], i);
        expectBound(accuracyOfNacP(i, 1).vertical,
            i == 9    ? Bound(45)
            : i == 10 ? Bound(15)
            : i == 11 ? Bound(4)
                      : kNone,
            i);
        expectBound(accuracyOfNacP(i, 2).vertical, kNone, i);
    }
}

// RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.6.1.5
TEST(Accuracy, OfEachNacVIsThatOfTheTable) {
    Bound const horizontal[] = {kNone, 10.0, 3.0, 1.0, 0.3, kNone, kNone, kNone};
    Bound const verticalFeet[] = {kNone, 50.0, 15.0, 5.0, 1.5, kNone, kNone, kNone};
    for (std::uint8_t i = 0; i < std::size(horizontal); ++i) {
        auto const vertical = verticalFeet[i] ? Bound(*verticalFeet[i] * 0.3048) : kNone;
        for (std::uint8_t version = 0; version < 3; ++version) {
            expectBound(accuracyOfNacV(i, version).horizontal, horizontal[i], i);
            expectBound(accuracyOfNacV(i, version).vertical, version < 2 ? vertical : kNone, i);
        }
    }
}

// RTCA DO-260B, 2.2.3.2.7.2.8
TEST(Accuracy, OfEachGvaIsThatOfTheTable) {
    EXPECT_EQ(accuracyOfGva(0), kNone);
    EXPECT_EQ(accuracyOfGva(1), 150.0);
    EXPECT_EQ(accuracyOfGva(2), 45.0);
    EXPECT_EQ(accuracyOfGva(3), kNone);
}

// RTCA DO-260A, 2.2.3.2.7.2.9; DO-260B, 2.2.3.2.7.2.9 and 2.2.3.2.7.2.14
TEST(SourceIntegrity, IsAProbabilityPerHourOrSample) {
    Bound const probability[] = {kNone, 1e-3, 1e-5, 1e-7, kNone};
    for (std::uint8_t sil = 0; sil < std::size(probability); ++sil) {
        EXPECT_EQ(sourceIntegrity(sil, 2, false).probability, probability[sil]);
        EXPECT_EQ(sourceIntegrity(sil, 1).probability, probability[sil]);
    }
    EXPECT_EQ(sourceIntegrity(3, 2, false).basis, SilBasis::Hour);
    EXPECT_EQ(sourceIntegrity(3, 2, true).basis, SilBasis::Sample);
    EXPECT_EQ(sourceIntegrity(3, 2).basis, SilBasis::Unknown);
    EXPECT_EQ(sourceIntegrity(3, 1, true).basis, SilBasis::Unknown);
}

// RTCA DO-260B, 2.2.3.2.7.2.4.6
TEST(SystemDesignAssurance, IsAProbabilityOfAFaultPerHour) {
    EXPECT_EQ(faultProbabilityOfSda(0), kNone);
    EXPECT_EQ(faultProbabilityOfSda(1), 1e-3);
    EXPECT_EQ(faultProbabilityOfSda(2), 1e-5);
    EXPECT_EQ(faultProbabilityOfSda(3), 1e-7);
    EXPECT_EQ(faultProbabilityOfSda(4), kNone);
}
