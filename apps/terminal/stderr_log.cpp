// SPDX-License-Identifier: MIT
#include "terminal/stderr_log.h"

#include "files/host_error.h"
#include "files/printable.h"
#include "files/replaced_file.h"
#include "terminal/console.h"

namespace quorvel::terminal {

namespace {

constexpr char kWrite[] = "write the log";
bool isMute = false;

} // namespace

StderrLog::Mute::Mute() { isMute = true; }

StderrLog::Mute::~Mute() { isMute = false; }

StderrLog::StderrLog(modes::Log::Level level, std::string const& file) {
    if (!file.empty()) {
        files::makeFolderOf(file, kWrite);
        _file.open(file, std::ios::app);
        if (!_file) throw files::systemError(kWrite, file);
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
        _file << files::printable(line) << std::endl;
    } else {
        console::say(files::printable(line));
    }
}

} // namespace quorvel::terminal
