// SPDX-License-Identifier: MIT
#include "host/framer.h"

#include "host/host_error.h"
#include "host/raw_frames.h"
#include "host/stream_format.h"

#include <iterator>
#include <utility>

namespace quorvel::host {

namespace {

using modes::ModeSEncapsulation;

constexpr std::size_t kLongestLine = 4096; // an AVR frame has 42 characters

void append(ModeSEncapsulation::Records& records, ModeSEncapsulation::Records&& more) {
    records.insert(records.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

// Network streams end their lines with a carriage return and a line feed, the extractor knows the line feed
// only.
std::string withoutCarriageReturns(std::string_view lines) {
    std::string text;
    text.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        bool const endsLine = i + 1 == lines.size() || lines[i + 1] == '\n';
        if (lines[i] != '\r' || !endsLine) text += lines[i];
    }
    return text;
}

} // namespace

Framer::Framer(std::optional<Format> format, BeastEscapes escapes) : _format(format), _escapes(escapes) {}

Framer::Records Framer::feed(std::string_view bytes) {
    _waiting += bytes;
    if (!_settled) {
        bool const needsSample =
            !_format || (*_format == ModeSEncapsulation::Beast && _escapes == BeastEscapes::Find);
        if (needsSample && _waiting.size() < kSampleBytes) return {};
        settle();
    }
    return cut();
}

Framer::Records Framer::finish() {
    if (_waiting.empty()) return {};
    settle();
    auto records = cut();
    if (_format == ModeSEncapsulation::Avr && !_skippingLine) append(records, cutLines(_waiting.size()));
    if (_format == ModeSEncapsulation::Beast) {
        _plain += _waiting; // an escape byte held back in vain: it ended the last frame
        append(records, ModeSEncapsulation::extract(_plain, ModeSEncapsulation::Beast));
    }
    // a frame that was cut off: the extractor says so, unless what is left of it looks like a short one
    if (_format == ModeSEncapsulation::RawBin && !_waiting.empty() && _waiting.size() != kShortFrameBytes) {
        append(records, ModeSEncapsulation::extractRawBin(_waiting));
    }
    _waiting.clear();
    return records;
}

// Only the beginning counts, however much of the stream has come at once.
void Framer::settle() {
    if (_settled) return;
    auto const sample = std::string_view(_waiting).substr(0, kSampleBytes);
    if (!_format) _format = findFormat(sample);
    if (!_format) {
        throw HostError(
            "it begins like no AVR text, Beast stream or raw binary (name it with --format if it is one)");
    }
    if (_escapes == BeastEscapes::Find) {
        _escapes = looksDoubled(sample) ? BeastEscapes::Doubled : BeastEscapes::Plain;
    }
    _settled = true;
}

Framer::Records Framer::cut() {
    switch (*_format) {
    case ModeSEncapsulation::Avr: {
        auto const lastLineFeed = _waiting.rfind('\n');
        if (lastLineFeed != std::string::npos) return cutLines(lastLineFeed + 1);
        if (_skippingLine || _waiting.size() > kLongestLine) {
            _skippingLine = true;
            _droppedBytes += _waiting.size();
            _waiting.clear();
        }
        return {};
    }
    case ModeSEncapsulation::Beast: return cutBeast();
    case ModeSEncapsulation::RawBin: return cutRawFrames();
    default: throw HostError("this format cannot be read");
    }
}

// Hands over the lines up to `end`, less the rest of one that was too long.
Framer::Records Framer::cutLines(std::size_t end) {
    std::string_view lines(_waiting.data(), end);
    if (_skippingLine) {
        auto const rest = lines.find('\n') + 1;
        _droppedBytes += rest;
        lines.remove_prefix(rest);
        _skippingLine = false;
    }
    auto buffer = withoutCarriageReturns(lines);
    _waiting.erase(0, end);
    return ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr);
}

// The extractor gives up an escape byte at the very end of its buffer, which may be the beginning of the next
// frame: in a plain stream it waits for what follows.
Framer::Records Framer::cutBeast() {
    if (_escapes == BeastEscapes::Doubled) {
        _undoubler.undouble(_waiting, _plain);
        _waiting.clear();
    } else {
        auto const end = _waiting.size() - (_waiting.ends_with('\x1A') ? 1 : 0);
        _plain.append(_waiting, 0, end);
        _waiting.erase(0, end);
    }
    return ModeSEncapsulation::extract(_plain, ModeSEncapsulation::Beast);
}

Framer::Records Framer::cutRawFrames() {
    Records records;
    std::size_t at = 0;
    while (at < _waiting.size() && at + rawFrameBytes(_waiting[at]) <= _waiting.size()) {
        auto frame = _waiting.substr(at, rawFrameBytes(_waiting[at]));
        at += frame.size();
        append(records, ModeSEncapsulation::extract(frame, ModeSEncapsulation::RawBin));
    }
    _waiting.erase(0, at);
    return records;
}

} // namespace quorvel::host
