// SPDX-License-Identifier: MIT
#include "inspect/reading_lines.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

namespace quorvel::inspect {

namespace {

using modes::test::fromHex;

std::string linesOf(std::initializer_list<char const*> frames) {
    ReadingLines readings;
    std::string lines;
    for (auto const* hex : frames) readings.append(airspace::Frame::of(fromHex(hex), 1'000), lines);
    return lines;
}

} // namespace

TEST(ReadingLines, SayWhatAFrameHoldsAndNothingElse) {
    EXPECT_EQ(linesOf({"8D4840D6202CC371C32CE0576098"}),
        R"({"i":0,"hex":"8D4840D6202CC371C32CE0576098","df":17,"remainder":0,"icao":"4840D6","capability":5,)"
        R"("crc_ok":true,"typecode":4,"bds":"0,8","category":0,"emitter_category":"A0","callsign":"KLM1023"})"
        "\n");
}

TEST(ReadingLines, CountModeSFramesAlone) {
    auto const lines = linesOf({"7700", "5D4CA2D46B609F", "0AAA", "5D4CA2D46B609F"});
    EXPECT_EQ(lines.find("{\"i\":0,\"hex\":\"5D4CA2D46B609F\","), 0U);
    EXPECT_NE(lines.find("\n{\"i\":1,"), lines.npos);
    EXPECT_EQ(lines.find("\"i\":2"), lines.npos);
}

TEST(ReadingLines, KeepTheChoiceByScoreApartFromWhatFits) {
    auto const line = linesOf({"A0001690200414B5D32820A11DB7"});
    EXPECT_NE(line.find(R"("bds":"2,0","callsign":"AAR542","bds_choice":"2,0","bds_score":)"), line.npos) << line;
    EXPECT_NE(line.find(R"("bds_sure":true})"), line.npos) << line;
}

} // namespace quorvel::inspect
