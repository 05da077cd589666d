// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::host {

/// Adds `trevallo simulate`: makes the stream of a receiver among simulated aircraft.
void addSimulateCommand(CLI::App& app);

} // namespace quorvel::host
