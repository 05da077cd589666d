// SPDX-License-Identifier: MIT
#include "host/beast_undoubler.h"

#include <cstring>

namespace quorvel::host {

namespace {

constexpr std::size_t kHeadBytes = kBeastSignalAt + 1;
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
    return at + 1 < sample.size() && sample[at] == kBeastEscape && bodyBytes(sample[at + 1]) != 0;
}

// Whether something of the stream begins here: a frame, or a record of a kind that is none of ours.
bool beginsRecord(std::string_view sample, std::size_t at) {
    return at + 1 < sample.size() && sample[at] == kBeastEscape && sample[at + 1] != kBeastEscape;
}

// Where the frame at `at` ends, or npos when the sample or the doubling breaks off before.
std::size_t endOfFrame(std::string_view sample, std::size_t at, bool doubled) {
    std::size_t missing = kHeadBytes - 2 + bodyBytes(sample[at + 1]);
    for (at += 2; missing > 0; --missing, ++at) {
        if (at >= sample.size()) return std::string_view::npos;
        if (!doubled || sample[at] != kBeastEscape) continue;
        if (++at >= sample.size() || sample[at] != kBeastEscape) return std::string_view::npos;
    }
    return at <= sample.size() ? at : std::string_view::npos;
}

// The length of a frame that lies whole in `rest` with no escape byte inside, 0 otherwise: most do, and are
// copied at once.
std::size_t escapelessFrame(std::string_view rest) {
    if (!beginsFrame(rest, 0)) return 0;
    auto const length = kHeadBytes + bodyBytes(rest[1]);
    if (rest.size() < length) return 0;
    return std::memchr(rest.data() + 2, kBeastEscape, length - 2) == nullptr ? length : 0;
}

} // namespace

void BeastUndoubler::undouble(std::string_view bytes, std::string& plain, Counters& counters) {
    while (!bytes.empty()) {
        if (_frame.empty() && !_escaped) {
            if (auto const length = escapelessFrame(bytes); length > 0) {
                if (bytes[1] == kStatusType) {
                    ++counters.statusFrames;
                } else {
                    plain.append(bytes, 0, length);
                }
                bytes.remove_prefix(length);
                continue;
            }
        }
        step(bytes.front(), plain, counters);
        bytes.remove_prefix(1);
    }
}

void BeastUndoubler::step(char byte, std::string& plain, Counters& counters) {
    bool const wasEscaped = _escaped;
    _escaped = !wasEscaped && byte == kBeastEscape;
    if (_escaped) return;
    if (wasEscaped && byte != kBeastEscape) return beginFrame(byte, counters);
    if (_frame.empty()) {
        counters.skippedBytes += wasEscaped ? 2 : 1;
        return;
    }
    _frame += byte;
    if (_frame.size() == _frameBytes) endFrame(plain, counters);
}

// A single escape byte begins a frame wherever it stands; one inside a frame says that the rest of that one
// is lost.
void BeastUndoubler::beginFrame(char type, Counters& counters) {
    giveUpFrame(counters);
    if (bodyBytes(type) == 0) {
        counters.skippedBytes += 2;
        return;
    }
    _frame = {kBeastEscape, type};
    _frameBytes = kHeadBytes + bodyBytes(type);
}

void BeastUndoubler::endFrame(std::string& plain, Counters& counters) {
    if (_frame[1] == kStatusType) {
        ++counters.statusFrames;
    } else {
        plain += _frame;
    }
    _frame.clear();
}

void BeastUndoubler::giveUpFrame(Counters& counters) {
    if (!_frame.empty()) ++counters.brokenFrames;
    _frame.clear();
}

void BeastUndoubler::finish(Counters& counters) {
    if (_escaped && _frame.empty()) ++counters.skippedBytes;
    _escaped = false;
    giveUpFrame(counters);
}

void cutPlainFrames(std::string& stream, std::string& plain, Counters& counters, bool isEnd) {
    std::string_view rest = stream;
    while (!rest.empty()) {
        if (rest.size() == 1 && rest[0] == kBeastEscape && !isEnd) break; // perhaps the beginning of a frame
        if (!beginsFrame(rest, 0)) {
            auto const next = std::min(rest.find(kBeastEscape, 1), rest.size());
            counters.skippedBytes += next;
            rest.remove_prefix(next);
        } else if (rest[1] == kStatusType) {
            ++counters.statusFrames; // its body is passed over in search of the next frame
            rest.remove_prefix(2);
        } else if (auto const length = kHeadBytes + bodyBytes(rest[1]); rest.size() >= length) {
            plain.append(rest, 0, length);
            rest.remove_prefix(length);
        } else {
            if (!isEnd) break;
            ++counters.brokenFrames;
            rest = {};
        }
    }
    stream.erase(0, stream.size() - rest.size());
}

std::size_t plainFrameBytes(std::string_view plain) { return kHeadBytes + bodyBytes(plain[1]); }

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
