// SPDX-License-Identifier: MIT
#include "support/captured_log.h"

#include <utility>

namespace quorvel::modes::test {

std::ostream& operator<<(std::ostream& out, LogLine const& line) {
    return out << "{level " << line.level << ", " << line.module << ": " << line.text << "}";
}

CapturedLog::CapturedLog(Log::Level showLevel) {
    Log::setShowLevel(showLevel);
    Log::setLogHandler(this);
}

CapturedLog::~CapturedLog() {
    Log::setLogHandler(nullptr);
    Log::setShowLevel(Log::Info);
}

void CapturedLog::handle(Log::Level level, std::string const& line) {
    _rawLines.push_back(line);
    auto const bracket = line.find("] ");
    auto module = line.substr(1, bracket - 1);
    module.erase(module.find_last_not_of(' ') + 1);
    _lines.push_back({level, module, line.substr(bracket + 2)});
}

std::vector<LogLine> CapturedLog::take() { return std::exchange(_lines, {}); }

} // namespace quorvel::modes::test
