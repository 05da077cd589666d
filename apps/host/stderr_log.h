// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

namespace quorvel::host {

/// Brings the library's log lines to standard error, from a level up, while it lives.
class StderrLog : public modes::LogHandler {
public:
    explicit StderrLog(modes::Log::Level level);
    ~StderrLog();
    StderrLog(StderrLog const&) = delete;
    StderrLog& operator=(StderrLog const&) = delete;

    void handle(modes::Log::Level level, std::string const& line) override;

    /// While one lives, nothing is shown: of what has been told already.
    class Mute {
    public:
        Mute();
        ~Mute();
        Mute(Mute const&) = delete;
        Mute& operator=(Mute const&) = delete;
    };
};

} // namespace quorvel::host
