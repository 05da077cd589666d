// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/picture.h"

#include <span>
#include <string>
#include <vector>

namespace quorvel::outputs {

/// One column of the tables of aircraft: what it shows, and how the live table treats it.
struct Column {
    char const* heading;
    char const* unit;
    bool leftAligned;
    std::string (*text)(Aircraft const&); ///< empty for what is not valid

    char const* brief;                 ///< heading in the live table
    int width;                         ///< there
    int rank;                          ///< there: columns of higher rank go first when it is narrow
    char key;                          ///< there: sorts by this column
    double (*number)(Aircraft const&); ///< what to sort by; null for the text
    bool isPosition;                   ///< fades with the age of the position

    bool (*isWanted)(Picture const&) = nullptr; ///< whether a picture has anything for it; null where it always has
};

/// All columns, from left to right.
std::span<Column const> allColumns();

/// The columns of a picture: without those for which it has nothing.
std::vector<Column const*> columnsOf(Picture const& picture);

/// The cells of a table, a row for each aircraft.
struct AircraftTable {
    std::vector<Column const*> columns;
    std::vector<std::vector<std::string>> rows;
};

/// The aircraft of each source by track number, else by address.
AircraftTable makeTable(Picture const& picture);

/// The table as lines of text in aligned columns; "-" for what is not valid.
std::string tableText(AircraftTable const& table);

/// Text in a cell of some width: filled up with blanks, never cut.
std::string aligned(std::string const& text, std::size_t width, bool left);

} // namespace quorvel::outputs
