// SPDX-License-Identifier: MIT
#pragma once

#include "outputs/picture.h"

#include <vector>

namespace quorvel::outputs {

// How long an aircraft is shown, by the age of what is shown: an aircraft whose position is no longer updated should
// not look alive because it still answers.
inline constexpr airspace::TimeMs kPositionFades = 15'000; ///< a younger position is as good as new
inline constexpr airspace::TimeMs kPositionShown = 60'000; ///< an older position is not shown
inline constexpr airspace::TimeMs kAircraftLive = 60'000;  ///< an aircraft not seen for longer is gone from live tables
inline constexpr airspace::TimeMs kAircraftListed = 300'000; ///< an aircraft not heard for longer is in no list

/// Whether there is a position that is still worth showing.
bool showsPosition(Aircraft const& aircraft);

/// Whether an aircraft belongs in a live table: by the age of its position or, where it never had one, of
/// its last message.
bool isLive(Aircraft const& aircraft);

/// One entry for each address, in the order of addresses: where several sources hear an aircraft, that of the
/// one that heard it last.
std::vector<Aircraft const*> newestByAddress(Picture const& picture);

/// Whether the time of a picture is of any calendar: the times of all its sources are.
bool timeKnown(Picture const& picture);

/// Whether the times of an aircraft are of any calendar.
bool timeKnown(Picture const& picture, Aircraft const& aircraft);

} // namespace quorvel::outputs
