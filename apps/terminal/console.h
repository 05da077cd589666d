// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quorvel::terminal::console {

/// Writes a line to standard error. While the screen is in use by something else, the last lines are kept
/// until it is free again.
void say(std::string const& line);

/// While one lives, the screen is in use.
class ScreenInUse {
public:
    ScreenInUse();
    ~ScreenInUse();
    ScreenInUse(ScreenInUse const&) = delete;
    ScreenInUse& operator=(ScreenInUse const&) = delete;
};

bool isScreenInUse();

} // namespace quorvel::terminal::console
