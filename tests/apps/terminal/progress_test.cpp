// SPDX-License-Identifier: MIT
#include "terminal/progress.h"

#include "terminal/console.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <pty.h>
#include <system_error>
#include <unistd.h>

using quorvel::terminal::Progress;
namespace console = quorvel::terminal::console;

namespace {

using std::chrono::milliseconds;

/// Standard error in a terminal, while it lives.
class ErrorTerminal {
public:
    ErrorTerminal() : _before(::dup(STDERR_FILENO)) {
        int terminal = -1;
        if (_before < 0 || ::openpty(&_main, &terminal, nullptr, nullptr, nullptr) != 0)
            throw std::system_error(errno, std::generic_category(), "no terminal");
        std::fflush(stderr);
        ::dup2(terminal, STDERR_FILENO);
        ::close(terminal);
    }
    ~ErrorTerminal() {
        ::dup2(_before, STDERR_FILENO);
        ::close(_before);
        ::close(_main);
    }
    ErrorTerminal(ErrorTerminal const&) = delete;
    ErrorTerminal& operator=(ErrorTerminal const&) = delete;

    /// What was written to it since the last call. It comes at any time, but in order: so a mark
    /// is written behind it, and waited for.
    std::string shown() const {
        constexpr char kMark = '\x01';
        std::fputc(kMark, stderr);
        std::fflush(stderr);
        std::string text;
        char byte = 0;
        while (::read(_main, &byte, 1) == 1 && byte != kMark) text += byte;
        return text;
    }

private:
    int _before;
    int _main = -1;
};

/// A clock that advances on request.
class Watch {
public:
    Progress::SteadyClock clock() {
        return [this] { return _now; };
    }
    void pass(milliseconds time) { _now += time; }

private:
    Progress::SteadyTime _now;
};

} // namespace

TEST(Progress, TellsHowFarHowFastAndHowLongStillTwiceASecond) {
    ErrorTerminal const terminal;
    Watch watch;
    {
        Progress progress("sky.beast", 1000, watch.clock());
        watch.pass(milliseconds(499));
        progress.advance(100, 400);
        EXPECT_EQ(terminal.shown(), "") << "what is done at once needs no line";
        watch.pass(milliseconds(1501));
        progress.advance(250, 1000);
        EXPECT_EQ(terminal.shown(), "\r\x1B[Ksky.beast: 25 %, 1000 frames, 500 frames/s, 6 s left");
        watch.pass(milliseconds(499));
        progress.advance(300, 1200);
        EXPECT_EQ(terminal.shown(), "");
        watch.pass(milliseconds(1501));
        progress.advance(2000, 6000);
        EXPECT_EQ(terminal.shown(), "\r\x1B[Ksky.beast: 100 %, 6000 frames, 1500 frames/s, 0 s left")
            << "of a file that grew";
    }
    EXPECT_EQ(terminal.shown(), "\r\x1B[K") << "and takes its line away";
}

TEST(Progress, MakesRoomForOtherLines) {
    ErrorTerminal const terminal;
    Watch watch;
    Progress progress("sky.beast", 1000, watch.clock());
    watch.pass(milliseconds(1000));
    progress.advance(500, 10);
    EXPECT_NE(terminal.shown(), "");
    console::say("something");
    EXPECT_EQ(terminal.shown(), "\r\x1B[Ksomething\r\n");
    console::say("more");
    EXPECT_EQ(terminal.shown(), "more\r\n");
}

TEST(Progress, LeavesAScreenThatIsInUseAlone) {
    ErrorTerminal const terminal;
    Watch watch;
    Progress progress("sky.beast", 1000, watch.clock());
    console::ScreenInUse const inUse;
    watch.pass(milliseconds(1000));
    progress.advance(500, 10);
    EXPECT_EQ(terminal.shown(), "");
}

TEST(Progress, SaysNothingOfAWholeThatIsNotKnown) {
    ErrorTerminal const terminal;
    Watch watch;
    Progress unknown("standard input", {}, watch.clock());
    Progress empty("empty.beast", 0, watch.clock());
    watch.pass(milliseconds(1000));
    unknown.advance(500, 10);
    empty.advance(500, 10);
    EXPECT_EQ(terminal.shown(), "");
}

TEST(Progress, SaysNothingWithoutATerminal) {
    testing::internal::CaptureStderr();
    Watch watch;
    {
        Progress progress("sky.beast", 1000, watch.clock());
        watch.pass(milliseconds(1000));
        progress.advance(500, 10);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
