// SPDX-License-Identifier: MIT
#include "host/progress.h"

#include <cstdio>
#include <unistd.h>

namespace quorvel::host {

namespace {

constexpr std::chrono::milliseconds kInterval{500};
constexpr char kEraseLine[] = "\r\x1B[K";

} // namespace

Progress::Progress(std::string const& name, std::optional<std::uint64_t> size)
    : _name(name)
    , _size(size.value_or(0))
    , _shows(_size > 0 && ::isatty(STDERR_FILENO) != 0)
    , _lastShown(std::chrono::steady_clock::now()) {}

Progress::~Progress() {
    if (_hasLine) std::fputs(kEraseLine, stderr);
}

void Progress::advance(std::uint64_t bytes, std::uint64_t frames) {
    _done += bytes;
    auto const now = std::chrono::steady_clock::now();
    if (!_shows || now - _lastShown < kInterval) return;
    _lastShown = now;
    _hasLine = true;
    std::fprintf(stderr, "%s%s: %.0f %%, %llu frames", kEraseLine, _name.c_str(),
                 100.0 * static_cast<double>(_done) / static_cast<double>(_size),
                 static_cast<unsigned long long>(frames));
    std::fflush(stderr);
}

} // namespace quorvel::host
