// SPDX-License-Identifier: MIT
#include "inspect/csv_frames.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvel::inspect {

namespace {

using modes::test::fromHex;

constexpr char const* kShort = "5D4CA2D46B609F";
constexpr char const* kLong = "8D4840D6202CC371C32CE0576098";
std::string const kLines = std::string("seconds,frame\r\n0.5,") + kShort + "\r\n\n1446332400.1234," + kLong;

} // namespace

TEST(CsvFrames, HaveTheBytesAndTheTimeOfTheirLines) {
    CsvFrames csv;
    airspace::Frames frames;
    csv.feed(kLines, frames);
    csv.finish(frames);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].view(), fromHex(kShort));
    EXPECT_EQ(frames[0].time, 500U);
    EXPECT_EQ(frames[1].view(), fromHex(kLong));
    EXPECT_EQ(frames[1].time, 1'446'332'400'123U);
    EXPECT_EQ(csv.badLines(), 0U);
}

TEST(CsvFrames, AreTheSameWhereverTheBytesAreCut) {
    for (std::size_t cut = 0; cut <= kLines.size(); ++cut) {
        CsvFrames csv;
        airspace::Frames frames;
        csv.feed(kLines.substr(0, cut), frames);
        csv.feed(kLines.substr(cut), frames);
        csv.finish(frames);
        EXPECT_EQ(frames.size(), 2U) << cut;
        EXPECT_EQ(csv.badLines(), 0U) << cut;
    }
}

TEST(CsvFrames, CountLinesThatAreNone) {
    for (auto const* bad : {"noise", "1,5D4CA2D46B60", "1,5D4CA2D46B609", "1,5D4CA2D46B60GG", "-1,5D4CA2D46B609F",
             "1e5,5D4CA2D46B609F", "1.2.3,5D4CA2D46B609F", ",5D4CA2D46B609F", "999999999999999999,5D4CA2D46B609F",
             "1,5D4CA2D46B609F,2", "1,7700"}) {
        CsvFrames csv;
        airspace::Frames frames;
        csv.feed(std::string("0,") + kShort + "\n" + bad + "\n", frames);
        EXPECT_EQ(frames.size(), 1U) << bad;
        EXPECT_EQ(csv.badLines(), 1U) << bad;
    }
}

TEST(CsvFrames, DropLinesThatAreTooLongAndGoOn) {
    CsvFrames csv;
    airspace::Frames frames;
    csv.feed(std::string("0,") + kShort + "\n", frames);
    for (int i = 0; i < 1000; ++i) csv.feed(std::string(1000, '8'), frames);
    csv.feed(std::string("\n1,") + kShort + "\n", frames);
    EXPECT_EQ(frames.size(), 2U);
    EXPECT_EQ(csv.badLines(), 1U);
}

TEST(CsvFrames, AreRecognizedByTheFirstLineThatIsNoHeader) {
    EXPECT_EQ(CsvFrames::recognizes(kLines, false), true);
    EXPECT_EQ(CsvFrames::recognizes("0.5,5D4CA2D46B609F\n", false), true);
    EXPECT_EQ(CsvFrames::recognizes("0.5,5D4CA2D46B609F", true), true);
    EXPECT_EQ(CsvFrames::recognizes("0.5,5D4CA2D46B", false), std::nullopt);
    EXPECT_EQ(CsvFrames::recognizes("seconds,frame\n", false), std::nullopt);
    EXPECT_EQ(CsvFrames::recognizes("", false), std::nullopt);
}

TEST(CsvFrames, AreNotRecognizedInAnythingElse) {
    for (auto const* other : {"*5D4CA2D46B609F;\n", "5D4CA2D46B609F\n", "\x1A\x32", "MSG,3,1,1\nMSG,3,1,1\n",
             "a,b\nc,d\n", "{\"a\":1,\n\"b\":2}\n", "0.5,noise\n"})
        EXPECT_EQ(CsvFrames::recognizes(other, false), false) << other;
    EXPECT_EQ(CsvFrames::recognizes(std::string(1000, 'a'), false), false);
    EXPECT_EQ(CsvFrames::recognizes("", true), false);
    EXPECT_EQ(CsvFrames::recognizes("seconds,frame\n", true), false);
}

} // namespace quorvel::inspect
