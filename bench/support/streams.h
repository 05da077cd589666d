// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::modes::bench {

/// The bytes of a simulated stream, by its file name; read at the first call and kept.
std::string const& stream(std::string const& name);

} // namespace quorvel::modes::bench
