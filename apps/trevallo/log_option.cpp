// SPDX-License-Identifier: MIT
#include "trevallo/log_option.h"

#include "trevallo/target_option.h"

#include <CLI/CLI.hpp>

#include <map>

namespace quorvel::program {

void addLogOptions(CLI::App& command, LogSettings& settings) {
    using modes::Log;
    static std::map<std::string, Log::Level> const kLevels{
        {"debug", Log::Debug}, {"info", Log::Info}, {"warning", Log::Warning}, {"error", Log::Error}, {"none", kNoLog}};
    command
        .add_option(
            "--log", settings.level, "Lowest level of the core library's log lines that are shown, where it decodes")
        ->transform(CLI::CheckedTransformer(kLevels).description(""))
        ->type_name("debug|info|warning|error|none");
    command.add_option("--log-file", settings.file, "Where the library's log lines go instead of standard error")
        ->check(checkedFile)
        ->type_name("FILE");
}

} // namespace quorvel::program
