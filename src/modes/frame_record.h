// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_encapsulation.h>

#include <memory>
#include <string>

namespace quorvel::modes {

/// Name under which the stream encodings log.
inline std::string const kEncapsulationModule = "ModeSEncapsulation";

/// Lengths of frames in bytes.
inline constexpr std::size_t kModeACFrameBytes = 2;
inline constexpr std::size_t kShortFrameBytes = 7;
inline constexpr std::size_t kLongFrameBytes = 14;

inline std::shared_ptr<ModeSEncapsulation> makeRecord(unsigned long long timeStamp, std::string const& data) {
    auto record = std::make_shared<ModeSEncapsulation>();
    record->setTimeStamp(timeStamp);
    record->setData(data);
    return record;
}

} // namespace quorvel::modes
