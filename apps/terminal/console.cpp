// SPDX-License-Identifier: MIT
#include "terminal/console.h"

#include "terminal/progress.h"

#include <deque>
#include <iostream>

namespace quorvel::terminal::console {

namespace {

constexpr std::size_t kKeptLines = 50;

bool inUse = false; // there is one screen
std::deque<std::string> kept;

} // namespace

void say(std::string const& line) {
    if (!inUse) {
        Progress::erase();
        std::cerr << line << '\n';
        return;
    }
    kept.push_back(line);
    if (kept.size() > kKeptLines) kept.pop_front();
}

bool isScreenInUse() { return inUse; }

ScreenInUse::ScreenInUse() { inUse = true; }

ScreenInUse::~ScreenInUse() {
    inUse = false;
    for (auto const& line : kept) say(line);
    kept.clear();
}

} // namespace quorvel::terminal::console
