// SPDX-License-Identifier: MIT
#pragma once

#include "host/encoding.h"
#include "host/frame.h"

#include <cstdint>
#include <string>

namespace quorvel::host {

/// Writes frames in an encoding, and counts what of them it cannot carry.
class Conversion {
public:
    explicit Conversion(Encoding to) : _to(to) {}

    /// Appends the frames to `out`. A line bears a time stamp only when its frame has one.
    void append(Frames const& frames, std::string& out);

    std::uint64_t frames() const { return _frames; }       ///< Mode S frames written
    std::uint64_t modeAcFrames() const { return _modeAc; } ///< Mode A/C replies written
    std::uint64_t leftOut() const { return _leftOut; } ///< Mode A/C replies that have no form in the encoding
    std::uint64_t stampsLeftOut() const { return _stamps; }   ///< time stamps that have no place in it
    std::uint64_t signalsLeftOut() const { return _signals; } ///< signal levels that have no place in it
    std::uint64_t unstamped() const { return _unstamped; } ///< frames without a time stamp, where it has one

private:
    Encoding _to;
    std::uint64_t _frames = 0;
    std::uint64_t _modeAc = 0;
    std::uint64_t _leftOut = 0;
    std::uint64_t _stamps = 0;
    std::uint64_t _unstamped = 0;
    std::uint64_t _signals = 0;
};

/// Whether an encoding is bytes and no text.
bool isBinary(Encoding encoding);

/// Whether it has a place for time stamps, and for signal levels.
bool hasStamps(Encoding encoding);
bool hasSignals(Encoding encoding);

} // namespace quorvel::host
