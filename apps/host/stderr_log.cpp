// SPDX-License-Identifier: MIT
#include "host/stderr_log.h"

#include "host/target_table.h"

#include <iostream>

namespace quorvel::host {

StderrLog::StderrLog(modes::Log::Level level) {
    modes::Log::setShowLevel(level);
    modes::Log::setLogHandler(this);
}

StderrLog::~StderrLog() {
    modes::Log::setLogHandler(nullptr);
    modes::Log::setShowLevel(modes::Log::Info);
}

void StderrLog::handle(modes::Log::Level, std::string const& line) { std::cerr << shown(line) << '\n'; }

} // namespace quorvel::host
