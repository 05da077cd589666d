// SPDX-License-Identifier: MIT
#include "outputs/live_table.h"
#include "terminal/terminal.h"

#include "files/host_error.h"

#include "apps/outputs/pictures.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <optional>

#include <gtest/gtest.h>

using namespace quorvel;
using namespace quorvel::outputs::test;
using terminal::Key;
using terminal::Screen;
using terminal::Terminal;
using Kind = terminal::Key::Kind;

namespace {

// The user's side of a terminal.
class PseudoTerminal {
public:
    PseudoTerminal() : _side(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        if (::grantpt(_side) != 0 || ::unlockpt(_side) != 0) throw std::runtime_error("no pseudo-terminal");
        _device = ::ptsname(_side);
        _kept = ::open(_device.c_str(), O_RDWR | O_NOCTTY); // its settings live as long as someone has it open
        resize(80, 24);
    }
    ~PseudoTerminal() {
        ::close(_kept);
        ::close(_side);
    }
    PseudoTerminal(PseudoTerminal const&) = delete;
    PseudoTerminal& operator=(PseudoTerminal const&) = delete;

    std::string const& device() const { return _device; }

    void resize(unsigned short columns, unsigned short rows) const {
        winsize const size{rows, columns, 0, 0};
        ::ioctl(_side, TIOCSWINSZ, &size);
    }

