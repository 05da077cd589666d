// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>

namespace quorvel::airspace {

// What both skies go by, in ms.
inline constexpr TimeMs kAhead = 60'000;          ///< clocks of merged sources may differ so much
inline constexpr TimeMs kSilent = 10'000;         ///< what was heard since then is not dropped for others
inline constexpr TimeMs kRoomMakingPause = 1'000; ///< looking at all aircraft is not done for each message

} // namespace quorvel::airspace
