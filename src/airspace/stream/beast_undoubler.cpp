// SPDX-License-Identifier: MIT
#include "airspace/stream/beast_undoubler.h"

#include <airspace/encoding.h>

#include "core/wire.h"

#include <algorithm>
#include <array>

namespace quorvel::airspace {

namespace {

using modes::wire::BeastRecord;

constexpr char kEscape = BeastRecord::kEscape;
constexpr std::size_t kHeadBytes = BeastRecord::kHeadBytes;

// Bytes of a record that is kept, by its type; 0 of all others. Types come in no order that a branch could be predicted by.
constexpr auto kKeptBytes = [] {
    std::array<std::uint8_t, 256> bytes{};
    for (unsigned type = 0; type != bytes.size(); ++type) {
        auto const character = static_cast<char>(type);
        if (!BeastRecord::isStatus(character)) bytes[type] = static_cast<std::uint8_t>(BeastRecord::bytes(character));
    }
    return bytes;
}();

std::size_t keptBytes(char type) { return kKeptBytes[static_cast<unsigned char>(type)]; }

bool startsRecord(std::string_view sample, std::size_t at) {
    return at + 1 < sample.size() && sample[at] == kEscape && BeastRecord::bytes(sample[at + 1]) != 0;
}

// Whether something of the stream starts here: a record of ours, or of a kind that is not.
bool startsAny(std::string_view sample, std::size_t at) {
    return at + 1 < sample.size() && sample[at] == kEscape && sample[at + 1] != kEscape;
}

// Where the record at `at` ends, or npos when the sample or the doubling ends before.
std::size_t endOfRecord(std::string_view sample, std::size_t at, bool doubled) {
    std::size_t missing = BeastRecord::bytes(sample[at + 1]) - kHeadBytes;
    for (at += kHeadBytes; missing > 0; --missing, ++at) {
        if (at >= sample.size()) return std::string_view::npos;
        if (!doubled || sample[at] != kEscape) continue;
        if (++at >= sample.size() || sample[at] != kEscape) return std::string_view::npos;
    }
    return at <= sample.size() ? at : std::string_view::npos;
}

// The length of a record that lies whole in `rest` with no escape byte inside, 0 otherwise, and of those that are
// dropped.
std::size_t escapelessRecord(std::string_view rest) {
    if (rest.size() < kHeadBytes || rest[0] != kEscape) return 0;
    auto const length = keptBytes(rest[1]);
    bool const isWhole = length != 0 && rest.size() >= length;
    return isWhole && rest.substr(0, length).find(kEscape, kHeadBytes) == std::string_view::npos ? length : 0;
}

// The length of all such records up to the first other: most are, and are copied at once.
std::size_t escapelessRecords(std::string_view bytes) {
    std::size_t length = 0;
    while (auto const next = escapelessRecord(bytes.substr(length))) length += next;
    return length;
}

} // namespace

void BeastUndoubler::undouble(std::string_view bytes, std::string& plain, Counts& counts) {
    while (!bytes.empty()) {
        if (_record.empty() && !_escaped) {
            auto const run = escapelessRecords(bytes);
            plain.append(bytes, 0, run);
            bytes.remove_prefix(run);
            if (bytes.empty()) return;
        }
        step(bytes.front(), plain, counts);
        bytes.remove_prefix(1);
    }
}

void BeastUndoubler::step(char byte, std::string& plain, Counts& counts) {
    bool const wasEscaped = _escaped;
    _escaped = !wasEscaped && byte == kEscape;
    if (_escaped) return;
    if (wasEscaped && byte != kEscape) return beginRecord(byte, counts);
    if (_record.empty()) {
        counts.skippedBytes += wasEscaped ? 2 : 1;
        return;
    }
    _record += byte;
    if (_record.size() == _recordBytes) endRecord(plain, counts);
}

// A single escape byte starts a record wherever it is; one inside a frame says that the rest of that one
// is lost.
void BeastUndoubler::beginRecord(char type, Counts& counts) {
    giveUpRecord(counts);
    if (BeastRecord::bytes(type) == 0) {
        counts.skippedBytes += kHeadBytes;
        return;
    }
    _record = {kEscape, type};
    _recordBytes = BeastRecord::bytes(type);
}

void BeastUndoubler::endRecord(std::string& plain, Counts& counts) {
    if (BeastRecord::isStatus(_record[1])) {
        ++counts.statusFrames;
    } else {
        plain += _record;
    }
    _record.clear();
}

void BeastUndoubler::giveUpRecord(Counts& counts) {
    if (!_record.empty()) ++counts.brokenFrames;
    _record.clear();
}

void BeastUndoubler::finish(Counts& counts) {
    if (_escaped && _record.empty()) ++counts.skippedBytes;
    _escaped = false;
    giveUpRecord(counts);
}

void cutPlainRecords(std::string& stream, std::string& plain, Counts& counts, bool isEnd) {
    std::string_view rest = stream;
    while (!rest.empty()) {
        if (rest.size() == 1 && rest[0] == kEscape && !isEnd) break; // may be the start of a record
        if (!startsRecord(rest, 0)) {
            auto const next = std::min(rest.find(kEscape, 1), rest.size());
            counts.skippedBytes += next;
            rest.remove_prefix(next);
        } else if (BeastRecord::isStatus(rest[1])) {
            ++counts.statusFrames; // its body is passed over in search of the next record
            rest.remove_prefix(kHeadBytes);
        } else if (auto const length = BeastRecord::bytes(rest[1]); rest.size() >= length) {
            plain.append(rest, 0, length);
            rest.remove_prefix(length);
        } else {
            if (!isEnd) break;
            ++counts.brokenFrames;
            rest = {};
        }
    }
    stream.erase(0, stream.size() - rest.size());
}

std::size_t plainRecordBytes(std::string_view plain) { return keptBytes(plain[1]); }

std::size_t chainedBytes(std::string_view sample, bool doubled) {
    std::size_t chained = 0;
    for (std::size_t at = 0; at < sample.size();) {
        auto const end = startsRecord(sample, at) ? endOfRecord(sample, at, doubled) : std::string_view::npos;
        if (end == std::string_view::npos) {
            ++at;
            continue;
        }
        if (end == sample.size() || startsAny(sample, end)) chained += end - at;
        at = end;
    }
    return chained;
}

bool looksDoubled(std::string_view sample) { return chainedBytes(sample, true) >= chainedBytes(sample, false); }

std::string undoubledBeast(std::string_view stream) {
    std::string records;
    Counts ignored;
    BeastUndoubler().undouble(stream, records, ignored);
    std::string frames;
    for (std::string_view rest = records; !rest.empty(); rest.remove_prefix(plainRecordBytes(rest))) {
        if (rest[1] != BeastRecord::kIdentityType) frames.append(rest, 0, plainRecordBytes(rest));
    }
    return frames;
}

} // namespace quorvel::airspace
