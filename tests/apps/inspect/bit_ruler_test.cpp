// SPDX-License-Identifier: MIT
#include "inspect/bit_ruler.h"

#include "dissected.h"
#include "support/frames.h"

#include <gmock/gmock.h>

#include <sstream>

namespace quorvel::inspect {

namespace {

using namespace modes::test;
using ::testing::HasSubstr;
using ::testing::Not;

std::size_t widestLine(std::string const& text) {
    std::size_t widest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) widest = std::max(widest, line.size());
    return widest;
}

} // namespace

TEST(BitRuler, ShowsBitsInGroupsWithPlacesAndNames) {
    EXPECT_EQ(bitRuler(dissected(fromHex("5D4CA2D46B609F")), 80, false),
        "  1-5   6-8 9-32                     33-56\n"
        "  01011 101 010011001010001011010100 011010110110000010011111\n"
        "  DF    CA  AA                       PI\n");
}

TEST(BitRuler, GivesABitToTheNarrowestFieldAndNamesFieldsThatDifferByVersion) {
    auto const ruler = bitRuler(dissected(fromHex("8D40621D58C382D690C8AC2863A7")), 80, false);
    EXPECT_THAT(ruler, HasSubstr("  48      49-52 53 54      55-71             72-88\n"
                                 "  1       1000  0  0       10110101101001000 01100100010101100\n"
                                 "  ALT_RES ALT   T  CPR_FMT CPR_LAT           CPR_LON\n"));
    EXPECT_THAT(ruler, HasSubstr("SAF/NIC_SUPP_B"));
    EXPECT_THAT(ruler, HasSubstr("TYPE_CODE"));
    EXPECT_THAT(ruler, Not(HasSubstr("ALT_SRC")));
    EXPECT_THAT(ruler, Not(HasSubstr("ME ")));
}

TEST(BitRuler, FitsTheWidth) {
    auto const dissection = dissected(squitter(0x4840D6, identification("KLM1023")));
    EXPECT_LE(widestLine(bitRuler(dissection, 80, false)), 80U);
    EXPECT_LE(widestLine(bitRuler(dissection, 62, false)), 62U);
    EXPECT_GT(widestLine(bitRuler(dissection, 140, false)), 100U);
}

TEST(BitRuler, MarksRepairedBits) {
    auto const intact = squitter(0x4840D6, identification("KLM1023"));
    auto const ruler = bitRuler(dissected(withBitsInverted(intact, {9})), 80, false);
    EXPECT_THAT(ruler, HasSubstr("\n             ^\n"));
    EXPECT_THAT(bitRuler(dissected(intact), 80, false), Not(HasSubstr("^")));
}

TEST(BitRuler, ColoursGroupsOnlyWhenWanted) {
    auto const dissection = dissected(fromHex("5D4CA2D46B609F"));
    EXPECT_THAT(bitRuler(dissection, 80, true), HasSubstr("\x1B[36m01011\x1B[0m \x1B[33m101\x1B[0m"));
    EXPECT_THAT(bitRuler(dissection, 80, false), Not(HasSubstr("\x1B")));
}

TEST(BitRuler, ShowsBitsOfFramesThatAreNotDecoded) {
    EXPECT_EQ(bitRuler(dissected(fromHex("7700")), 80, false), "  1-16\n  0111011100000000\n  -\n");
}

} // namespace quorvel::inspect
