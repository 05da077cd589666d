// SPDX-License-Identifier: MIT
#include "track/quality_indicators.h"

#include <iterator>

namespace quorvel::modes {

namespace {

constexpr unsigned kFirstTypeCode = 5;
constexpr unsigned kLastTypeCode = 21;

// Type code 8, the surface position of unknown quality, and 18 and 19 say nothing. NACp is that of NIC.
constexpr PositionQualityV0 kVersion0[] = {
    // NUCp, NIC, PIC, NACp, SIL
    {{9, 11, 14}, 11, 2}, // type code 5
    {{8, 10, 13}, 10, 2}, // 6
    {{7, 8, 11}, 8, 2},   // 7
    {{0, 0, 0}, 0, 0},    // 8
    {{9, 11, 14}, 11, 2}, // 9
    {{8, 10, 13}, 10, 2}, // 10
    {{7, 8, 11}, 8, 2},   // 11
    {{6, 7, 10}, 7, 2},   // 12
    {{5, 6, 8}, 6, 2},    // 13
    {{4, 5, 6}, 5, 2},    // 14
    {{3, 4, 5}, 4, 2},    // 15
    {{2, 1, 2}, 1, 2},    // 16
    {{1, 1, 1}, 1, 2},    // 17
    {{0, 0, 0}, 0, 0},    // 18
    {{0, 0, 0}, 0, 0},    // 19
    {{9, 11, 14}, 11, 2}, // 20
    {{8, 10, 13}, 10, 2}, // 21
};
static_assert(std::size(kVersion0) == kLastTypeCode - kFirstTypeCode + 1);

// Versions 1 and 2 agree as long as no supplement says more.
constexpr PositionQuality kWithoutSupplements[] = {
    {9, 11, 14}, // type code 5
    {8, 10, 13}, // 6
    {7, 8, 11},  // 7
    {0, 0, 0},   // 8
    {9, 11, 14}, // 9
    {8, 10, 13}, // 10
    {7, 8, 11},  // 11
    {6, 7, 10},  // 12
    {4, 6, 7},   // 13
    {4, 5, 6},   // 14
    {3, 4, 5},   // 15
    {2, 2, 3},   // 16
    {1, 1, 1},   // 17
    {0, 0, 0},   // 18
    {0, 0, 0},   // 19
    {9, 11, 14}, // 20
    {8, 10, 13}, // 21
};
static_assert(std::size(kWithoutSupplements) == kLastTypeCode - kFirstTypeCode + 1);

// What the supplements say more. A rule holds for the states of A, B and C that it names; the first that
// holds is taken. A supplement that was never received is not the same as one that is off.
struct SupplementRule {
    unsigned char typeCode;
    unsigned char a, b, c;
    PositionQuality quality;
};

constexpr unsigned char kOn = NICSupplements::On;
constexpr unsigned char kOff = NICSupplements::Off;
constexpr unsigned char kAny = NICSupplements::NotReceived | NICSupplements::Off | NICSupplements::On;

// clang-format off
constexpr SupplementRule kVersion1Rules[] = {
    // type code, A, B, C, {NUCp, NIC, PIC}
    {7,  kOn,  kAny, kAny, {7, 9, 12}},
    {8,  kOn,  kAny, kAny, {6, 7, 10}},
    {11, kOn,  kAny, kAny, {7, 9, 12}},
    {13, kOff, kAny, kAny, {5, 6, 8}},
    {16, kOn,  kAny, kAny, {2, 3, 4}},
};

constexpr SupplementRule kVersion2Rules[] = {
    {7,  kOn,  kAny, kAny, {7, 9, 12}},
    {8,  kOn,  kAny, kOn,  {6, 7, 10}},
    {8,  kOn,  kAny, kOff, {5, 6, 9}},
    {8,  kOff, kAny, kOn,  {4, 6, 7}},
    {11, kAny, kOn,  kAny, {7, 9, 12}},
    {13, kOff, kOn,  kAny, {5, 6, 9}},
    {13, kAny, kOff, kAny, {5, 6, 8}},
    {16, kAny, kOn,  kAny, {2, 3, 4}},
};
// clang-format on

// A row per type code, with nothing in it for type codes that are not in the table.
template <class Row, std::size_t N> Row rowOf(Row const (&table)[N], unsigned char typeCode) {
    return kFirstTypeCode <= typeCode && typeCode <= kLastTypeCode ? table[typeCode - kFirstTypeCode] : Row{};
}

template <std::size_t N>
PositionQuality withSupplements(
    SupplementRule const (&rules)[N], unsigned char typeCode, NICSupplements const& supplements) {
    for (auto const& rule : rules) {
        if (rule.typeCode == typeCode && (rule.a & supplements.a) && (rule.b & supplements.b) &&
            (rule.c & supplements.c)) {
            return rule.quality;
        }
    }
    return rowOf(kWithoutSupplements, typeCode);
}

} // namespace

PositionQualityV0 positionQualityV0(unsigned char typeCode) { return rowOf(kVersion0, typeCode); }

PositionQuality positionQualityV1(unsigned char typeCode, NICSupplements const& supplements) {
    return withSupplements(kVersion1Rules, typeCode, supplements);
}

PositionQuality positionQualityV2(unsigned char typeCode, NICSupplements const& supplements) {
    return withSupplements(kVersion2Rules, typeCode, supplements);
}

} // namespace quorvel::modes
