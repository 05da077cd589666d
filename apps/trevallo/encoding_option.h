// SPDX-License-Identifier: MIT
#pragma once

#include "host/encoding.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace quorvel::host {

/// Adds an option whose value names an encoding. `encoding` must outlive the command.
void addEncodingOption(CLI::App& command, std::string const& name, std::string const& description,
                       std::optional<Encoding>& encoding);

} // namespace quorvel::host
