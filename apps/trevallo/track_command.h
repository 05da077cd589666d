// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::program {

/// Adds `trevallo track`: recordings in, a table of aircraft and their pages out.
void addTrackCommand(CLI::App& app);

} // namespace quorvel::program
