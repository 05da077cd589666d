// SPDX-License-Identifier: MIT
#include "outputs/frame_output.h"

#include "host/frame_writer.h"

#include <utility>

namespace quorvel::host {

FrameOutput::FrameOutput(std::unique_ptr<Sink> sink, Encoding encoding, Confidence least)
    : _sink(std::move(sink)), _encoding(encoding), _least(least) {}

bool FrameOutput::passes(HeardFrame const& heard) const {
    if (_least == modes::ModeSMessage::NONE) return true;
    return heard.message != nullptr && heard.message->confidence() >= _least;
}

void FrameOutput::heard(HeardFrame const& heard) {
    if (!passes(heard)) return;
    _item.clear();
    appendEncoded(_item, heard.frame, _encoding);
    if (!_item.empty()) _sink->write(_item);
}

void FrameOutput::flush() { _sink->flush(); }

} // namespace quorvel::host
