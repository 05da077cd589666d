// SPDX-License-Identifier: MIT
#include <modes/modes_encapsulation.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/random_bytes.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;
using test::LogLine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint64_t kMidnight = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC
constexpr std::uint64_t kNow = kMidnight + 45'296'789;

std::vector<std::string> framesOf(std::string buffer) {
    std::vector<std::string> frames;
    for (auto const& record : ModeSEncapsulation::extractAvr(buffer)) frames.push_back(record->data());
    EXPECT_EQ(buffer, "") << "all lines are used up";
    return frames;
}

LogLine corrupted(char const* what) {
    return {Log::Info, "ModeSEncapsulation", std::string("Corrupted AVR message (") + what + " error):"};
}

} // namespace

TEST(Avr, YieldsTheFrameOfALineWithTheHostsTime) {
    test::SteeredClock const clock(kNow);
    std::string buffer = "*8D4840D6202CC371C32CE0576098;\n";
    auto const records = ModeSEncapsulation::extractAvr(buffer);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0]->data(), fromHex("8D4840D6202CC371C32CE0576098"));
    EXPECT_EQ(records[0]->timeStamp(), kNow);
    EXPECT_EQ(buffer, "");
}

TEST(Avr, YieldsTheReceiversTimeOfATimedLine) {
    test::SteeredClock const clock(kNow);
    std::string buffer =
        "@2A300754D4C05D4CA2D46B609F;\n@2A300754D4C08D4840D6202CC371C32CE0576098;\n@0000000000001234;\n";
    auto const records = ModeSEncapsulation::extractAvr(buffer);
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0]->data(), fromHex("5D4CA2D46B609F"));
    EXPECT_EQ(records[0]->timeStamp(), kMidnight + 43'200'123);
    EXPECT_EQ(records[1]->data().size(), 14U);
    EXPECT_EQ(records[2]->data(), fromHex("1234"));
    EXPECT_EQ(records[2]->timeStamp(), kMidnight);
}

TEST(Avr, AcceptsLinesOfTheKnownLengths) {
    EXPECT_EQ(framesOf("*ABCD;\n").size(), 1U);
    EXPECT_EQ(framesOf(":5D4CA2D46B609F;\n").size(), 1U);
    for (std::size_t digits = 0; digits < 60; ++digits) {
        CapturedLog log(Log::Info);
        for (char const head : {'*', ':', '@'}) {
            auto const line = std::string(1, head) + std::string(digits, 'A') + ";\n";
            auto const bytes = head == '@' ? static_cast<int>(digits / 2) - 6 : static_cast<int>(digits / 2);
            bool const isFrame = bytes == 2 || bytes == 7 || bytes == 14;
            auto const frames = framesOf(line);
            EXPECT_EQ(frames.size(), isFrame ? 1U : 0U) << line;
            if (isFrame) {
                EXPECT_EQ(frames[0], std::string(static_cast<std::size_t>(bytes), '\xAA'));
                EXPECT_THAT(log.take(), IsEmpty());
            } else {
                EXPECT_THAT(log.take(), ElementsAre(corrupted("length")));
            }
        }
    }
}

TEST(Avr, LogsEachLineItGets) {
    CapturedLog log;
    framesOf("*ABCD;\n\n?x\n");
    EXPECT_THAT(
        log.take(), ElementsAre(LogLine{Log::Debug, "ModeSEncapsulation", "Get AVR line (size = 6): *ABCD;"},
                        LogLine{Log::Debug, "ModeSEncapsulation", "Get AVR line (size = 0): "}, corrupted("head"),
                        LogLine{Log::Debug, "ModeSEncapsulation", "Get AVR line (size = 2): ?x"}));
}

TEST(Avr, DropsCorruptedLinesWithAWordAboutIt) {
    struct {
        char const* line;
        char const* error; // null for lines that are dropped silently
    } const cases[] = {
        {"#5D4CA2D46B609F;\n", "head"},
        {"\n", "head"},
        {"x\n", "head"},
        {";\n", "head"},
        {" *ABCD;\n", "head"},
        {"*ABCD;\r\n", "tail"},
        {"*8D4840D6202CC3", "tail"},
        {"*\n", "tail"},
        {"@\n", "tail"},
        {"*;\n", "length"},
        {"*A;\n", "length"},
        {"*ABC;\n", "length"},
        {"@2A3000000000ABCDEF01;\n", "length"},
        {"@AB;\n", "length"},
        {"?5D4CA2D46B609F;\n", nullptr},
        {"?\n", nullptr},
    };
    for (auto const& [line, error] : cases) {
        CapturedLog log(Log::Info);
        EXPECT_TRUE(framesOf(line).empty()) << line;
        if (error) {
            EXPECT_THAT(log.take(), ElementsAre(corrupted(error))) << line;
        } else {
            EXPECT_THAT(log.take(), IsEmpty()) << line;
        }
    }
}

