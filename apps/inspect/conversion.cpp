// SPDX-License-Identifier: MIT
#include "inspect/conversion.h"

#include "host/frame_writer.h"

namespace quorvel::host {

void Conversion::append(Frames const& frames, std::string& out) {
    for (auto const& frame : frames) {
        bool const isStamped = frame.stamp.has_value();
        auto const encoding = _to == Encoding::AvrStamped && !isStamped ? Encoding::Avr : _to;
        auto const before = out.size();
        appendEncoded(out, frame, encoding);
        if (out.size() == before) {
            ++_leftOut;
            continue;
        }
        ++(frame.record->data().size() == kModeAcFrameBytes ? _modeAc : _frames);
        if (isStamped && !hasStamps(_to)) ++_stamps;
        if (!isStamped && hasStamps(_to)) ++_unstamped;
        if (frame.signal != 0 && !hasSignals(_to)) ++_signals;
    }
}

bool isBinary(Encoding encoding) {
    return encoding == Encoding::Beast || encoding == Encoding::BeastPlain || encoding == Encoding::Raw;
}

bool hasStamps(Encoding encoding) { return encoding == Encoding::AvrStamped || hasSignals(encoding); }

bool hasSignals(Encoding encoding) { return encoding == Encoding::Beast || encoding == Encoding::BeastPlain; }

} // namespace quorvel::host
