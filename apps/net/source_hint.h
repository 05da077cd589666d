// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::net {

/// What a source was probably meant to be, for a name without a scheme that is not that of a file: "a receiver on the
/// network is named tcp://192.168.1.20:30005". Empty when the name is like that of a file.
std::string sourceHint(std::string const& name);

} // namespace quorvel::net
