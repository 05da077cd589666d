// SPDX-License-Identifier: MIT
#include "inspect/conversion.h"

#include <airspace/encoding.h>

namespace quorvel::inspect {

void Conversion::append(airspace::Frames const& frames, std::string& out) {
    for (auto const& frame : frames) {
        bool const isStamped = frame.stamp.has_value();
        auto const encoding = _to == airspace::Encoding::AvrStamped && !isStamped ? airspace::Encoding::Avr : _to;
        auto const before = out.size();
        airspace::appendEncoded(out, frame, encoding);
        if (out.size() == before) {
            ++_leftOut;
            continue;
        }
        ++(frame.isModeAc() ? _modeAc : _frames);
        if (isStamped && !hasStamps(_to)) ++_stamps;
        if (!isStamped && hasStamps(_to)) ++_unstamped;
        if (frame.signal != 0 && !hasSignals(_to)) ++_signals;
    }
}

bool isBinary(airspace::Encoding encoding) {
    return encoding == airspace::Encoding::Beast || encoding == airspace::Encoding::BeastPlain ||
           encoding == airspace::Encoding::Raw;
}

bool hasStamps(airspace::Encoding encoding) {
    return encoding == airspace::Encoding::AvrStamped || hasSignals(encoding);
}

bool hasSignals(airspace::Encoding encoding) {
    return encoding == airspace::Encoding::Beast || encoding == airspace::Encoding::BeastPlain;
}

} // namespace quorvel::inspect
