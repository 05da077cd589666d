// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/place.h>

#include <cstdint>

namespace quorvel::airspace {

/// What is done with a reply that the decoder has repaired. A repair that fits by chance makes an aircraft that
/// does not exist.
enum class RepairedReplies : std::uint8_t {
    Keep,  ///< they are taken like all others
    Known, ///< they update known aircraft and create none
    Drop,  ///< they are not given to the tracker
};

/// How frames are judged.
struct SkyOptions {
    bool altitudeCheck = false;                        ///< ignore altitudes that jump by more than 150 ft within 4 s
    RepairedReplies repaired = RepairedReplies::Known; ///< what is done with repaired replies
    PositionLimits positions;                          ///< what positions must satisfy
    TimeMs timeout = 0; ///< aircraft not heard for so many ms are dropped by `dropSilent`; 0 keeps them
};

} // namespace quorvel::airspace
