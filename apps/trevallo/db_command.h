// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::program {

/// Adds `trevallo db`: show, merge, check and mend files of the aircraft database.
void addDbCommand(CLI::App& app);

} // namespace quorvel::program
