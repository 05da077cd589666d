// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::program {

/// Adds `trevallo stats`: what recordings hold.
void addStatsCommand(CLI::App& app);

} // namespace quorvel::program
