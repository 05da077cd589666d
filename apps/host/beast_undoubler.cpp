// SPDX-License-Identifier: MIT
#include "host/beast_undoubler.h"

namespace quorvel::host {

namespace {

constexpr char kEscape = '\x1A';
constexpr std::size_t kHeadBytes = 2 + 6 + 1; // escape and type, time stamp, signal level
constexpr char kStatusType = '4';

// Bytes after the head by type; 0 for what is no type.
std::size_t bodyBytes(char type) {
    switch (type) {
    case '1': return 2;
    case '2': return 7;
    case '3':
    case kStatusType: return 14;
    default: return 0;
    }
}

bool beginsFrame(std::string_view sample, std::size_t at) {
    return at + 1 < sample.size() && sample[at] == kEscape && bodyBytes(sample[at + 1]) != 0;
}

// Whether something of the stream begins here: a frame, or a record of a kind that is none of ours.
bool beginsRecord(std::string_view sample, std::size_t at) {
    return at + 1 < sample.size() && sample[at] == kEscape && sample[at + 1] != kEscape;
}

// Where the frame at `at` ends, or npos when the sample or the doubling breaks off before.
std::size_t endOfFrame(std::string_view sample, std::size_t at, bool doubled) {
    std::size_t missing = kHeadBytes - 2 + bodyBytes(sample[at + 1]);
    for (at += 2; missing > 0; --missing, ++at) {
        if (at >= sample.size()) return std::string_view::npos;
        if (!doubled || sample[at] != kEscape) continue;
        if (++at >= sample.size() || sample[at] != kEscape) return std::string_view::npos;
    }
    return at <= sample.size() ? at : std::string_view::npos;
}

} // namespace

void BeastUndoubler::undouble(std::string_view bytes, std::string& plain) {
    for (char const byte : bytes) {
        if (_escaped) {
            _escaped = false;
            if (byte == kEscape) {
                if (!_frame.empty()) take(byte, plain);
            } else {
                beginFrame(byte);
            }
        } else if (byte == kEscape) {
            _escaped = true;
        } else if (!_frame.empty()) {
            take(byte, plain);
        }
    }
}

// A single escape byte begins a frame wherever it stands; one inside a frame says that the rest of that one
// is lost.
void BeastUndoubler::beginFrame(char type) {
    if (!_frame.empty()) ++_broken;
    _frame.clear();
    if (bodyBytes(type) == 0) return;
    _frame = {kEscape, type};
    _frameBytes = kHeadBytes + bodyBytes(type);
}

void BeastUndoubler::take(char byte, std::string& plain) {
    _frame += byte;
    if (_frame.size() < _frameBytes) return;
    ++_frames;
    if (_frame[1] != kStatusType) plain += _frame;
    _frame.clear();
}

std::size_t chainedBytes(std::string_view sample, bool doubled) {
    std::size_t chained = 0;
    for (std::size_t at = 0; at < sample.size();) {
        auto const end = beginsFrame(sample, at) ? endOfFrame(sample, at, doubled) : std::string_view::npos;
        if (end == std::string_view::npos) {
            ++at;
            continue;
        }
        if (end == sample.size() || beginsRecord(sample, end)) chained += end - at;
        at = end;
    }
    return chained;
}

bool looksDoubled(std::string_view sample) {
    return chainedBytes(sample, true) >= chainedBytes(sample, false);
}

} // namespace quorvel::host
