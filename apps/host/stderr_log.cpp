// SPDX-License-Identifier: MIT
#include "host/stderr_log.h"

#include "host/progress.h"
#include "host/target_table.h"

#include <iostream>

namespace quorvel::host {

namespace {

bool isMute = false;

} // namespace

StderrLog::Mute::Mute() { isMute = true; }

StderrLog::Mute::~Mute() { isMute = false; }

StderrLog::StderrLog(modes::Log::Level level) {
    modes::Log::setShowLevel(level);
    modes::Log::setLogHandler(this);
}

StderrLog::~StderrLog() {
    modes::Log::setLogHandler(nullptr);
    modes::Log::setShowLevel(modes::Log::Info);
}

void StderrLog::handle(modes::Log::Level, std::string const& line) {
    if (isMute) return;
    Progress::erase();
    std::cerr << shown(line) << '\n';
}

} // namespace quorvel::host
