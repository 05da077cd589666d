// SPDX-License-Identifier: MIT
#include <modes/log.h>

#include "core/log_if_shown.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <stdexcept>

using namespace quorvel::modes;
using test::CapturedLog;
using test::Holds;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Everything that goes to std::clog while this lives.
class CapturedClog {
public:
    CapturedClog() : _before(std::clog.rdbuf(_text.rdbuf())) {}
    ~CapturedClog() { std::clog.rdbuf(_before); }
    std::string text() const { return _text.str(); }

private:
    std::ostringstream _text;
    std::streambuf* _before;
};

// A handler as a host writes it, made and deleted through its own type.
class ThrowingHandler : public LogHandler {
public:
    void handle(Log::Level, std::string const& line) override { throw std::runtime_error(line); }
};

} // namespace

TEST(Log, DropsDebugLinesUntilTheHostLowersTheLevel) {
    CapturedLog log(Log::Info);
    Log::log(Log::Debug, "Test", "unseen");
    EXPECT_THAT(log.take(), IsEmpty());
    Log::setShowLevel(Log::Debug);
    Log::log(Log::Debug, "Test", "seen");
    EXPECT_THAT(log.take(), Holds(Log::Debug, "Test", "seen"));
}

TEST(Log, ShowsInfoAndAboveFromTheStart) {
    EXPECT_FALSE(logShows(Log::Debug));
    EXPECT_TRUE(logShows(Log::Info));
    EXPECT_TRUE(logShows(Log::Error));
}

TEST(Log, PassesEveryLevelFromTheShowLevelUp) {
    CapturedLog log(Log::Warning);
    for (auto const level : {Log::Debug, Log::Info, Log::Warning, Log::Error}) Log::log(level, "Test", "line");
    EXPECT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(log.lines()[0].level, Log::Warning);
    EXPECT_EQ(log.lines()[1].level, Log::Error);
}

// The width of the module column belongs to the process and only grows, so one test follows it from the start
// (each test runs in a process of its own under ctest; the first check holds in a joint run too while no
// wider module has logged before).
TEST(Log, PadsTheModuleToTheWidestNameShownSoFar) {
    CapturedLog log(Log::Info);
    Log::log(Log::Info, "ModeSDecoder", "Initialized.");
    Log::log(Log::Info, "AircraftDB", "Initialized.");
    EXPECT_THAT(log.rawLines(), ElementsAre("[ModeSDecoder] Initialized.", "[AircraftDB  ] Initialized."));

    Log::log(Log::Debug, "AModuleWhoseLineNobodySees", "x");
    Log::log(Log::Info, "AircraftDB", "again");
    EXPECT_EQ(log.rawLines().back(), "[AircraftDB  ] again");
}

TEST(Log, CutsFormattedTextsAt1023Characters) {
    CapturedLog log;
    std::string const longText(2000, 'x');
    Log::log(Log::Info, "Test", "%s", longText.c_str());
    Log::log(Log::Info, "Test", "%s", std::string(1023, 'y').c_str());
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(log.lines()[0].text, std::string(1023, 'x'));
    EXPECT_EQ(log.lines()[1].text, std::string(1023, 'y'));
}

TEST(Log, DoesNotCutTextsThatNeedNoFormatting) {
    CapturedLog log;
    Log::log(Log::Info, "Test", std::string(2000, 'x'));
    EXPECT_EQ(log.lines().at(0).text.size(), 2000U);
}

TEST(Log, FormatsItsArguments) {
    CapturedLog log;
    Log::log(Log::Warning, "Test", "Raw bin buffer over size (%u), data disgarded", 8U);
    EXPECT_THAT(log.take(), Holds(Log::Warning, "Test", "Raw bin buffer over size (8), data disgarded"));
}

TEST(Log, FormatsSuppressedLinesToo) {
    CapturedLog log(Log::Info);
    int written = 0;
    Log::log(Log::Debug, "Test", "four%n characters", &written);
    EXPECT_EQ(written, 4);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(LogIfShown, FormatsNothingThatIsSuppressed) {
    CapturedLog log(Log::Info);
    int written = 0;
    logIfShown(Log::Debug, "Test", "four%n characters", &written);
    EXPECT_EQ(written, 0);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(LogIfShown, WritesTheLineOfThePrintfStyleLog) {
    CapturedLog log(Log::Info);
    logIfShown(Log::Warning, "Test", "%d of %s", 1, std::string(2000, 'x').c_str());
    EXPECT_THAT(log.take(), Holds(Log::Warning, "Test", "1 of " + std::string(1018, 'x')));
}

TEST(Log, WritesToTheStandardLogStreamWithoutAHandler) {
    CapturedClog clog;
    {
        CapturedLog log;
        Log::log(Log::Info, "Test", "to the handler");
    }
    Log::setLogHandler(nullptr);
    Log::log(Log::Info, "ALongModuleName", "one");
    Log::log(Log::Debug, "ALongModuleName", "suppressed");
    Log::log(Log::Info, "ALongModuleName", "two %d", 2);
    EXPECT_EQ(clog.text(), "[ALongModuleName] one\n[ALongModuleName] two 2\n");
}

TEST(Log, LetsTheHandlersExceptionPass) {
    ThrowingHandler handler;
    Log::setLogHandler(&handler);
    EXPECT_THROW(Log::log(Log::Info, "Test", "line"), std::runtime_error);
    Log::setLogHandler(nullptr);
}
