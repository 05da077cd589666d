// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quorvel::airspace {

/// What happened to everything that came in, by reason: nothing disappears silently. Counts only rise. A
/// `Stream` fills in those of framing and time, a `Sky` the others.
struct TREVALLO_AIRSPACE_EXPORT Counts {
    /// A number of events.
    using Count = std::uint64_t;

    // framing
    Count bytes = 0;         ///< bytes read
    Count skippedBytes = 0;  ///< bytes that belong to no frame: noise between frames, overlong lines
    Count overlongLines = 0; ///< lines too long to be frames
    Count badLines = 0;      ///< lines that are not frames
    Count brokenFrames = 0;  ///< Beast frames that another one cut short, or the end of the stream
    Count statusFrames = 0;  ///< Beast records about the receiver itself: status, position, identity
    Count modeAcFrames = 0;  ///< Mode A/C replies, which are not decoded
    Count frames = 0;        ///< Mode S frames

    // decoding
    std::array<Count, 32> byFormat{};    ///< Mode S frames by the number in their first five bits
    Count undecoded = 0;                 ///< frames of no known format, or damaged beyond repair
    std::array<Count, 4> byConfidence{}; ///< decoded replies by confidence: none, low, medium, high
    Count repaired = 0;                  ///< decoded replies whose bytes are not those received
    Count repairedRefused = 0;           ///< of them not given to the tracker

    // tracking
    Count tracked = 0;         ///< replies given to an aircraft
    Count targetsMade = 0;     ///< aircraft that appeared
    Count targetsDropped = 0;  ///< aircraft dropped because they fell silent, or time was set back
    Count targetsMadeRoom = 0; ///< of them dropped early, because there was no room for others
    Count tableFull = 0;       ///< replies lost because there was no room for their aircraft

    // positions
    Count positions = 0;           ///< positions shown
    Count positionsOutOfRange = 0; ///< refused: farther from the receiver than it can hear
    Count positionsTooFast = 0;    ///< refused: the jump would need an impossible speed
    Count positionsImpossible = 0; ///< refused by `CoreSky`: not on the globe
    Count positionsAmbiguous = 0;  ///< refused: by the last position elsewhere than by the pair of messages
    Count positionsRepaired = 0;   ///< left out: of repaired messages
    Count positionsBelieved = 0;   ///< jumps believed after three refusals in a row

    // time
    Count timeJumps = 0;     ///< time stamps that jumped, after which the clock was synchronised again
    Count timeBackwards = 0; ///< frames whose time was before that of the frame before

    /// Adds each count of another.
    Counts& operator+=(Counts const& other);
};

/// How one count is named and described.
struct CountText {
    std::string_view name;  ///< snake_case, for JSON and Prometheus: "frames", "frames_by_format"
    std::string_view label; ///< what distinguishes the counts of a group: "format", "confidence"; empty for others
    std::string_view value; ///< the label's value: "17", "high"
    std::string_view help;  ///< one sentence
    Counts::Count count;    ///< how often it happened
};

/// All counts with their texts, in a fixed order; formats that did not occur are left out.
TREVALLO_AIRSPACE_EXPORT std::vector<CountText> listed(Counts const& counts);

} // namespace quorvel::airspace
