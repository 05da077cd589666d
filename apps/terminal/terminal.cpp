// SPDX-License-Identifier: MIT
#include "terminal/terminal.h"

#include "files/host_error.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace quorvel::terminal {

namespace {

// Alternate screen, no cursor, no wrapping at the right border; and back.
constexpr char kEnter[] = "\x1B[?1049h\x1B[?25l\x1B[?7l\x1B[2J";
constexpr char kLeave[] = "\x1B[0m\x1B[?7h\x1B[?25h\x1B[?1049l";

int opened(std::string const& device, int flags) { return ::open(device.c_str(), flags | O_NOCTTY | O_CLOEXEC); }

// Keys come one by one and unseen; Ctrl-C still interrupts. A stopped program would leave the terminal as it
// is, so Ctrl-Z does nothing.
termios keyByKey(termios settings) {
    settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | IEXTEN);
    settings.c_iflag &= ~static_cast<tcflag_t>(IXON | ICRNL);
    settings.c_cc[VSUSP] = _POSIX_VDISABLE;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return settings;
}

std::string attributes(Style const& style, bool colours) {
    std::string codes = "\x1B[0";
    if (style.bold) codes += ";1";
    if (style.dim) codes += ";2";
    if (style.reverse) codes += ";7";
    if (colours && style.colour == Colour::Red) codes += ";31";
    if (colours && style.colour == Colour::Yellow) codes += ";33";
    return codes + "m";
}

// A line is cleared before it is written: a cursor at the right border would erase the last character.
std::string lineText(std::size_t row, ScreenLine const& line, bool colours) {
    auto text = "\x1B[" + std::to_string(row + 1) + ";1H\x1B[0m\x1B[2K";
    for (auto const& span : line) text += attributes(span.style, colours) + span.text;
    return text;
}

} // namespace

bool Terminal::isAvailable() {
    auto const* kind = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

bool Terminal::wantsColours() {
    auto const* refused = std::getenv("NO_COLOR");
    return refused == nullptr || *refused == '\0';
}

Terminal::Terminal(std::string const& device, bool colours) : _colours(colours) {
    errno = 0;
    _output = opened(device, O_WRONLY);
    _input = _output < 0 ? -1 : opened(device, O_RDONLY | O_NONBLOCK);
    if (_input < 0 || ::tcgetattr(_input, &_before) != 0) {
        auto const reason = errno;
        if (_input >= 0) ::close(_input);
        if (_output >= 0) ::close(_output);
        errno = reason;
        throw files::systemError("use the terminal", device);
    }
    auto const settings = keyByKey(_before);
    ::tcsetattr(_input, TCSADRAIN, &settings);
    write(kEnter);
}

Terminal::~Terminal() {
    write(kLeave);
    ::tcsetattr(_input, TCSAFLUSH, &_before); // keys pressed meanwhile are not for the shell
    ::close(_input);
    ::close(_output);
}

Terminal::Size Terminal::size() const {
    winsize size{};
    if (::ioctl(_output, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
    return {size.ws_col, size.ws_row};
}

std::vector<Key> Terminal::keys() {
    std::array<char, 256> bytes{};
    auto const before = _pending.size();
    ssize_t count = 0;
    while ((count = ::read(_input, bytes.data(), bytes.size())) > 0) {
        _pending.append(bytes.data(), static_cast<std::size_t>(count));
    }
    _hasHungUp = count == 0 || (errno != EAGAIN && errno != EINTR);
    bool const hasPaused = _pending.size() == before;
    return takeKeys(_pending, hasPaused);
}

void Terminal::show(Screen const& screen) {
    auto const columns = static_cast<std::size_t>(size().columns);
    std::string text;
    if (_shown.size() != screen.size() || _shownColumns != columns) {
        text = "\x1B[0m\x1B[2J";
        _shown.assign(screen.size(), {});
        _shownColumns = columns;
    }
    for (std::size_t row = 0; row < screen.size(); ++row) {
        if (screen[row] != _shown[row]) text += lineText(row, screen[row], _colours);
    }
    _shown = screen;
    write(text);
}

// A terminal that is gone takes nothing any more; the signal for that ends the program.
void Terminal::write(std::string const& bytes) const {
    for (std::string_view rest = bytes; !rest.empty();) {
        auto const count = ::write(_output, rest.data(), rest.size());
        if (count > 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

} // namespace quorvel::terminal
