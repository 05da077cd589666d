// SPDX-License-Identifier: MIT
#include "host/frame_reader.h"

#include "host/host_error.h"

#include <iostream>

namespace quorvel::host {

FrameReader::FrameReader(std::string const& name, ReadOptions const& options)
    : _source(name)
    , _framer(options.encoding, _counters)
    , _clock(options.time, false)
    , _progress(_source.name(), _source.size()) {}

Frames FrameReader::read() {
    Frames frames;
    try {
        readMore(frames);
        // without times there is nothing to wait for; and how stamps count shows in many frames only
        while (!_clock.settle(frames, 0, _ended)) readMore(frames);
    } catch (UnknownEncoding const&) {
        throw UnknownEncoding(_source.name());
    }
    for (auto& frame : frames) {
        _clock.stamp(frame, 0, _counters);
        ++(frame.record->data().size() == kModeAcFrameBytes ? _counters.modeAcFrames : _counters.frames);
    }
    return frames;
}

void FrameReader::readMore(Frames& frames) {
    auto const before = frames.size();
    for (std::string bytes; frames.size() == before && !_ended;) {
        if (_source.read(bytes)) {
            _framer.feed(bytes, frames);
        } else {
            _ended = true;
            _framer.finish(frames);
            if (!_source.complaint().empty()) complain(_source.complaint());
        }
        bool const isSilent = _frameless.take(bytes, frames.size() > before);
        if (isSilent || (_ended && _frameless.finish())) complain(_frameless.text(_framer.encoding()));
        _progress.advance(_source.done(), _counters.frames);
    }
}

void FrameReader::complain(std::string const& what) const {
    Progress::erase();
    std::cerr << "trevallo: " << _source.name() << ": " << what << '\n';
}

} // namespace quorvel::host
