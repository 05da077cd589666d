// SPDX-License-Identifier: MIT
#include "outputs/output_text.h"

#include "files/printable.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

using namespace quorvel;

TEST(OutputText, WritesNumbersWithAPointAndSoManyDecimals) {
    EXPECT_EQ(outputs::fixed(451.25, 0), "451");
    EXPECT_EQ(outputs::fixed(-3.9375, 5), "-3.93750");
    EXPECT_EQ(outputs::fixed(0.05, 1), "0.1");
    EXPECT_EQ(outputs::fixed(std::numeric_limits<double>::max(), 1).size(), 309U + 2U);
}

TEST(OutputText, ShowsPrintableAsciiOnly) {
    EXPECT_EQ(files::printable("A\x1B[2J\n\x7F  "), "A?[2J??");
    EXPECT_EQ(files::printable("K\xC3\xBC"), "K??");
    EXPECT_EQ(files::printable("        "), "");
}

TEST(OutputText, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(outputs::validUtf8("Z\xC3\xBCrich\n\""), "Z\xC3\xBCrich\n\"");
    EXPECT_EQ(outputs::validUtf8("Z\xFCrich"), "Z\xEF\xBF\xBDrich");
}
