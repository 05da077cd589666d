// SPDX-License-Identifier: MIT
// The Beast binary stream. Each frame is
//
//   0x1A  type  time stamp (6 bytes)  signal level (1 byte)  frame (2, 7 or 14 bytes by type "1", "2", "3")
//
// Frames are cut by these lengths alone: 0x1A inside a frame is data, doubled or not.
#include <modes/modes_encapsulation.h>

#include "core/clock.h"
#include "modes/frame_record.h"
#include "modes/receiver_time.h"

#include <algorithm>
#include <string_view>

namespace quorvel::modes {

namespace {

constexpr char kEscape = '\x1A';
constexpr std::size_t kTimePosition = 2;
constexpr std::size_t kFramePosition = 9;

// Length of the frame by its type, 0 for a type that carries none.
std::size_t frameBytes(char type) {
    switch (type) {
    case '1': return kModeACFrameBytes;
    case '2': return kShortFrameBytes;
    case '3': return kLongFrameBytes;
    default: return 0;
    }
}

// Type "4" frames are recognised as a place where the stream is in step, and then skipped.
bool isType(char byte) { return '1' <= byte && byte <= '4'; }

bool isInStep(std::string_view stream) { return stream[0] == kEscape && isType(stream[1]); }

// What is left of the stream from the next escape and type byte on; without one, its last byte.
std::string_view synchronised(std::string_view stream) {
    while (stream.size() > 1) {
        if (isInStep(stream)) return stream;
        auto const next = stream.find(kEscape, 1);
        stream.remove_prefix(std::min(next, stream.size() - 1));
    }
    return stream;
}

} // namespace

ModeSEncapsulation::Records ModeSEncapsulation::extractBeast(std::string& buffer) {
    Records records;
    records.reserve(buffer.size() / (kFramePosition + kLongFrameBytes));
    auto const midnight = midnightBefore(clock::nowMilliseconds());
    std::string_view stream = buffer;
    while (!stream.empty()) {
        stream = synchronised(stream);
        auto const length = stream.size() > 1 ? frameBytes(stream[1]) : 0;
        if (length == 0) {
            // a type "4" frame, or the lone byte that a failed search leaves
            stream.remove_prefix(std::min<std::size_t>(stream.size(), 2));
            continue;
        }
        if (stream.size() < kFramePosition + length) break; // the rest comes with the next call
        auto const time = receiverTime(stream.substr(kTimePosition, kReceiverTimeBytes), midnight);
        records.push_back(RecordAccess::make(time, stream.substr(kFramePosition, length)));
        stream.remove_prefix(kFramePosition + length);
    }
    buffer.erase(0, buffer.size() - stream.size());
    return records;
}

} // namespace quorvel::modes
