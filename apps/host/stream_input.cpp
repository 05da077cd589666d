// SPDX-License-Identifier: MIT
#include "host/stream_input.h"

#include <iterator>
#include <utility>

namespace quorvel::host {

StreamInput::StreamInput(ReadOptions const& options, Origin origin, Counters& counters)
    : _counters(counters), _framer(options.encoding, counters), _clock(options.time, origin) {}

void StreamInput::feed(std::string_view bytes, TimeMs arrival, Frames& frames) {
    auto const before = _held.size();
    _framer.feed(bytes, _held);
    if (_framer.encoding() && _frameless.take(bytes, _held.size() > before))
        _complaint = _frameless.text(_framer.encoding());
    handOver(arrival, false, frames);
}

void StreamInput::settle(TimeMs arrival, Frames& frames) {
    _framer.settle(_held);
    if (!_held.empty()) handOver(arrival, true, frames);
    if (_frameless.settle(_framer.encoding())) _complaint = _frameless.text(_framer.encoding());
}

void StreamInput::finish(TimeMs arrival, Frames& frames) {
    auto const before = _held.size();
    _framer.finish(_held);
    _frameless.take({}, _held.size() > before);
    if (_frameless.finish(_framer.encoding())) _complaint = _frameless.text(_framer.encoding());
    handOver(arrival, true, frames);
}

void StreamInput::handOver(TimeMs arrival, bool isWhole, Frames& frames) {
    if ((_held.empty() && !isWhole) || !_clock.settle(_held, arrival, isWhole)) return;
    for (auto& frame : _held) {
        _clock.stamp(frame, arrival, _counters);
        frame.now = _clock.now();
        ++(frame.record->data().size() == kModeAcFrameBytes ? _counters.modeAcFrames : _counters.frames);
    }
    if (frames.empty()) {
        frames.swap(_held);
    } else {
        frames.insert(frames.end(), std::make_move_iterator(_held.begin()),
                      std::make_move_iterator(_held.end()));
    }
    _held.clear();
}

std::string StreamInput::complaint() { return std::exchange(_complaint, {}); }

} // namespace quorvel::host
