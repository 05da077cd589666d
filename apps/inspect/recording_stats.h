// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/rate_history.h"
#include "terminal/terminal_style.h"
#include <airspace/encoding.h>
#include <airspace/sky.h>
#include <airspace/stream.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorvel::inspect {

/// What the parity of a recording's frames says.
struct ParityCounts {
    std::uint64_t right = 0;    ///< overlaid with nothing but an interrogator's identifier
    std::uint64_t repaired = 0; ///< extended squitters with one or two damaged bits
    std::uint64_t wrong = 0;
    std::uint64_t overlaid = 0; ///< overlaid with the address: damage cannot be detected
    std::uint64_t unknown = 0;  ///< of frames of other formats
};

/// What a recording holds of one aircraft.
struct AircraftTally {
    std::uint64_t replies = 0;
    std::string callsign;            ///< the last one; empty when none was heard
    std::optional<unsigned> version; ///< MOPS version that it was confirmed to follow
};

/// Counts what a recording holds, frame by frame.
class RecordingStats {
public:
    static constexpr std::size_t kSignalBands = 16;

    /// If times mean nothing, there are no spans, rates and gaps.
    explicit RecordingStats(bool isTimed);

    void take(airspace::Frame const& frame);

    /// To be called after the last frame with what its reader has counted.
    void finish(airspace::Counts const& reading);

    bool isTimed() const { return _isTimed; }
    RateHistory const& rates() const { return _rates; }
    airspace::Counts const& counters() const { return _counters; }
    ParityCounts const& parity() const { return _parity; }
    std::map<std::string, AircraftTally> const& aircraft() const { return _aircraft; }

    /// ADS-B messages by type code.
    std::array<std::uint64_t, 32> const& typeCodes() const { return _typeCodes; }

    /// Frames by signal level, in bands of 16 levels each; all 0 where the encoding has no signal.
    std::array<std::uint64_t, kSignalBands> const& signals() const { return _signals; }

private:
    void countParity(airspace::Reply const& reply);
    void countAircraft(airspace::Reply const& reply, airspace::TimeMs time);

    bool _isTimed;
    airspace::Sky _sky;
    RateHistory _rates;
    airspace::TimeMs _lastDrop = 0;
    airspace::Counts _counters;
    ParityCounts _parity;
    std::map<std::string, AircraftTally> _aircraft;
    std::array<std::uint64_t, 32> _typeCodes{};
    std::array<std::uint64_t, kSignalBands> _signals{};
};

/// What a report on a recording says besides what was counted.
struct RecordingTitle {
    std::string name;
    std::optional<airspace::Encoding> encoding;
    airspace::TimeReading reading = airspace::TimeReading::Fixed;
    bool isDated = false; ///< whether times are of a known day
};

/// The report for people, with the aircraft with most replies, and for programs as one line of JSON with all of
/// them.
std::string statsText(RecordingTitle const& title, RecordingStats const& stats, std::size_t aircraft,
    terminal::TerminalStyle const& style);
std::string statsJson(RecordingTitle const& title, RecordingStats const& stats);

} // namespace quorvel::inspect
