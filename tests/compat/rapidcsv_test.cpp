// SPDX-License-Identifier: MIT
#include <rapidcsv.h>

#include "support/random_bytes.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sstream>

using quorvel::modes::test::content;
using quorvel::modes::test::Noise;
using quorvel::modes::test::TemporaryFolder;

namespace {

rapidcsv::Document open(std::string const& path, bool skipLines = false, bool trim = false) {
    return rapidcsv::Document(path, rapidcsv::LabelParams(0, -1),
        rapidcsv::SeparatorParams(',', trim, false, false, true), rapidcsv::ConverterParams(),
        rapidcsv::LineReaderParams(skipLines, '#', skipLines));
}

std::string failure(std::function<void()> const& action) {
    try {
        action();
    } catch (std::out_of_range const& exception) {
        return exception.what();
    }
    return "no exception";
}

class Csv : public testing::Test {
protected:
    TemporaryFolder folder;
    rapidcsv::Document read(std::string const& text) { return open(folder.write("file.csv", text)); }
};

} // namespace

TEST_F(Csv, FindsCellsByColumnNameAndRow) {
    auto const document = read("b,a\n1,2\n3,4\n");
    EXPECT_EQ(document.GetRowCount(), 2U);
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "2");
    EXPECT_EQ(document.GetCell<std::string>("b", 1), "3");
}

TEST_F(Csv, ConvertsACellByAFunction) {
    auto const document = read("a\n42\n");
    auto const twice = [](std::string const& text, int& value) { value = 2 * std::stoi(text); };
    EXPECT_EQ(document.GetCell<int>("a", 0, twice), 84);
}

TEST_F(Csv, ThrowsForAnUnknownColumnAndForAShortRow) {
    auto const document = read("a,b\n1\n");
    EXPECT_EQ(failure([&] { document.GetCell<std::string>("c", 0); }), "column not found: c");
    EXPECT_NE(failure([&] { document.GetCell<std::string>("b", 0); }), "no exception");
    EXPECT_NE(failure([&] { document.GetCell<std::string>("a", 1); }), "no exception");
}

TEST_F(Csv, CountsTheRowsAfterTheLabels) {
    EXPECT_EQ(read("").GetRowCount(), 0U);
    EXPECT_EQ(read("a\n").GetRowCount(), 0U);
    EXPECT_EQ(read("a").GetRowCount(), 0U);
    EXPECT_EQ(read("a\n1").GetRowCount(), 1U) << "the last line needs no line feed";
    EXPECT_EQ(read("a\n1\n").GetRowCount(), 1U);
}

TEST_F(Csv, TakesAnEmptyLineInTheMiddleForARowOfOneEmptyCell) {
    auto const document = read("a,b\n\n1,2\n");
    EXPECT_EQ(document.GetRowCount(), 2U);
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "");
    EXPECT_NE(failure([&] { document.GetCell<std::string>("b", 0); }), "no exception");
}

TEST_F(Csv, SkipsEmptyLinesAndCommentsOnRequest) {
    auto const document = open(folder.write("file.csv", "a\n\n#1\n2\n"), true);
    EXPECT_EQ(document.GetRowCount(), 1U);
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "2");
}

TEST_F(Csv, TrimsCellsOnRequest) {
    auto const document = open(folder.write("file.csv", "a,b\n x ,  \n"), false, true);
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "x");
    EXPECT_EQ(document.GetCell<std::string>("b", 0), "");
    EXPECT_EQ(read("a\n x \n").GetCell<std::string>("a", 0), " x ");
}

TEST_F(Csv, SkipsAByteOrderMark) {
    EXPECT_EQ(read("\xEF\xBB\xBF"
                   "a\n1\n")
                  .GetCell<std::string>("a", 0),
        "1");
}

TEST_F(Csv, KeepsACarriageReturnInTheLastCell) {
    auto const document = read("a,b\r\n1,2\r\n");
    EXPECT_EQ(document.GetCell<std::string>("b\r", 0), "2\r");
}

TEST_F(Csv, UnquotesCells) {
    auto const document = read("a,b,c\n\"x,y\",\"say \"\"hi\"\"\",\"\"\n");
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "x,y");
    EXPECT_EQ(document.GetCell<std::string>("b", 0), "say \"hi\"");
    EXPECT_EQ(document.GetCell<std::string>("c", 0), "");
}

