// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/stream.h>

#include <airspace/place.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace quorvel::airspace::test {

/// The recordings of a folder by their endings, in order; empty where there is no such folder.
inline std::vector<std::filesystem::path> recordings(std::filesystem::path const& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code none;
    for (auto const& file : std::filesystem::directory_iterator(folder, none)) {
        auto const ending = file.path().extension();
        if (ending == ".beast" || ending == ".avr") files.push_back(file.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The frames of a recording.
inline Frames framesOf(std::filesystem::path const& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    Stream stream;
    Frames frames;
    EXPECT_TRUE(stream.feed(bytes.str(), 0, frames)) << path;
    EXPECT_TRUE(stream.finish(0, frames)) << path;
    return frames;
}

/// A recording whose frames the truth numbers, Mode A/C replies left out.
struct NumberedRecording {
    char const* truth;
    char const* frames;             // the file whose frames are numbered
    double frameSeconds;            // between frames that have no time; 0 where they have one, kSessions of sessions
    std::optional<Place> reference; // of positions on the surface
};

/// Of sessions whose clocks started anew, and are taken to go on ten minutes after the last.
inline constexpr double kSessions = -1.0;

inline NumberedRecording const kNumberedRecordings[] = {
    {"comm_b_2017", "comm_b_2017_mlat.avr", 0, std::nullopt},
    {"flight_406b90", "flight_406b90_mlat.avr", 0, std::nullopt},
    {"flight_4c01e4", "flight_4c01e4_mlat.avr", 0, std::nullopt},
    {"flights_us_2025", "flights_us_2025_mlat.avr", 0, Place{33.9, -84.4}},
    {"mixed_formats", "mixed_formats.avr", 0.16, Place{34.7, 32.6}},
    {"opensky_df17_df18", "opensky_df17_df18.avr", 0.045, Place{50.2, 9.2}},
    {"petersburg", "petersburg_mlat.avr", 0, std::nullopt},
    {"receiver_log_12mhz", "receiver_log_12mhz.avr", kSessions, std::nullopt},
    {"receiver_session", "receiver_session_mlat.avr", 0, std::nullopt},
    {"receiver_session_damaged", "receiver_session_damaged_mlat.avr", 0, Place{53.2, -8.7}},
    {"small_12mhz", "small_12mhz.beast", 0, std::nullopt},
};

/// Gives the frames of a recording the times that its truth goes by.
class Times {
public:
    explicit Times(double frameSeconds) : _frameSeconds(frameSeconds) {}

    TimeMs of(Frame const& frame) {
        constexpr TimeMs start = 86'400'000;
        if (_frameSeconds > 0) return start + static_cast<TimeMs>(1000.0 * _frameSeconds * _frames++);
        if (_frameSeconds != kSessions) return frame.time;
        auto const ms = *frame.stamp / 12'000;
        auto const elapsed = static_cast<std::int64_t>(ms - _lastStampMs);
        bool const goesOn = elapsed >= -1'000 && elapsed < 600'000;
        _lastStampMs = ms;
        _time = _time == 0 ? start : goesOn ? _time + static_cast<TimeMs>(elapsed) : _time + 600'000;
        return _time;
    }

private:
    double _frameSeconds;
    double _frames = 0;
    std::uint64_t _lastStampMs = 0;
    TimeMs _time = 0;
};

/// The frames of a recording as the truth numbers and times them.
inline Frames timedFramesOf(NumberedRecording const& recording) {
    Times times(recording.frameSeconds);
    Frames frames;
    for (auto frame : framesOf(std::filesystem::path(TREVALLO_RECORDINGS) / recording.frames)) {
        if (frame.isModeAc()) continue;
        frame.time = times.of(frame);
        frames.push_back(frame);
    }
    return frames;
}

} // namespace quorvel::airspace::test
