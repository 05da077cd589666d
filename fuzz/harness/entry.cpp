// SPDX-License-Identifier: MIT
// Where the fuzzer, or the replay instead of it, enters a target.
#include "harness/target.h"

#include "harness/require.h"

#include <modes/log.h>

#include <string>

namespace {

using quorvel::modes::Log;

// Takes every line, debugging ones too, so that the texts are made and nothing is printed.
class LogSink : public quorvel::modes::LogHandler {
public:
    LogSink() {
        Log::setLogHandler(this);
        Log::setShowLevel(Log::Debug);
    }

    void handle(Log::Level level, std::string const& line) override {
        quorvel::fuzz::require(level <= Log::Error, "a log line has one of the four levels");
        quorvel::fuzz::require(
            line.front() == '[' && line.find("] ") != std::string::npos, "a log line names its module");
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static LogSink sink;
    quorvel::fuzz::runTarget({data, size});
    return 0;
}
