// SPDX-License-Identifier: MIT
#include "host/stderr_log.h"

#include "host/console.h"
#include "host/host_error.h"
#include "host/printable.h"

namespace quorvel::host {

namespace {

bool isMute = false;

} // namespace

StderrLog::Mute::Mute() { isMute = true; }

StderrLog::Mute::~Mute() { isMute = false; }

StderrLog::StderrLog(modes::Log::Level level, std::string const& file) {
    if (!file.empty()) {
        _file.open(file, std::ios::app);
        if (!_file) throw systemError("write the log", file);
    }
    modes::Log::setShowLevel(level);
    modes::Log::setLogHandler(this);
}

StderrLog::~StderrLog() {
    modes::Log::setLogHandler(nullptr);
    modes::Log::setShowLevel(modes::Log::Info);
}

void StderrLog::handle(modes::Log::Level, std::string const& line) {
    if (isMute) return;
    if (_file.is_open()) {
        _file << printable(line) << std::endl;
    } else {
        console::say(printable(line));
    }
}

} // namespace quorvel::host
