// SPDX-License-Identifier: MIT
#include "track/quality_indicators.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quorvel::modes {

void PrintTo(PositionQuality const& quality, std::ostream* out) {
    *out << "NUCp " << int{quality.nucp} << ", NIC " << int{quality.nic} << ", PIC " << int{quality.pic};
}

namespace {

using State = NICSupplements::State;
constexpr State kStates[] = {NICSupplements::NotReceived, NICSupplements::Off, NICSupplements::On};

PositionQuality quality(int nucp, int nic, int pic) {
    return {static_cast<unsigned char>(nucp), static_cast<unsigned char>(nic), static_cast<unsigned char>(pic)};
}

// The rules as they are written down, one expression for each type code.
PositionQuality version1ByTheRules(unsigned typeCode, bool aPresent, bool a) {
    switch (typeCode) {
    case 5:
    case 9:
    case 20: return quality(9, 11, 14);
    case 6:
    case 10:
    case 21: return quality(8, 10, 13);
    case 7:
    case 11: return quality(7, aPresent ? 8 + a : 8, aPresent ? 11 + a : 11);
    case 8: return aPresent && a ? quality(6, 7, 10) : quality(0, 0, 0);
    case 12: return quality(6, 7, 10);
    case 13: return quality(aPresent ? 5 - a : 4, 6, aPresent ? 8 - a : 7);
    case 14: return quality(4, 5, 6);
    case 15: return quality(3, 4, 5);
    case 16: return quality(2, aPresent ? 2 + a : 2, aPresent ? 3 + a : 3);
    case 17: return quality(1, 1, 1);
    default: return quality(0, 0, 0);
    }
}

struct Supplements {
    bool aPresent, a, bPresent, b, cPresent, c;
};

PositionQuality version2TypeCode8(Supplements const& s) {
    if (!s.aPresent) return quality(0, 0, 0);
    if (s.a) {
        if (s.cPresent && s.c) return quality(6, 7, 10);
        return s.cPresent ? quality(5, 6, 9) : quality(0, 0, 0);
    }
    return s.cPresent && s.c ? quality(4, 6, 7) : quality(0, 0, 0);
}

PositionQuality version2TypeCode13(Supplements const& s) {
    if (s.aPresent && !s.a) {
        if (s.bPresent && s.b) return quality(5, 6, 9);
        return s.bPresent ? quality(5, 6, 8) : quality(4, 6, 7);
    }
    return s.bPresent && !s.b ? quality(5, 6, 8) : quality(4, 6, 7);
}

PositionQuality version2ByTheRules(unsigned typeCode, Supplements const& s) {
    int const a = s.aPresent && s.a;
    int const b = s.bPresent && s.b;
    switch (typeCode) {
    case 5:
    case 9:
    case 20: return quality(9, 11, 14);
    case 6:
    case 10:
    case 21: return quality(8, 10, 13);
    case 7: return quality(7, 8 + a, 11 + a);
    case 8: return version2TypeCode8(s);
    case 11: return quality(7, 8 + b, 11 + b);
    case 12: return quality(6, 7, 10);
    case 13: return version2TypeCode13(s);
    case 14: return quality(4, 5, 6);
    case 15: return quality(3, 4, 5);
    case 16: return quality(2, 2 + b, 3 + b);
    case 17: return quality(1, 1, 1);
    default: return quality(0, 0, 0);
    }
}

TEST(QualityIndicators, OfVersion0AreThoseOfTheTable) {
    //                     type code 5   6   7  8   9  10  11  12 13 14 15 16 17 18 19  20  21
    constexpr int kNUCp[] = {9, 8, 7, 0, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 0, 9, 8};
    constexpr int kNIC[] = {11, 10, 8, 0, 11, 10, 8, 7, 6, 5, 4, 1, 1, 0, 0, 11, 10};
    constexpr int kPIC[] = {14, 13, 11, 0, 14, 13, 11, 10, 8, 6, 5, 2, 1, 0, 0, 14, 13};
    constexpr int kSIL[] = {2, 2, 2, 0, 2, 2, 2, 2, 2, 2, 2, 2, 2, 0, 0, 2, 2};
    for (unsigned typeCode = 0; typeCode < 256; ++typeCode) {
        bool const inTable = 5 <= typeCode && typeCode <= 21;
        auto const row = inTable ? typeCode - 5 : 3; // the row of type code 8 is all 0
        auto const found = positionQualityV0(static_cast<unsigned char>(typeCode));
        EXPECT_EQ(static_cast<PositionQuality>(found), quality(kNUCp[row], kNIC[row], kPIC[row])) << typeCode;
        EXPECT_EQ(found.nacp, kNIC[row]) << typeCode;
        EXPECT_EQ(found.sil, kSIL[row]) << typeCode;
    }
}

TEST(QualityIndicators, OfVersion1FollowTheRulesInEveryState) {
    for (unsigned typeCode = 0; typeCode < 256; ++typeCode) {
        for (auto const a : kStates) {
            auto const expected =
                version1ByTheRules(typeCode, a != NICSupplements::NotReceived, a == NICSupplements::On);
            for (auto const other : kStates) { // B and C do not matter
                EXPECT_EQ(positionQualityV1(static_cast<unsigned char>(typeCode), {a, other, other}), expected)
                    << "type code " << typeCode << ", A " << a;
            }
        }
    }
}

TEST(QualityIndicators, OfVersion2FollowTheRulesInEveryState) {
    auto const received = [](State state) { return state != NICSupplements::NotReceived; };
    auto const on = [](State state) { return state == NICSupplements::On; };
    for (unsigned typeCode = 0; typeCode < 256; ++typeCode) {
        for (auto const a : kStates) {
            for (auto const b : kStates) {
                for (auto const c : kStates) {
                    auto const expected =
                        version2ByTheRules(typeCode, {received(a), on(a), received(b), on(b), received(c), on(c)});
                    EXPECT_EQ(positionQualityV2(static_cast<unsigned char>(typeCode), {a, b, c}), expected)
                        << "type code " << typeCode << ", A " << a << ", B " << b << ", C " << c;
                }
            }
        }
    }
}

TEST(QualityIndicators, CountASupplementAsReceivedByItsTime) {
    EXPECT_EQ(NICSupplements::stateOf({true, 0}), NICSupplements::NotReceived);
    EXPECT_EQ(NICSupplements::stateOf({false, 0}), NICSupplements::NotReceived);
    EXPECT_EQ(NICSupplements::stateOf({false, 5}), NICSupplements::Off);
    EXPECT_EQ(NICSupplements::stateOf({true, 5}), NICSupplements::On);
}

} // namespace
} // namespace quorvel::modes
