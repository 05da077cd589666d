// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/encoding.h>

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quorvel::program {

/// What all encodings are called on the command line.
std::vector<std::string> encodingNames();

/// Adds an option whose value is one of these names; a name that is no encoding's leaves `encoding` empty. `encoding`
/// must outlive the command.
void addEncodingOption(CLI::App& command, std::string const& name, std::string const& description,
    std::optional<airspace::Encoding>& encoding, std::vector<std::string> const& names = encodingNames());

} // namespace quorvel::program
