// SPDX-License-Identifier: MIT
#include "inspect/bar_chart.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quorvel::inspect {

namespace {

terminal::TerminalStyle const kPlain{60, false, false};
terminal::TerminalStyle const kBlocks{60, false, true};

} // namespace

TEST(BarChart, DrawsTheLongestBarAsWideAsThereIsRoom) {
    EXPECT_EQ(barChart({{"DF17", 300}, {"DF4", 100}}, kPlain),
        "    DF17  300   75.0 %  ####################################\n"
        "    DF4   100   25.0 %  ############\n");
}

TEST(BarChart, DrawsEighthsWithBlocks) {
    EXPECT_NE(barChart({{"a", 288}, {"b", 13}}, kBlocks).find("4.3 %  █▊\n"), std::string::npos);
}

TEST(BarChart, ShowsSomethingForWhateverIsNotZero) {
    auto const chart = barChart({{"many", 1'000'000}, {"one", 1}, {"none", 0}}, kPlain);
    EXPECT_NE(chart.find("    one         1    0.0 %  #\n"), std::string::npos);
    EXPECT_NE(chart.find("    none        0    0.0 %\n"), std::string::npos);
}

TEST(BarChart, FitsTheWidthWhereItCan) {
    std::istringstream lines(barChart({{"a label", 12345}, {"another", 1}}, {70, false, false}));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 70U);
    EXPECT_NE(barChart({{std::string(60, 'x'), 1}}, {40, false, false}).find("##########\n"), std::string::npos);
    EXPECT_EQ(barChart({}, kPlain), "");
}

TEST(Sparkline, GrowsWithTheCount) {
    std::uint64_t const counts[] = {0, 1, 4, 8};
    EXPECT_EQ(sparkline(counts, kPlain), " .=@");
    EXPECT_EQ(sparkline(counts, kBlocks), " ▁▄█");
    EXPECT_EQ(sparkline({}, kPlain), "");
    std::uint64_t const nothing[] = {0, 0};
    EXPECT_EQ(sparkline(nothing, kPlain), "  ");
}

} // namespace quorvel::inspect