    // The system delivers in its own time, in both directions: what is pressed is waited for, and what is
    // written up to a mark behind it.
    void press(std::string const& bytes) const {
        EXPECT_EQ(::write(_side, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        wait(_kept);
    }

    // What was written to it since the last time.
    std::string output() const {
        constexpr char kMark = '\x01';
        EXPECT_EQ(::write(_kept, &kMark, 1), 1);
        std::string all;
        for (char byte = 0; wait(_side) && ::read(_side, &byte, 1) == 1 && byte != kMark;) all += byte;
        return all;
    }

    termios settings() const {
        termios result{};
        EXPECT_EQ(::tcgetattr(_kept, &result), 0);
        return result;
    }

private:
    static bool wait(int file) {
        constexpr int kPatienceMs = 10'000;
        pollfd waiting{file, POLLIN, 0};
        return ::poll(&waiting, 1, kPatienceMs) == 1;
    }

    int _side;
    int _kept = -1;
    std::string _device;
};

bool contains(std::string const& text, std::string const& part) { return text.find(part) != std::string::npos; }

} // namespace

TEST(Terminal, ShowsScreensOnAPageOfItsOwnAndPutsEverythingBack) {
    PseudoTerminal const user;
    auto const before = user.settings();
    {
        Terminal const terminal(user.device(), true);
        EXPECT_TRUE(contains(user.output(), "\x1B[?1049h"));
        EXPECT_EQ(user.settings().c_lflag & (ICANON | ECHO), 0U);
        EXPECT_NE(user.settings().c_lflag & ISIG, 0U) << "Ctrl-C interrupts";
    }
    auto const after = user.output();
    EXPECT_TRUE(contains(after, "\x1B[?25h"));
    EXPECT_TRUE(contains(after, "\x1B[?1049l"));
    EXPECT_EQ(user.settings().c_lflag, before.c_lflag);
    EXPECT_EQ(user.settings().c_iflag, before.c_iflag);
    EXPECT_EQ(user.settings().c_cc[VSUSP], before.c_cc[VSUSP]);
}

TEST(Terminal, WritesOnlyTheLinesThatHaveChanged) {
    PseudoTerminal const user;
    Terminal terminal(user.device(), true);
    terminal.show({{{"first", {}}}, {{"second", {}}}});
    EXPECT_TRUE(contains(user.output(), "first"));
    terminal.show({{{"first", {}}}, {{"changed", {}}}});
    EXPECT_EQ(user.output(), "\x1B[2;1H\x1B[0m\x1B[2K\x1B[0mchanged");
    terminal.show({{{"first", {}}}, {{"changed", {}}}});
    EXPECT_EQ(user.output(), "");
    terminal.forget();
    terminal.show({{{"first", {}}}, {{"changed", {}}}});
    EXPECT_TRUE(contains(user.output(), "first"));
}

TEST(Terminal, WritesEverythingAfterAResize) {
    PseudoTerminal const user;
    Terminal terminal(user.device(), true);
    terminal.show({{{"first", {}}}});
    user.output();
    user.resize(100, 30);
    EXPECT_EQ(terminal.size().columns, 100);
    EXPECT_EQ(terminal.size().rows, 30);
    terminal.show({{{"first", {}}}});
    EXPECT_TRUE(contains(user.output(), "\x1B[2J\x1B[1;1H\x1B[0m\x1B[2K\x1B[0mfirst"));
}

TEST(Terminal, KnowsThatItWasClosed) {
    auto user = std::make_optional<PseudoTerminal>();
    Terminal terminal(user->device(), true);
    user->press("q");
    EXPECT_EQ(terminal.keys().size(), 1U);
    EXPECT_FALSE(terminal.hasHungUp());
    user.reset();
    EXPECT_TRUE(terminal.keys().empty());
    EXPECT_TRUE(terminal.hasHungUp());
}

TEST(Terminal, TakesAnUnknownSizeFor80By24) {
    PseudoTerminal const user;
    user.resize(0, 0);
    Terminal const terminal(user.device(), true);
    EXPECT_EQ(terminal.size().columns, 80);
    EXPECT_EQ(terminal.size().rows, 24);
}

TEST(Terminal, WritesAttributesAndColoursUnlessTheyAreNotWanted) {
    Screen const screen{{{"x", {.colour = terminal::Colour::Red, .bold = true}},
        {"y", {.colour = terminal::Colour::Yellow, .dim = true, .reverse = true}}}};
    PseudoTerminal const user;
    {
        Terminal terminal(user.device(), true);
        terminal.show(screen);
        EXPECT_TRUE(contains(user.output(), "\x1B[0;1;31mx\x1B[0;2;7;33my"));
    }
    Terminal terminal(user.device(), false);
    terminal.show(screen);
    EXPECT_TRUE(contains(user.output(), "\x1B[0;1mx\x1B[0;2;7my"));
}

TEST(Terminal, WantsColoursUnlessTheUserRefusesThem) {
    ::unsetenv("NO_COLOR");
    EXPECT_TRUE(Terminal::wantsColours());
    ::setenv("NO_COLOR", "", 1);
    EXPECT_TRUE(Terminal::wantsColours());
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(Terminal::wantsColours());
    ::unsetenv("NO_COLOR");
}

TEST(Terminal, GivesKeysWithoutWaitingForAny) {
    PseudoTerminal const user;
    Terminal terminal(user.device(), true);
    EXPECT_EQ(terminal.keys().size(), 0U);
    user.press("a\x1B[A\x1B");
    EXPECT_EQ(terminal.keys(), (std::vector<Key>{{Kind::Character, 'a'}, {Kind::Up}}));
    EXPECT_EQ(terminal.keys(), std::vector<Key>{{Kind::Escape}}) << "nothing came after it";
}

TEST(Terminal, SaysSoWhenThereIsNone) {
    EXPECT_THROW(Terminal("/nowhere", true), files::HostError);
    EXPECT_THROW(Terminal("/dev/null", true), files::HostError);
}

TEST(LiveTable, ShowsThePictureAndFollowsKeysAndSize) {
    PseudoTerminal const user;
    outputs::LiveTable table(std::make_unique<Terminal>(user.device(), true));
    EXPECT_TRUE(contains(user.output(), "0 aircraft"));
    table.picture(pictureOf({knownAircraft()}));
    EXPECT_TRUE(contains(user.output(), "KLM1023"));
    user.press("\r");
    table.poll();
    EXPECT_TRUE(contains(user.output(), "Aircraft 4840D6"));
    user.resize(120, 40);
    table.poll();
    EXPECT_TRUE(contains(user.output(), "\x1B[40;1H"));
    user.press("\f");
    table.poll();
    EXPECT_TRUE(contains(user.output(), "Aircraft 4840D6"));
    user.press("qq");
    table.poll();
    EXPECT_TRUE(table.wantsToQuit());
    EXPECT_GE(table.keyFile(), 0);
}
