// SPDX-License-Identifier: MIT
#include "net/schemed_name.h"

#include <string_view>

namespace quorvel::net {

namespace {

constexpr std::string_view kAfterScheme = "://";

std::string lowerCase(std::string text) {
    for (auto& letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text;
}

} // namespace

SchemedName schemedName(std::string const& text) {
    auto const end = text.find(kAfterScheme);
    if (end == std::string::npos || end == 0) return {{}, text};
    return {lowerCase(text.substr(0, end)), text.substr(end + kAfterScheme.size())};
}

} // namespace quorvel::net
