// SPDX-License-Identifier: MIT
// The raw encodings: nothing but the bytes of a frame, as they are or in hexadecimal digits.
#include <modes/modes_encapsulation.h>

#include "core/clock.h"
#include "core/hex.h"
#include "core/log_if_shown.h"
#include "core/wire.h"
#include "modes/frame_record.h"

namespace quorvel::modes {

ModeSEncapsulation::Records ModeSEncapsulation::extractRawHex(std::string& buffer) {
    buffer.clear();
    return {};
}

ModeSEncapsulation::Records ModeSEncapsulation::extractRawBin(std::string& buffer) {
    Records records;
    if (buffer.size() == wire::kShortFrameBytes || buffer.size() == wire::kLongFrameBytes) {
        records.push_back(RecordAccess::make(clock::nowMilliseconds(), buffer));
    } else {
        // the same words for a buffer that is too short
        logIfShown(Log::Warning, kEncapsulationModule, "Raw bin buffer over size (%u), data disgarded",
            static_cast<unsigned>(buffer.size()));
    }
    buffer.clear();
    return records;
}

std::string ModeSEncapsulation::encapsulateRawHex(ModeSEncapsulation const& record) {
    std::string line;
    line.reserve(2 * record._data.size() + 1);
    appendHex(line, record._data);
    line += '\n';
    return line;
}

std::string ModeSEncapsulation::encapsulateRawBin(ModeSEncapsulation const& record) { return record._data; }

} // namespace quorvel::modes
