// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::program {

/// Adds `trevallo simulate`: writes the stream of a receiver of simulated aircraft.
void addSimulateCommand(CLI::App& app);

} // namespace quorvel::program
