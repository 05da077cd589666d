// SPDX-License-Identifier: MIT
#include "terminal/progress.h"

#include "terminal/console.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace quorvel::terminal {

namespace {

constexpr std::chrono::milliseconds kInterval{500};
constexpr char kEraseLine[] = "\r\x1B[K";

bool hasLine = false; // on the one screen

} // namespace

Progress::Progress(std::string const& name, std::optional<std::uint64_t> whole, SteadyClock clock)
    : _name(name)
    , _whole(whole.value_or(0))
    , _shows(_whole > 0 && ::isatty(STDERR_FILENO) != 0)
    , _clock(std::move(clock))
    , _begin(_clock())
    , _lastShown(_begin) {}

Progress::~Progress() { erase(); }

void Progress::erase() {
    if (hasLine) std::fputs(kEraseLine, stderr);
    hasLine = false;
}

void Progress::advance(std::uint64_t done, std::uint64_t frames) {
    auto const now = _clock();
    if (!_shows || done == 0 || console::isScreenInUse() || now - _lastShown < kInterval) return;
    _lastShown = now;
    hasLine = true;
    auto const seconds = std::chrono::duration<double>(now - _begin).count();
    auto const share = std::min(static_cast<double>(done) / static_cast<double>(_whole), 1.0);
    std::fprintf(stderr, "%s%s: %.0f %%, %llu frames, %.0f frames/s, %.0f s left", kEraseLine, _name.c_str(),
        100 * share, static_cast<unsigned long long>(frames), static_cast<double>(frames) / seconds,
        seconds / share - seconds);
    std::fflush(stderr);
}

} // namespace quorvel::terminal
