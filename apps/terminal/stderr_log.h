// SPDX-License-Identifier: MIT
#pragma once

#include <modes/log.h>

#include <fstream>
#include <string>

namespace quorvel::terminal {

/// Writes the library's log lines from a level up to standard error or a file, while it lives.
class StderrLog : public modes::LogHandler {
public:
    /// Without a file, the lines go to standard error. Makes the folder of the file. Throws HostError when it cannot
    /// be written.
    explicit StderrLog(modes::Log::Level level, std::string const& file = {});
    ~StderrLog();
    StderrLog(StderrLog const&) = delete;
    StderrLog& operator=(StderrLog const&) = delete;

    void handle(modes::Log::Level level, std::string const& line) override;

    /// While one lives, nothing is shown: for what is reported elsewhere.
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

} // namespace quorvel::terminal
