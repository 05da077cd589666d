// SPDX-License-Identifier: MIT
#include "inspect/recording_reader.h"

#include "files/host_error.h"
#include "files/time_text.h"
#include "terminal/console.h"

namespace quorvel::inspect {

namespace {

airspace::StreamOptions optionsOf(std::optional<airspace::Encoding> encoding) {
    airspace::StreamOptions options;
    options.encoding = encoding;
    return options;
}

} // namespace

RecordingReader::RecordingReader(std::string const& name, std::optional<airspace::Encoding> encoding)
    : _source(name), _stream(optionsOf(encoding)), _progress(_source.name(), _source.size()) {
    if (encoding) _isCsv = false;
}

airspace::Frames RecordingReader::read() {
    airspace::Frames frames;
    while (frames.empty() && !_hasEnded) readPiece(frames);
    _frames += frames.size();
    _progress.advance(_source.done(), _frames);
    return frames;
}

void RecordingReader::readPiece(airspace::Frames& frames) {
    std::string bytes;
    _hasEnded = !_source.read(bytes);
    if (!_isCsv) {
        _beginning += bytes;
        _isCsv = CsvFrames::recognizes(_beginning, _hasEnded);
        if (!_isCsv) return;
        bytes.swap(_beginning);
        _beginning = {};
    }
    pass(bytes, frames);
    if (_hasEnded) finish(frames);
    complain(_stream.remark());
}

void RecordingReader::pass(std::string_view bytes, airspace::Frames& frames) {
    if (*_isCsv)
        _csv.feed(bytes, frames);
    else if (!bytes.empty())
        requireKnown(_stream.feed(bytes, files::hostTime(), frames));
}

void RecordingReader::finish(airspace::Frames& frames) {
    if (*_isCsv)
        _csv.finish(frames);
    else
        requireKnown(_stream.finish(files::hostTime(), frames));
    complain(_source.complaint());
}

bool RecordingReader::isTimed() const {
    return *_isCsv || isCounter() || _stream.timeReading() == airspace::TimeReading::Receiver;
}

std::uint64_t RecordingReader::badLines() const {
    return _csv.badLines() + _stream.counts().badLines + _stream.counts().overlongLines;
}

void RecordingReader::requireKnown(bool isKnown) const {
    if (!isKnown) throw files::UnknownEncoding(_source.name(), std::string(_stream.otherContent()));
}

void RecordingReader::complain(std::string const& what) const {
    if (!what.empty()) terminal::console::say("trevallo: " + _source.name() + ": " + what);
}

} // namespace quorvel::inspect
