// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::program {

/// Adds `trevallo decode`: frames in, everything about them out.
void addDecodeCommand(CLI::App& app);

} // namespace quorvel::program
