// SPDX-License-Identifier: MIT
#include "outputs/frame_output.h"

#include <utility>

namespace quorvel::outputs {

FrameOutput::FrameOutput(std::unique_ptr<Sink> sink, airspace::Encoding encoding, Confidence least)
    : _sink(std::move(sink)), _encoding(encoding), _least(least) {}

bool FrameOutput::passes(HeardFrame const& heard) const {
    if (_least == modes::ModeSMessage::NONE) return true;
    return heard.reply.isDecoded && heard.reply.confidence >= _least;
}

void FrameOutput::heard(HeardFrame const& heard) {
    if (!passes(heard)) return;
    _item.clear();
    airspace::appendEncoded(_item, heard.frame, _encoding);
    if (!_item.empty()) _sink->write(_item);
}

void FrameOutput::flush() { _sink->flush(); }

} // namespace quorvel::outputs
