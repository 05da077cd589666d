// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/encoding.h>
#include <airspace/frame.h>

#include <cstdint>
#include <string>

namespace quorvel::inspect {

/// Writes frames in an encoding, and counts what it cannot carry.
class Conversion {
public:
    explicit Conversion(airspace::Encoding to) : _to(to) {}

    /// Appends the frames to `out`. A line has a time stamp only when its frame has one.
    void append(airspace::Frames const& frames, std::string& out);

    std::uint64_t frames() const { return _frames; }          ///< Mode S frames written
    std::uint64_t modeAcFrames() const { return _modeAc; }    ///< Mode A/C replies written
    std::uint64_t leftOut() const { return _leftOut; }        ///< Mode A/C replies that have no form in the encoding
    std::uint64_t stampsLeftOut() const { return _stamps; }   ///< time stamps that have no place in it
    std::uint64_t signalsLeftOut() const { return _signals; } ///< signal levels that have no place in it
    std::uint64_t unstamped() const { return _unstamped; }    ///< frames without a time stamp, where it has one

private:
    airspace::Encoding _to;
    std::uint64_t _frames = 0;
    std::uint64_t _modeAc = 0;
    std::uint64_t _leftOut = 0;
    std::uint64_t _stamps = 0;
    std::uint64_t _unstamped = 0;
    std::uint64_t _signals = 0;
};

/// Whether an encoding is binary, not text.
bool isBinary(airspace::Encoding encoding);

/// Whether it has a place for time stamps, and for signal levels.
bool hasStamps(airspace::Encoding encoding);
bool hasSignals(airspace::Encoding encoding);

} // namespace quorvel::inspect