TEST_F(Csv, StartsAQuotedCellOnlyAtItsBeginning) {
    auto const document = read("a,b,c,d\n1,0,x\"y,z\n1,0,x\"y\"\"z\",\"u,v\"\n1,0, \"y,z\"\n");
    EXPECT_EQ(document.GetCell<std::string>("c", 0), "x\"y");
    EXPECT_EQ(document.GetCell<std::string>("d", 0), "z");
    EXPECT_EQ(document.GetCell<std::string>("c", 1), "x\"y\"\"z\"");
    EXPECT_EQ(document.GetCell<std::string>("d", 1), "u,v");
    EXPECT_EQ(document.GetCell<std::string>("c", 2), " \"y");
    EXPECT_EQ(document.GetCell<std::string>("d", 2), "z\"");
}

TEST_F(Csv, EndsARowAtALineFeedEvenBetweenQuotes) {
    auto const document = read("a,b\n\"x\n1,2\n");
    EXPECT_EQ(document.GetRowCount(), 2U);
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "\"x");
    EXPECT_EQ(document.GetCell<std::string>("b", 1), "2");
}

TEST_F(Csv, KeepsLineBreaksBetweenQuotesOnRequest) {
    rapidcsv::Document const document(folder.write("file.csv", "a,b\n\"x\ny\",2\n"), rapidcsv::LabelParams(0, -1),
        rapidcsv::SeparatorParams(',', false, false, true, true));
    EXPECT_EQ(document.GetCell<std::string>("a", 0), "x\ny");
}

TEST_F(Csv, WritesWithQuotesWhatNeedsThem) {
    auto document = open("");
    document.SetColumnName(0, "a");
    document.SetColumnName(1, "b");
    document.InsertRow<std::string>(0, {"x,y", "say \"hi\""});
    document.InsertRow<std::string>(1, {"two words", "line\nbreak"});
    document.InsertRow<std::string>(2, {"plain", ""});
    document.Save(folder.path("out.csv"));
    EXPECT_EQ(
        content(folder.path("out.csv")), "a,b\n\"x,y\",\"say \"\"hi\"\"\"\n\"two words\",\"line\nbreak\"\nplain,\n");
}

TEST_F(Csv, InsertsRowsWhereAsked) {
    auto document = open("");
    document.SetColumnName(0, "a");
    document.InsertRow<std::string>(0, {"1"});
    document.InsertRow<std::string>(0, {"0"});
    document.InsertRow<std::string>(9, {"2"});
    document.Save(folder.path("out.csv"));
    EXPECT_EQ(content(folder.path("out.csv")), "a\n0\n1\n2\n");
}

TEST_F(Csv, WritesCarriageReturnsOnRequest) {
    rapidcsv::Document document("", rapidcsv::LabelParams(0, -1), rapidcsv::SeparatorParams(',', false, true));
    document.SetColumnName(0, "a");
    document.Save(folder.path("out.csv"));
    EXPECT_EQ(content(folder.path("out.csv")), "a\r\n");
}

TEST_F(Csv, HasNoColumnNamesWithoutALabelRow) {
    rapidcsv::Document document(folder.write("file.csv", "1,2\n3,4\n"), rapidcsv::LabelParams(-1, -1));
    EXPECT_EQ(document.GetRowCount(), 2U);
    EXPECT_NE(failure([&] { document.GetCell<std::string>("1", 0); }), "no exception");
    EXPECT_NE(failure([&] { document.SetColumnName(0, "a"); }), "no exception");
}

TEST_F(Csv, ThrowsForAFileThatCannotBeReadOrWritten) {
    EXPECT_THROW(open(folder.path("missing.csv")), std::ios_base::failure);
    EXPECT_THROW(open("").Save(folder.path("missing/out.csv")), std::ios_base::failure);
    auto document = open("");
    document.SetColumnName(0, "a");
    EXPECT_THROW(document.Save("/dev/full"), std::ios_base::failure);
}

TEST_F(Csv, ReadsBackWhatItWrote) {
    Noise noise(5);
    std::string const alphabet = "ab,\" \t#;";
    for (int round = 0; round < 100; ++round) {
        auto document = open("");
        document.SetColumnName(0, "first");
        document.SetColumnName(1, "second");
        std::vector<std::vector<std::string>> rows;
        for (std::size_t row = 0; row < noise.below(5); ++row) {
            std::vector<std::string> cells(2);
            for (auto& cell : cells) {
                for (std::size_t i = 0; i < noise.below(8); ++i) cell += alphabet[noise.length(alphabet.size())];
            }
            rows.push_back(cells);
            document.InsertRow<std::string>(row, cells);
        }
        document.Save(folder.path("out.csv"));
        auto const again = open(folder.path("out.csv"));
        ASSERT_EQ(again.GetRowCount(), rows.size());
        for (std::size_t row = 0; row < rows.size(); ++row) {
            ASSERT_EQ(again.GetCell<std::string>("first", row), rows[row][0]);
            ASSERT_EQ(again.GetCell<std::string>("second", row), rows[row][1]);
        }
    }
}
