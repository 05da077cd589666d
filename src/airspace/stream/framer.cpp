// SPDX-License-Identifier: MIT
#include "airspace/stream/framer.h"

#include "airspace/stream/stream_encoding.h"
#include "airspace/stream/text_line.h"
#include "core/wire.h"

#include <algorithm>
#include <cstring>

namespace quorvel::airspace {

namespace {

namespace wire = modes::wire;
using wire::BeastRecord;

// What the public header tells hosts.
static_assert(kModeAcFrameBytes == wire::kModeAcFrameBytes && kShortFrameBytes == wire::kShortFrameBytes &&
              kLongFrameBytes == wire::kLongFrameBytes);

constexpr std::size_t kLongestLine = 4096; // an AVR frame has 42 characters
constexpr std::size_t kFirstSample = 512;

bool isText(Encoding encoding) {
    return encoding == Encoding::Avr || encoding == Encoding::AvrStamped || encoding == Encoding::Hex;
}

// All its 64 bits: more than `bits` reads at once.
std::uint64_t identityIn(std::string_view record) {
    constexpr std::size_t kHalf = 4 * BeastRecord::kIdentityBytes;
    auto const high = modes::bits<std::uint64_t>(record, 8 * BeastRecord::kIdentityAt, kHalf);
    return high << kHalf | modes::bits<std::uint64_t>(record, 8 * BeastRecord::kIdentityAt + kHalf, kHalf);
}

} // namespace

Framer::Framer(std::optional<Encoding> encoding, std::uint64_t receiver, Counts& counts)
    : _encoding(encoding), _receiver(receiver), _counts(counts), _nextSample(kFirstSample) {}

bool Framer::feed(std::string_view bytes, Frames& frames) {
    _counts.bytes += bytes.size();
    _waiting += bytes;
    if (!_encoding && !findOut()) return false;
    if (_encoding) cut(frames);
    return true;
}

// The start is judged at fixed lengths, so that it does not matter in which pieces it comes.
bool Framer::findOut() {
    for (; !_encoding && _nextSample <= _waiting.size() && _nextSample < kSampleBytes; _nextSample *= 2) {
        _encoding = findEncodingForSure(std::string_view(_waiting).substr(0, _nextSample));
    }
    if (_encoding || _waiting.size() < kSampleBytes) return true;
    _encoding = findEncoding(std::string_view(_waiting).substr(0, kSampleBytes));
    return _encoding.has_value();
}

bool Framer::settle(Frames& frames) {
    if (_encoding || _waiting.empty()) return true;
    _encoding = findEncoding(_waiting);
    if (!_encoding) return findOtherContent(_waiting).empty();
    cut(frames);
    return true;
}

bool Framer::finish(Frames& frames) {
    if (_waiting.empty() && !_encoding) return true;
    settle(frames);
    if (!_encoding) return false;
    if (isText(*_encoding)) {
        if (!_skippingLine && !_waiting.empty()) cutLines(_waiting.size(), frames);
    } else if (*_encoding == Encoding::Raw) {
        _counts.brokenFrames += _waiting.empty() ? 0U : 1U;
        _counts.skippedBytes += _waiting.size();
    } else {
        cutBeast(frames, true);
    }
    _waiting.clear();
    return true;
}

void Framer::cut(Frames& frames) {
    switch (*_encoding) {
    case Encoding::Avr:
    case Encoding::AvrStamped:
    case Encoding::Hex: {
        auto const lastLineFeed = _waiting.rfind('\n');
        if (lastLineFeed != std::string::npos) cutLines(lastLineFeed + 1, frames);
        if (_skippingLine || _waiting.size() > kLongestLine) {
            _counts.overlongLines += _skippingLine ? 0U : 1U;
            _skippingLine = true;
            _counts.skippedBytes += _waiting.size();
            _waiting.clear();
        }
        return;
    }
    case Encoding::Beast:
    case Encoding::BeastPlain: return cutBeast(frames, false);
    case Encoding::Raw: return cutRawFrames(frames);
    }
}

// Cuts the lines up to `end`, less the rest of one that was too long.
void Framer::cutLines(std::size_t end, Frames& frames) {
    std::string_view lines(_waiting.data(), end);
    if (_skippingLine) {
        auto const rest = lines.find('\n') + 1;
        _counts.skippedBytes += rest;
        lines.remove_prefix(rest);
        _skippingLine = false;
    }
    while (!lines.empty()) {
        auto const length = std::min(lines.find('\n'), lines.size());
        auto line = lines.substr(0, length);
        lines.remove_prefix(std::min(length + 1, lines.size()));
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1); // network streams end lines with both
        cutLine(line, frames);
    }
    _waiting.erase(0, end);
}

void Framer::cutLine(std::string_view line, Frames& frames) {
    if (line.empty() || isComment(line)) return;
    if (line.size() > kLongestLine) {
        ++_counts.overlongLines;
        _counts.skippedBytes += line.size();
        return;
    }
    auto frame = *_encoding == Encoding::Hex ? readHexLine(line) : readAvrLine(line);
    if (!frame) {
        ++_counts.badLines;
        return;
    }
    frame->receiver = _receiver;
    frames.push_back(*frame);
}

void Framer::cutBeast(Frames& frames, bool isEnd) {
    if (*_encoding == Encoding::Beast) {
        _undoubler.undouble(_waiting, _records, _counts);
        _waiting.clear();
        if (isEnd) _undoubler.finish(_counts);
    } else {
        cutPlainRecords(_waiting, _records, _counts, isEnd);
    }
    for (std::string_view rest = _records; !rest.empty();) {
        auto const record = rest.substr(0, plainRecordBytes(rest));
        cutRecord(record, frames);
        rest.remove_prefix(record.size());
    }
    _records.clear();
}

// An aggregator's identities are of the frames that follow, up to the next.
void Framer::cutRecord(std::string_view record, Frames& frames) {
    if (record[1] == BeastRecord::kIdentityType) {
        ++_counts.statusFrames;
        _receiver = identityIn(record);
        return;
    }
    auto& frame = add(record.substr(BeastRecord::kBodyAt), frames);
    frame.stamp = wire::stampAt(record, BeastRecord::kStampAt);
    frame.signal = static_cast<std::uint8_t>(record[BeastRecord::kSignalAt]);
}

void Framer::cutRawFrames(Frames& frames) {
    std::string_view rest = _waiting;
    while (!rest.empty() && rest.size() >= modeSFrameBytes(rest[0])) {
        auto const length = modeSFrameBytes(rest[0]);
        add(rest.substr(0, length), frames);
        rest.remove_prefix(length);
    }
    _waiting.erase(0, _waiting.size() - rest.size());
}

// A frame is made where it stays: copied right after it was written, it would be waited for.
Frame& Framer::add(std::string_view bytes, Frames& frames) const {
    auto& frame = frames.emplace_back();
    switch (bytes.size()) { // a copy of known length needs no call
    case kLongFrameBytes: std::memcpy(frame.bytes.data(), bytes.data(), kLongFrameBytes); break;
    case kShortFrameBytes: std::memcpy(frame.bytes.data(), bytes.data(), kShortFrameBytes); break;
    default: std::memcpy(frame.bytes.data(), bytes.data(), bytes.size());
    }
    frame.length = static_cast<std::uint8_t>(bytes.size());
    frame.receiver = _receiver;
    return frame;
}

} // namespace quorvel::airspace
