// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

#include <fstream>
#include <string>

namespace quorvel::host {

/// Brings the library's log lines to standard error or a file, from a level up, while it lives.
class StderrLog : public modes::LogHandler {
public:
    /// Without a file, the lines go to standard error. Throws HostError when the file cannot be written.
    explicit StderrLog(modes::Log::Level level, std::string const& file = {});
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

private:
    std::ofstream _file;
};

} // namespace quorvel::host
