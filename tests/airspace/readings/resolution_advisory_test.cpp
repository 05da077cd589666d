// SPDX-License-Identifier: MIT
#include "airspace/readings/named_values.h"
#include "airspace/readings/register_writer.h"

#include <airspace/register_fields.h>
#include <airspace/resolution_advisory.h>

#include <gtest/gtest.h>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;
using Json = nlohmann::json;

namespace {

Json valuesOf(RegisterWriter const& writer) {
    NamedValues read;
    visitFields(read, readResolutionAdvisory(writer.bytes()));
    return read.values;
}

RegisterWriter threatAt(long altitude, long range, long bearing) {
    return RegisterWriter().number(29, 30, 2).number(31, 43, altitude).number(44, 50, range).number(51, 56, bearing);
}

} // namespace

// ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.1
TEST(ResolutionAdvisory, WithARABit1TheBitsAreOfOneSense) {
    std::vector<std::string> const names{
        "corrective", "downward_sense", "increased_rate", "sense_reversal", "altitude_crossing", "positive"};
    for (unsigned i = 0; i < names.size(); ++i) {
        auto const values = valuesOf(RegisterWriter().number(9, 9, 1).number(10 + i, 10 + i, 1));
        EXPECT_EQ(values["issued_ra"], true);
        EXPECT_EQ(values["ara"], 1 << 13 | 1 << (12 - i));
        for (auto const& name : names) EXPECT_EQ(values[name], name == names[i]) << name;
        EXPECT_FALSE(values.contains("up_correction"));
    }
}

TEST(ResolutionAdvisory, WithoutARABit1AndWithSeveralThreatsTheBitsAreOfBothSenses) {
    std::vector<std::string> const names{"up_correction", "positive_climb", "down_correction", "positive_descend",
        "altitude_crossing", "sense_reversal"};
    for (unsigned i = 0; i < names.size(); ++i) {
        auto const values = valuesOf(RegisterWriter().number(28, 28, 1).number(10 + i, 10 + i, 1));
        EXPECT_EQ(values["issued_ra"], true);
        EXPECT_EQ(values["multiple_threat"], true);
        for (auto const& name : names) EXPECT_EQ(values[name], name == names[i]) << name;
        EXPECT_FALSE(values.contains("corrective"));
    }
}

TEST(ResolutionAdvisory, WithNeitherThereIsNone) {
    auto const values = valuesOf(RegisterWriter().number(10, 15, 0x3F));
    EXPECT_EQ(values["issued_ra"], false);
    EXPECT_FALSE(values.contains("corrective"));
    EXPECT_FALSE(values.contains("up_correction"));
}

// ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.2 to 4.3.8.4.2.2.1.4
TEST(ResolutionAdvisory, ComplementsAndTheEndAreRead) {
    std::vector<std::string> const names{"no_below", "no_above", "no_left", "no_right", "ra_terminated"};
    for (unsigned i = 0; i < names.size(); ++i) {
        auto const values = valuesOf(RegisterWriter().number(23 + i, 23 + i, 1));
        for (auto const& name : names) EXPECT_EQ(values[name], name == names[i]) << name;
        EXPECT_EQ(values["rac"], i < 4 ? 8 >> i : 0);
    }
}

// ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.5 and 4.3.8.4.2.2.1.6
TEST(ResolutionAdvisory, AThreatIsNamedByAddress) {
    auto const values = valuesOf(RegisterWriter().number(29, 30, 1).number(31, 54, 0xABCDEF));
    EXPECT_EQ(values["threat_type_indicator"], 1);
    EXPECT_EQ(values["threat_icao"], "ABCDEF");
    EXPECT_FALSE(values.contains("threat_range"));
}

TEST(ResolutionAdvisory, AThreatIsNamedByAltitudeRangeAndBearing) {
    auto const values = valuesOf(threatAt(0b1000001010000, 21, 11));
    EXPECT_EQ(values["threat_type_indicator"], 2);
    EXPECT_DOUBLE_EQ(values["threat_range"], 2.0);
    EXPECT_EQ(values["threat_bearing"], 63);
    EXPECT_FALSE(values.contains("threat_icao"));
}

TEST(ResolutionAdvisory, EveryRangeAndBearingHasItsCode) {
    for (int code = 0; code < 128; ++code) {
        auto const advisory = readResolutionAdvisory(threatAt(0, code, 0).bytes());
        ASSERT_EQ(advisory.threatRangeNm.has_value(), code >= 1 && code <= 126) << code;
        if (code >= 1 && code <= 126) {
            EXPECT_DOUBLE_EQ(*advisory.threatRangeNm, (code - 1) / 10.0);
        }
    }
    for (int code = 0; code < 64; ++code) {
        auto const advisory = readResolutionAdvisory(threatAt(0, 0, code).bytes());
        ASSERT_EQ(advisory.threatBearingDegrees.has_value(), code >= 1 && code <= 60) << code;
        if (code >= 1 && code <= 60) {
            EXPECT_EQ(*advisory.threatBearingDegrees, 6 * code - 3);
        }
    }
}

TEST(ResolutionAdvisory, AnAltitudeOfZeroIsNotKnown) {
    EXPECT_FALSE(readResolutionAdvisory(threatAt(0, 1, 1).bytes()).threatAltitudeFt);
    EXPECT_EQ(readResolutionAdvisory(threatAt(0b1000000110000, 1, 1).bytes()).threatAltitudeFt, 25'000);
}

TEST(ResolutionAdvisory, OtherThreatTypesNameNone) {
    for (auto const type : {0L, 3L}) {
        auto const values = valuesOf(RegisterWriter().number(29, 30, type).number(31, 56, -1));
        EXPECT_EQ(values["threat_type_indicator"], type);
        EXPECT_FALSE(values.contains("threat_icao"));
        EXPECT_FALSE(values.contains("threat_altitude"));
        EXPECT_FALSE(values.contains("threat_range"));
        EXPECT_FALSE(values.contains("threat_bearing"));
    }
}

TEST(ResolutionAdvisory, TheFirstByteDoesNotMatter) {
    auto const values = valuesOf(RegisterWriter().number(1, 8, 0x30).number(9, 9, 1));
    EXPECT_EQ(values, valuesOf(RegisterWriter().number(1, 8, 0xE2).number(9, 9, 1)));
}

TEST(ResolutionAdvisory, BytesOfAnotherNumberGiveNone) {
    for (std::size_t size = 0; size < 15; ++size) {
        EXPECT_EQ(readResolutionAdvisory(std::string(size, '\xFF')).isIssued(), size == 7) << size;
    }
}
