// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/picture.h"

#include "terminal/keys.h"
#include "terminal/screen.h"

#include <cstddef>
#include <string>
#include <utility>

namespace quorvel::outputs {

/// What the user of the live table has chosen to see.
struct ViewState {
    enum class Mode : std::uint8_t { Table, Filter, Detail, Help };

    Mode mode = Mode::Table;
    char sortKey = 'i'; ///< the key of the column to sort by
    bool isReversed = false;
    std::string filter;                           ///< part of a callsign, address, squawk or source, in capitals
    std::pair<std::string, std::string> selected; ///< source and name of the aircraft
    std::size_t selectedRow = 0;                  ///< where that was when it was chosen, for when it is gone
    int scroll = 0;                               ///< first line of the details or the help
    bool wantsToQuit = false;

    // the rate of frames, as of the last picture
    double framesPerSecond = 0;
    Counters::Count frames = 0;
    airspace::TimeMs now = 0;
};

/// The screen of the live table: exactly so many rows, none wider than the columns. Columns of the table are
/// left out by rank until the others fit.
terminal::Screen draw(Picture const& picture, ViewState const& state, int columns, int rows);

/// The state after a key was pressed, on a screen of so many rows.
ViewState afterKey(ViewState state, terminal::Key key, Picture const& picture, int rows);

/// The state after a new picture.
ViewState afterPicture(ViewState state, Picture const& picture);

} // namespace quorvel::outputs
