// SPDX-License-Identifier: MIT
#pragma once

namespace CLI {
class App;
}

namespace quorvel::program {

/// Adds `trevallo convert`: recordings of any encoding in, one of any other out.
void addConvertCommand(CLI::App& app);

} // namespace quorvel::program
