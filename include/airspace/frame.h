// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvel::airspace {

/// Milliseconds since 1970-01-01 00:00:00 UTC; 0 is none.
using TimeMs = unsigned long long;

inline constexpr std::size_t kModeAcFrameBytes = 2; ///< length of a Mode A/C reply
inline constexpr std::size_t kShortFrameBytes = 7;  ///< of a short reply (ICAO Annex 10 Vol. IV, 3.1.2.3.1)
inline constexpr std::size_t kLongFrameBytes = 14;  ///< of a long one

/// Length of a Mode S frame that starts with this byte: downlink formats from 16 up have their first bit set
/// and are long.
inline constexpr std::size_t modeSFrameBytes(char firstByte) {
    return (static_cast<unsigned char>(firstByte) & 0x80) != 0 ? kLongFrameBytes : kShortFrameBytes;
}

/// One frame as a receiver sent it: a Mode S frame, or a Mode A/C reply.
struct Frame {
    /// First transmitted byte first; those past `length` are 0.
    std::array<std::uint8_t, kLongFrameBytes> bytes{};
    std::uint8_t length = 0; ///< 2 (Mode A/C reply), 7 or 14 (Mode S)

    /// The receiver's signal level, in its own unit; 0 where the encoding has none.
    std::uint8_t signal = 0;

    TimeMs time = 0; ///< of reception

    /// The present time of its stream when it came: unlike its own time, not affected by one damaged stamp.
    TimeMs now = 0;

    /// The receiver's own time stamp, 48 bits, whatever it counts; none where there was none.
    std::optional<std::uint64_t> stamp;

    /// Which receiver heard it: what the stream says, else what the host calls the stream; 0 is not known.
    std::uint64_t receiver = 0;

    /// The bytes as a text of that length; it lives as long as the frame.
    std::string_view view() const {
        return {reinterpret_cast<char const*>(bytes.data()), length < bytes.size() ? length : bytes.size()};
    }

    /// Whether it is a Mode A/C reply.
    bool isModeAc() const { return length == kModeAcFrameBytes; }

    /// A frame of these bytes, at most 14 of them, received at this time.
    static Frame of(std::string_view bytes, TimeMs time = 0) {
        Frame frame;
        for (char const byte : bytes.substr(0, kLongFrameBytes))
            frame.bytes[frame.length++] = static_cast<std::uint8_t>(byte);
        frame.time = frame.now = time;
        return frame;
    }
};

/// Frames in the order in which they came.
using Frames = std::vector<Frame>;

} // namespace quorvel::airspace
