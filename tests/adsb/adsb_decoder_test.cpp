// SPDX-License-Identifier: MIT
#include <modes/adsb_decoder.h>

#include "support/bytes.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;
using testing::IsEmpty;

TEST(ADSBDecoder, SaysThatItIsInitialized) {
    CapturedLog log;
    ADSBDecoder const decoder;
    EXPECT_THAT(log.take(), Holds(Log::Info, "ADSBDecoder", "Initialized."));
}

TEST(ADSBDecoder, MakesNothingOfAShortPayloadInSilence) {
    ADSBDecoder const decoder;
    CapturedLog log;
    for (std::size_t length = 0; length < 7; ++length) {
        EXPECT_FALSE(decoder.decode(MOPS_V2, std::string(length, '\0')));
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(ADSBDecoder, ReportsReservedTypeCodes) {
    ADSBDecoder const decoder;
    for (unsigned const code : {0U, 24U, 25U, 26U, 27U, 30U}) {
        for (unsigned version = 0; version < 5; ++version) {
            CapturedLog log;
            auto const payload = std::string(1, static_cast<char>(code << 3)) + std::string(6, '\0');
            EXPECT_FALSE(decoder.decode(static_cast<MOPSVersion>(version), payload));
            EXPECT_THAT(log.take(),
                Holds(Log::Warning, "ADSBDecoder", "Unsupported type code = " + std::to_string(code) + " (Reserved)."));
        }
    }
}

TEST(ADSBDecoder, TakesEveryVersionFromUnknownUpForUnknown) {
    ADSBDecoder const decoder;
    for (unsigned const version : {3U, 4U, 255U, 0xFFFFFFFFU}) {
        auto const unknown = static_cast<MOPSVersion>(version);
        EXPECT_TRUE(decoder.decode(unknown, fromHex("200420F1CB3820"))) << "identification has one form";
        EXPECT_TRUE(decoder.decode(unknown, fromHex("38000000000000"))) << "and so have surface positions";
        EXPECT_TRUE(decoder.decode(unknown, fromHex("B8000000000000"))) << "and test messages";
        CapturedLog log;
        for (auto const* payload :
            {"58C382D690C8AC", "99440994083817", "E1000000000000", "EA000000000000", "F8000000004000"}) {
            EXPECT_FALSE(decoder.decode(unknown, fromHex(payload)));
        }
        EXPECT_THAT(log.take(), IsEmpty());
    }
}

TEST(ADSBDecoder, MakesNothingOfATargetStateOfVersion0InSilence) {
    ADSBDecoder const decoder;
    CapturedLog log;
    EXPECT_FALSE(decoder.decode(MOPS_V0, fromHex("EA000000000000")));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_TRUE(decoder.decode(MOPS_V1, fromHex("EA000000000000")));
}

TEST(ADSBDecoder, MakesANewMessageEachTime) {
    ADSBDecoder const decoder;
    auto const payload = fromHex("200420F1CB3820");
    auto const first = decoder.decode(MOPS_V2, payload);
    auto const second = decoder.decode(MOPS_V2, payload);
    EXPECT_NE(first, second);
    EXPECT_EQ(first.use_count(), 1);
}
