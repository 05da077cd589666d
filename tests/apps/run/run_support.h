// SPDX-License-Identifier: MIT
#pragma once

#include "files/time_text.h"
#include "run/stations.h"
#include "support/frames.h"
#include "support/temporary_folder.h"
#include <airspace/encoding.h>

#include <memory>
#include <string>
#include <vector>

namespace quorvel::run::test {

inline constexpr airspace::TimeMs kMayDay = 1'714'521'600'000; // 2024-05-01 00:00:00 UTC

/// An aircraft's identification.
inline airspace::Frame identification(std::uint32_t address, airspace::TimeMs time) {
    auto frame = airspace::Frame::of(modes::test::squitter(address, modes::test::identification("SWR12")), time);
    frame.stamp = airspace::timeOfDayStamp(time);
    return frame;
}

/// A recording of these frames, of 2024-05-01.
inline std::unique_ptr<FrameReader> recording(std::string const& path, std::vector<airspace::Frame> const& frames) {
    std::string content;
    for (auto const& frame : frames) airspace::appendEncoded(content, frame, airspace::Encoding::AvrStamped);
    std::ofstream(path, std::ios::binary) << content;
    airspace::StreamOptions options;
    options.time = {airspace::TimeReading::Receiver, kMayDay};
    return std::make_unique<FrameReader>(path, options);
}

} // namespace quorvel::run::test
