// SPDX-License-Identifier: MIT
#include "terminal/terminal_style.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

namespace quorvel::terminal {

namespace {

constexpr std::size_t kFewestColumns = 40;

std::string setting(char const* name) {
    char const* value = std::getenv(name);
    return value ? value : "";
}

// The first of these that is set names the locale, as for setlocale.
bool isUtf8Locale() {
    for (auto const* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        auto locale = setting(name);
        if (locale.empty()) continue;
        std::transform(locale.begin(), locale.end(), locale.begin(),
            [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
    }
    return false;
}

} // namespace

TerminalStyle standardOutputStyle() {
    TerminalStyle style;
    if (::isatty(STDOUT_FILENO) == 0) return style;
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        style.columns = std::max<std::size_t>(size.ws_col, kFewestColumns);
    style.coloured = setting("NO_COLOR").empty() && setting("TERM") != "dumb";
    style.hasBlocks = isUtf8Locale();
    return style;
}

} // namespace quorvel::terminal
