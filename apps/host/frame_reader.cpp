// SPDX-License-Identifier: MIT
#include "host/frame_reader.h"

#include "host/console.h"
#include "host/host_error.h"

#include <chrono>

namespace quorvel::host {

namespace {

constexpr std::size_t kDateCharacters = 10;

TimeMs nowOfTheHost() {
    return static_cast<TimeMs>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                   std::chrono::system_clock::now().time_since_epoch())
                                   .count());
}

// The last date in a file's name, 0 when there is none.
TimeMs dateInName(std::string const& path) {
    auto const name = path.substr(path.rfind('/') + 1);
    for (auto at = name.size(); at-- > 0;) {
        if (at + kDateCharacters > name.size()) continue;
        if (auto const date = parseTime(name.substr(at, kDateCharacters))) return *date;
    }
    return 0;
}

ReadOptions dated(ReadOptions options, std::string const& name) {
    if (options.time.start == 0) options.time.start = dateInName(name);
    return options;
}

} // namespace

FrameReader::FrameReader(std::string const& name, ReadOptions const& options)
    : _source(name)
    , _input(dated(options, name), Origin::Recording, _counters)
    , _progress(_source.name(), _source.size()) {}

Frames FrameReader::read() {
    Frames frames;
    while (frames.empty() && !_ended) readPiece(frames);
    return frames;
}

void FrameReader::readPiece(Frames& frames) {
    try {
        if (_source.read(_bytes)) {
            _input.feed(_bytes, nowOfTheHost(), frames);
        } else {
            _ended = true;
            _input.finish(nowOfTheHost(), frames);
            complain(_source.complaint());
        }
    } catch (UnknownEncoding const& unknown) {
        throw UnknownEncoding(_source.name(), unknown.looksLike());
    }
    complain(_input.complaint());
    _progress.advance(_source.done(), _counters.frames);
}

void FrameReader::complain(std::string const& what) const {
    if (!what.empty()) console::say("trevallo: " + _source.name() + ": " + what);
}

} // namespace quorvel::host
