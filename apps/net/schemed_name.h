// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::net {

/// A name that says what kind of thing it names: "tcp://localhost:30005".
struct SchemedName {
    std::string scheme; ///< in lower case, as it may be written in any; empty when the name has none
    std::string rest;   ///< what follows "://"; the whole name when it has no scheme
};

SchemedName schemedName(std::string const& text);

} // namespace quorvel::net
