// SPDX-License-Identifier: MIT
#include "trevallo/encoding_option.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>

namespace quorvel::program {

std::vector<std::string> encodingNames() {
    std::vector<std::string> names;
    names.reserve(std::size(airspace::kEncodings));
    for (auto const& encoding : airspace::kEncodings) names.emplace_back(encoding.identifier);
    return names;
}

void addEncodingOption(CLI::App& command, std::string const& name, std::string const& description,
    std::optional<airspace::Encoding>& encoding, std::vector<std::string> const& names) {
    auto const choice = CLI::detail::join(names, "|");
    auto const checked = [names, choice](std::string const& text) {
        bool const isOne = std::ranges::find(names, text) != names.end();
        return isOne ? std::string() : "an encoding is one of " + choice;
    };
    auto const take = [&encoding](std::string const& text) { encoding = airspace::encodingOf(text); };
    command.add_option_function<std::string>(name, take, description)
        ->check(CLI::Validator(checked, ""))
        ->type_name(choice);
}

} // namespace quorvel::program
