// SPDX-License-Identifier: MIT
#include "trevallo/encoding_option.h"

#include <CLI/CLI.hpp>

namespace quorvel::host {

namespace {

std::string identifiers() {
    std::string text;
    for (auto const& encoding : kEncodings)
        text += (text.empty() ? "" : "|") + std::string(encoding.identifier);
    return text;
}

std::string checkedEncoding(std::string const& text) {
    return encodingOf(text) ? "" : "an encoding is one of " + identifiers();
}

} // namespace

void addEncodingOption(CLI::App& command, std::string const& name, std::string const& description,
                       std::optional<Encoding>& encoding) {
    command
        .add_option_function<std::string>(
            name, [&encoding](std::string const& text) { encoding = encodingOf(text); }, description)
        ->check(CLI::Validator(checkedEncoding, ""))
        ->type_name(identifiers());
}

} // namespace quorvel::host
