// SPDX-License-Identifier: MIT
// The Beast binary stream, in the records of `wire::BeastRecord`. Frames are cut by the lengths of their types alone: 0x1A
// inside a frame is data, doubled or not.
#include <modes/modes_encapsulation.h>

#include "core/clock.h"
#include "core/wire.h"
#include "modes/frame_record.h"

#include <algorithm>
#include <string_view>

namespace quorvel::modes {

namespace {

using wire::BeastRecord;

// Type "4" frames are recognised as a place where the stream is in step, and then skipped.
bool isType(char byte) { return '1' <= byte && byte <= '4'; }

bool isInStep(std::string_view stream) { return stream[0] == BeastRecord::kEscape && isType(stream[1]); }

// What is left of the stream from the next escape and type byte on; without one, its last byte.
std::string_view synchronised(std::string_view stream) {
    while (stream.size() > 1) {
        if (isInStep(stream)) return stream;
        auto const next = stream.find(BeastRecord::kEscape, 1);
        stream.remove_prefix(std::min(next, stream.size() - 1));
    }
    return stream;
}

} // namespace

ModeSEncapsulation::Records ModeSEncapsulation::extractBeast(std::string& buffer) {
    Records records;
    records.reserve(buffer.size() / BeastRecord::kLongestBytes);
    auto const midnight = wire::midnightBefore(clock::nowMilliseconds());
    std::string_view stream = buffer;
    while (!stream.empty()) {
        stream = synchronised(stream);
        auto const length = stream.size() > 1 ? BeastRecord::frameBytes(stream[1]) : 0;
        if (length == 0) {
            // a type "4" frame, or the lone byte that a failed search leaves
            stream.remove_prefix(std::min(stream.size(), BeastRecord::kHeadBytes));
            continue;
        }
        if (stream.size() < BeastRecord::kBodyAt + length) break; // the rest comes with the next call
        auto const time = midnight + wire::timeOfDayMs(wire::stampAt(stream, BeastRecord::kStampAt));
        records.push_back(RecordAccess::make(time, stream.substr(BeastRecord::kBodyAt, length)));
        stream.remove_prefix(BeastRecord::kBodyAt + length);
    }
    buffer.erase(0, buffer.size() - stream.size());
    return records;
}

} // namespace quorvel::modes
