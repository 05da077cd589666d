// SPDX-License-Identifier: MIT
#include <airspace/encoding.h>

#include "core/hex.h"
#include "core/wire.h"

#include <string_view>

namespace quorvel::airspace {

namespace {

using modes::appendHex;
using modes::wire::BeastRecord;

// First byte first, as all encodings have it.
std::string stampBytes(Frame const& frame) {
    auto const stamp = frame.stamp.value_or(0);
    std::string bytes;
    for (unsigned shift = modes::wire::kStampBits; shift > 0; shift -= 8)
        bytes += static_cast<char>(stamp >> (shift - 8));
    return bytes;
}

void appendAvr(std::string& out, char start, std::string_view stamp, std::string_view data) {
    out += start;
    appendHex(out, stamp);
    appendHex(out, data);
    out += ";\n";
}

void appendBeast(std::string& out, Frame const& frame, bool doubled) {
    auto const type = BeastRecord::typeOf(frame.length);
    if (type == 0) return;
    out += BeastRecord::kEscape;
    out += type;
    auto const append = [&](std::string_view bytes) {
        for (char const byte : bytes) {
            out += byte;
            if (doubled && byte == BeastRecord::kEscape) out += byte;
        }
    };
    append(stampBytes(frame)); // six bytes: no memory is allocated for them
    append({reinterpret_cast<char const*>(&frame.signal), 1});
    append(frame.view());
}

} // namespace

void appendEncoded(std::string& out, Frame const& frame, Encoding encoding) {
    auto const data = frame.view();
    switch (encoding) {
    case Encoding::Avr: appendAvr(out, '*', "", data); break;
    case Encoding::AvrStamped: appendAvr(out, '@', stampBytes(frame), data); break;
    case Encoding::Beast: appendBeast(out, frame, true); break;
    case Encoding::BeastPlain: appendBeast(out, frame, false); break;
    case Encoding::Raw:
        if (data.size() != kModeAcFrameBytes) out += data;
        break;
    case Encoding::Hex:
        appendHex(out, data);
        out += '\n';
        break;
    }
}

std::uint64_t timeOfDayStamp(TimeMs time) {
    using namespace modes::wire;
    auto const ofDay = time % kDayMs;
    return stampOf(ofDay / 1000, ofDay % 1000 * kNanosecondsPerMs);
}

} // namespace quorvel::airspace