TEST(Avr, KnowsThreeHeadsAndNoOther) {
    for (unsigned head = 0; head < 256; ++head) {
        if (head == '\n') continue;
        auto const first = std::string(1, static_cast<char>(head));
        CapturedLog log(Log::Info);
        EXPECT_EQ(framesOf(first + "ABCD;\n").size(), head == '*' || head == ':' ? 1U : 0U) << head;
        EXPECT_EQ(framesOf(first + "000000000000ABCD;\n").size(), head == '@' ? 1U : 0U) << head;
    }
}

TEST(Avr, GoesOnAfterACorruptedLine) {
    CapturedLog log(Log::Info);
    EXPECT_EQ(framesOf("*5D4CA2D46B609F;\nnonsense\n*ABCD;\n").size(), 2U);
    EXPECT_THAT(log.take(), ElementsAre(corrupted("head")));
}

TEST(Avr, UsesUpATrailingFragment) {
    CapturedLog log(Log::Info);
    EXPECT_TRUE(framesOf("*8D4840D6202CC3").empty());
    EXPECT_EQ(framesOf("*ABCD;").size(), 1U) << "a last line needs no line feed";
    EXPECT_TRUE(framesOf("").empty());
}

TEST(Avr, IgnoresALoneDigit) { EXPECT_EQ(framesOf("*ABCDE;\n"), std::vector{fromHex("ABCD")}); }

// Each pair of characters counts as the C library reads it in base 16: blanks and signs are accepted in
// front, anything that is not a digit ends the number.
TEST(Avr, ReadsPairsAsTheCLibraryDoes) {
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            char const pair[] = {static_cast<char>(first), static_cast<char>(second), '\0'};
            if (first == '\n' || second == '\n') continue;
            auto const expected = static_cast<char>(std::strtol(pair, nullptr, 16));
            auto const frames = framesOf(std::string("*") + pair[0] + pair[1] + "00;\n");
            ASSERT_EQ(frames.size(), 1U);
            ASSERT_EQ(frames[0][0], expected) << first << ", " << second;
        }
    }
}

TEST(Avr, YieldsTheSameFramesInPiecesOfWholeLines) {
    test::Noise noise(3);
    std::string text;
    std::vector<std::string> expected;
    for (int i = 0; i < 200; ++i) {
        ModeSEncapsulation record;
        record.setData(noise.bytes(i % 3 == 0 ? 2 : i % 3 == 1 ? 7 : 14));
        record.setTimeStamp(i % 2 == 0 ? 0 : 43'200'000);
        expected.push_back(record.data());
        text += ModeSEncapsulation::encapsulateAvr(record) + (i % 5 == 0 ? "?\n" : "");
    }
    EXPECT_EQ(framesOf(text), expected);
    std::vector<std::string> frames;
    for (std::size_t at = 0; at < text.size();) {
        auto const end = text.find('\n', std::min(at + noise.length(200), text.size() - 1)) + 1;
        auto const piece = framesOf(text.substr(at, end - at));
        frames.insert(frames.end(), piece.begin(), piece.end());
        at = end;
    }
    EXPECT_EQ(frames, expected);
}

TEST(Avr, IsWrittenWithTheTimeWhenThereIsOne) {
    ModeSEncapsulation record;
    record.setData(fromHex("5D4CA2D46B609F"));
    EXPECT_EQ(ModeSEncapsulation::encapsulateAvr(record), "*5D4CA2D46B609F;\n");
    record.setTimeStamp(43'200'123);
    EXPECT_EQ(ModeSEncapsulation::encapsulateAvr(record), "@2A300001E0785D4CA2D46B609F;\n");
    record.setTimeStamp(kMidnight + 43'200'123);
    EXPECT_EQ(ModeSEncapsulation::encapsulateAvr(record), "@2A300001E0785D4CA2D46B609F;\n");
    record.setTimeStamp(kMidnight + 86'399'999);
    EXPECT_EQ(ModeSEncapsulation::encapsulateAvr(record), "@545FC00F3E585D4CA2D46B609F;\n");
    record.setTimeStamp(86'400'000);
    EXPECT_EQ(ModeSEncapsulation::encapsulateAvr(record), "@0000000000005D4CA2D46B609F;\n");
    record.setData("");
    EXPECT_EQ(ModeSEncapsulation::encapsulateAvr(record), "@000000000000;\n");
}

TEST(Avr, LosesTheMillisecondsOnTheWayBack) {
    test::SteeredClock const clock(kNow);
    ModeSEncapsulation record;
    record.setData(fromHex("5D4CA2D46B609F"));
    record.setTimeStamp(43'200'123);
    auto line = ModeSEncapsulation::encapsulateAvr(record);
    auto const records = ModeSEncapsulation::extractAvr(line);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0]->timeStamp(), kMidnight + 43'200'000);
}
