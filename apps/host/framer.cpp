// SPDX-License-Identifier: MIT
#include "host/framer.h"

#include "host/stream_encoding.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace quorvel::host {

namespace {

using modes::ModeSEncapsulation;

constexpr std::size_t kLongestLine = 4096; // an AVR frame has 42 characters
constexpr std::size_t kFirstSample = 512;
constexpr std::size_t kStampDigits = 12;

std::uint64_t stampOf(std::string_view plainFrame) {
    std::uint64_t stamp = 0;
    for (char const byte : plainFrame.substr(kBeastStampAt, kBeastStampBytes))
        stamp = stamp << 8 | static_cast<unsigned char>(byte);
    return stamp;
}

std::optional<std::uint64_t> stampOfLine(std::string_view line) {
    if (line.size() <= kStampDigits || line.front() != '@') return {};
    std::uint64_t stamp = 0;
    auto const* const end = line.data() + 1 + kStampDigits;
    auto const read = std::from_chars(line.data() + 1, end, stamp, 16);
    return read.ptr == end ? std::optional(stamp) : std::nullopt;
}

bool isText(Encoding encoding) {
    return encoding == Encoding::Avr || encoding == Encoding::AvrStamped || encoding == Encoding::Hex;
}

} // namespace

Framer::Framer(std::optional<Encoding> encoding, Counters& counters)
    : _encoding(encoding), _counters(counters), _nextSample(kFirstSample) {}

void Framer::feed(std::string_view bytes, Frames& frames) {
    _counters.bytes += bytes.size();
    _waiting += bytes;
    if (!_encoding) findOut();
    if (_encoding) cut(frames);
}

// The beginning is judged at fixed lengths, so that it does not matter in which pieces it comes.
void Framer::findOut() {
    for (; !_encoding && _nextSample <= _waiting.size() && _nextSample < kSampleBytes; _nextSample *= 2) {
        _encoding = findEncodingForSure(std::string_view(_waiting).substr(0, _nextSample));
    }
    if (_encoding || _waiting.size() < kSampleBytes) return;
    _encoding = findEncoding(std::string_view(_waiting).substr(0, kSampleBytes));
    if (!_encoding) throw unknownEncoding();
}

void Framer::settle(Frames& frames) {
    if (_encoding || _waiting.empty()) return;
    _encoding = findEncoding(_waiting);
    if (!_encoding && !findOtherContent(_waiting).empty()) throw unknownEncoding();
    if (_encoding) cut(frames);
}

UnknownEncoding Framer::unknownEncoding() const {
    return UnknownEncoding("the stream", std::string(findOtherContent(_waiting)));
}

void Framer::finish(Frames& frames) {
    if (_waiting.empty() && !_encoding) return;
    settle(frames);
    if (!_encoding) throw unknownEncoding();
    if (isText(*_encoding)) {
        if (!_skippingLine && !_waiting.empty()) cutLines(_waiting.size(), frames);
    } else if (*_encoding == Encoding::Raw) {
        if (!_waiting.empty()) {
            ++_counters.brokenFrames;
            _counters.skippedBytes += _waiting.size();
        }
    } else {
        cutBeast(frames, true);
    }
    _waiting.clear();
}

void Framer::cut(Frames& frames) {
    switch (*_encoding) {
    case Encoding::Avr:
    case Encoding::AvrStamped:
    case Encoding::Hex: {
        auto const lastLineFeed = _waiting.rfind('\n');
        if (lastLineFeed != std::string::npos) cutLines(lastLineFeed + 1, frames);
        if (_skippingLine || _waiting.size() > kLongestLine) {
            _counters.overlongLines += _skippingLine ? 0 : 1;
            _skippingLine = true;
            _counters.skippedBytes += _waiting.size();
            _waiting.clear();
        }
        return;
    }
    case Encoding::Beast:
    case Encoding::BeastPlain: return cutBeast(frames, false);
    case Encoding::Raw: return cutRawFrames(frames);
    }
}

// Hands over the lines up to `end`, less the rest of one that was too long.
void Framer::cutLines(std::size_t end, Frames& frames) {
    std::string_view lines(_waiting.data(), end);
    if (_skippingLine) {
        auto const rest = lines.find('\n') + 1;
        _counters.skippedBytes += rest;
        lines.remove_prefix(rest);
        _skippingLine = false;
    }
    while (!lines.empty()) {
        auto const length = std::min(lines.find('\n'), lines.size());
        auto line = lines.substr(0, length);
        lines.remove_prefix(std::min(length + 1, lines.size()));
        // network streams end their lines with a carriage return too, the extractor knows the line feed only
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        cutLine(line, frames);
    }
    _waiting.erase(0, end);
}

void Framer::cutLine(std::string_view line, Frames& frames) {
    if (line.empty()) return;
    if (line.size() > kLongestLine) {
        ++_counters.overlongLines;
        _counters.skippedBytes += line.size();
        return;
    }
    bool const isHex = *_encoding == Encoding::Hex;
    _line.assign(isHex ? "*" : "");
    _line += line;
    if (isHex) _line += ';';
    auto records = ModeSEncapsulation::extractAvr(_line);
    if (records.empty()) {
        ++_counters.badLines;
        return;
    }
    frames.push_back({std::move(records.front()), stampOfLine(line), 0});
}

// A frame of the plain stream gives one record, so the two lists go side by side.
void Framer::cutBeast(Frames& frames, bool isEnd) {
    if (*_encoding == Encoding::Beast) {
        _undoubler.undouble(_waiting, _plain, _counters);
        _waiting.clear();
        if (isEnd) _undoubler.finish(_counters);
    } else {
        cutPlainFrames(_waiting, _plain, _counters, isEnd);
    }
    auto const first = frames.size();
    for (std::string_view rest = _plain; !rest.empty(); rest.remove_prefix(plainFrameBytes(rest))) {
        auto& frame = frames.emplace_back();
        frame.stamp = stampOf(rest);
        frame.signal = static_cast<std::uint8_t>(rest[kBeastSignalAt]);
    }
    auto records = ModeSEncapsulation::extractBeast(_plain);
    for (std::size_t i = 0; i < records.size(); ++i) frames[first + i].record = std::move(records[i]);
}

void Framer::cutRawFrames(Frames& frames) {
    std::size_t at = 0;
    while (at < _waiting.size() && at + rawFrameBytes(_waiting[at]) <= _waiting.size()) {
        auto frame = _waiting.substr(at, rawFrameBytes(_waiting[at]));
        at += frame.size();
        auto records = ModeSEncapsulation::extractRawBin(frame);
        frames.push_back({std::move(records.front()), std::nullopt, 0});
    }
    _waiting.erase(0, at);
}

} // namespace quorvel::host
