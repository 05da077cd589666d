// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

namespace quorvel::modes::test {

/// One log line taken apart: the module without the padding of its column.
struct LogLine {
    Log::Level level;
    std::string module;
    std::string text;

    bool operator==(LogLine const& other) const {
        return level == other.level && module == other.module && text == other.text;
    }
};

std::ostream& operator<<(std::ostream& out, LogLine const& line);

/// Takes all log lines from `showLevel` up while it lives, and puts sink (console) and level (`Info`) back at
/// its end.
class CapturedLog : public LogHandler {
public:
    explicit CapturedLog(Log::Level showLevel = Log::Debug);
    ~CapturedLog();
    CapturedLog(CapturedLog const&) = delete;
    CapturedLog& operator=(CapturedLog const&) = delete;

    void handle(Log::Level level, std::string const& line) override;

    std::vector<LogLine> const& lines() const { return _lines; }
    std::vector<std::string> const& rawLines() const { return _rawLines; }

    /// The lines since the last call.
    std::vector<LogLine> take();

private:
    std::vector<LogLine> _lines;
    std::vector<std::string> _rawLines;
};

/// `EXPECT_THAT(log.take(), Holds(Log::Info, "ModeSDecoder", "Initialized."))`: this line, and no other.
inline auto Holds(Log::Level level, std::string module, std::string text) {
    return ::testing::ElementsAre(LogLine{level, std::move(module), std::move(text)});
}

} // namespace quorvel::modes::test
