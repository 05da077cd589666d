// SPDX-License-Identifier: MIT
#include "trevallo/log_option.h"

#include <CLI/CLI.hpp>

#include <map>
#include <string>

namespace quorvel::host {

void addLogOption(CLI::App& command, modes::Log::Level& level) {
    using modes::Log;
    static std::map<std::string, Log::Level> const kLevels{{"debug", Log::Debug},
                                                           {"info", Log::Info},
                                                           {"warning", Log::Warning},
                                                           {"error", Log::Error},
                                                           {"none", kNoLog}};
    command
        .add_option("--log", level,
                    "Lowest level of the library's log lines that are shown on standard error")
        ->transform(CLI::CheckedTransformer(kLevels).description(""))
        ->type_name("debug|info|warning|error|none");
}

} // namespace quorvel::host
