// SPDX-License-Identifier: MIT
#include "run/frame_reader.h"

#include "files/host_error.h"
#include "files/time_text.h"
#include "terminal/console.h"

namespace quorvel::run {

namespace {

constexpr std::size_t kDateCharacters = 10;

// The last date in a file's name, 0 when there is none.
airspace::TimeMs dateInName(std::string const& path) {
    auto const name = path.substr(path.rfind('/') + 1);
    for (auto at = name.size(); at-- > 0;) {
        if (at + kDateCharacters > name.size()) continue;
        if (auto const date = files::parseTime(name.substr(at, kDateCharacters))) return *date;
    }
    return 0;
}

airspace::StreamOptions dated(airspace::StreamOptions options, std::string const& name) {
    if (options.time.start == 0) options.time.start = dateInName(name);
    return options;
}

} // namespace

FrameReader::FrameReader(std::string const& name, airspace::StreamOptions const& options)
    : _source(name), _stream(dated(options, name)), _progress(_source.name(), _source.size()) {}

airspace::Frames FrameReader::read() {
    airspace::Frames frames;
    while (frames.empty() && !_ended) readPiece(frames);
    return frames;
}

void FrameReader::readPiece(airspace::Frames& frames) {
    bool isKnown = true;
    if (_source.read(_bytes)) {
        isKnown = _stream.feed(_bytes, files::hostTime(), frames);
    } else {
        _ended = true;
        isKnown = _stream.finish(files::hostTime(), frames);
        complain(_source.complaint());
    }
    if (!isKnown) throw files::UnknownEncoding(_source.name(), std::string(_stream.otherContent()));
    complain(_stream.remark());
    _progress.advance(_source.done(), _stream.counts().frames);
}

void FrameReader::complain(std::string const& what) const {
    if (!what.empty()) terminal::console::say("trevallo: " + _source.name() + ": " + what);
}

} // namespace quorvel::run
