// SPDX-License-Identifier: MIT
#include "run/keyboard.h"

#include <chrono>

namespace quorvel::run {

namespace {

constexpr std::chrono::milliseconds kLookAtSize{250};

} // namespace

Keyboard::Keyboard(outputs::LiveTable& table, TrackRun& run)
    : _table(table), _run(run), _keys(run.context(), table.keyFile()), _timer(run.context()) {
    waitForKey();
    waitForSize();
}

Keyboard::~Keyboard() { _keys.release(); } // the file is the terminal's

void Keyboard::waitForKey() {
    _keys.async_wait(asio::posix::stream_descriptor::wait_read, [this](std::error_code const& error) {
        if (error) return;
        poll();
        if (!_table.wantsToQuit()) waitForKey(); // a terminal that was closed is readable for ever
    });
}

void Keyboard::waitForSize() {
    _timer.expires_after(kLookAtSize);
    _timer.async_wait([this](std::error_code const& error) {
        if (error) return;
        poll();
        waitForSize();
    });
}

void Keyboard::poll() {
    _table.poll();
    if (_table.wantsToQuit()) _run.stop();
}

} // namespace quorvel::run
