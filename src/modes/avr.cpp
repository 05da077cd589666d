// SPDX-License-Identifier: MIT
// AVR text lines: "*" or ":" and the frame in hexadecimal digits, or "@" and a 48-bit time stamp before the
// frame; then ";". Lines that start with "?" are comments of receivers.
#include <modes/modes_encapsulation.h>

#include <modes/log.h>

#include "core/clock.h"
#include "core/hex.h"
#include "core/log_if_shown.h"
#include "core/wire.h"
#include "modes/frame_record.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quorvel::modes {

namespace {

constexpr std::string_view kPlainHeads = "*:";
constexpr char kTimedHead = '@';
constexpr char kSilentHead = '?';
constexpr char kTail = ';';

bool isBlank(char character) { return character == ' ' || ('\t' <= character && character <= '\r'); }

// The byte of two characters as the base 16 conversion of C reads them: anything that is not a digit ends the number,
// one blank or sign may stand before it.
char byteOf(char first, char second) {
    unsigned const high = hexDigitValue(first);
    unsigned const low = hexDigitValue(second);
    if (high != kNoHexDigit) return static_cast<char>(low != kNoHexDigit ? high << 4 | low : high);
    if (low == kNoHexDigit) return 0;
    if (first == '-') return static_cast<char>(0U - low);
    return static_cast<char>(first == '+' || isBlank(first) ? low : 0);
}

// The number of bytes between head and tail of a line; a lone digit at the end is ignored.
std::size_t bytesIn(std::string_view line) { return line.size() < 2 ? 0 : (line.size() - 2) / 2; }

void logCorrupted(char const* text) {
    if (logShows(Log::Info)) Log::log(Log::Info, kEncapsulationModule, std::string(text));
}

void logLine(std::string_view line) {
    if (!logShows(Log::Debug)) return; // called for every line
    Log::log(Log::Debug, kEncapsulationModule, "Get AVR line (size = %u): %s", static_cast<unsigned>(line.size()),
        std::string(line).c_str());
}

struct ExtractionTime {
    std::uint64_t now;
    std::uint64_t midnight;
};

// The frame of one line without its line feed, or nothing.
std::shared_ptr<ModeSEncapsulation> readLine(std::string_view line, ExtractionTime const& host) {
    logLine(line);

    char const head = line.empty() ? '\0' : line.front();
    if (head == kSilentHead) return {};
    bool const timed = head == kTimedHead;
    if (line.empty() || (!timed && kPlainHeads.find(head) == std::string_view::npos)) {
        logCorrupted("Corrupted AVR message (head error):");
        return {};
    }
    if (line.back() != kTail) {
        logCorrupted("Corrupted AVR message (tail error):");
        return {};
    }

    auto const timeBytes = timed ? wire::kStampBytes : 0;
    auto const size = bytesIn(line);
    if (size < timeBytes || !wire::isFrameLength(size - timeBytes)) {
        logCorrupted("Corrupted AVR message (length error):");
        return {};
    }
    std::array<char, wire::kStampBytes + wire::kLongFrameBytes> bytes;
    for (std::size_t i = 0; i < size; ++i) bytes[i] = byteOf(line[1 + 2 * i], line[2 + 2 * i]);
    std::string_view const decoded(bytes.data(), size);
    auto const time = timed ? host.midnight + wire::timeOfDayMs(wire::stampAt(decoded, 0)) : host.now;
    return RecordAccess::make(time, decoded.substr(timeBytes));
}

// The nanosecond part holds the millisecond times 1000, which is what this encoding has always written
// (deliberate).
std::uint64_t writtenStamp(std::uint64_t milliseconds) {
    auto const ofDay = milliseconds % wire::kDayMs;
    return wire::stampOf(ofDay / 1000, ofDay % 1000 * 1000);
}

} // namespace

ModeSEncapsulation::Records ModeSEncapsulation::extractAvr(std::string& buffer) {
    Records records;
    auto const now = clock::nowMilliseconds();
    ExtractionTime const host{now, wire::midnightBefore(now)};
    std::string_view lines = buffer;
    while (!lines.empty()) {
        auto const end = std::min(lines.find('\n'), lines.size());
        if (auto record = readLine(lines.substr(0, end), host)) records.push_back(std::move(record));
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    buffer.clear(); // a trailing fragment is used up too
    return records;
}

std::string ModeSEncapsulation::encapsulateAvr(ModeSEncapsulation const& record) {
    std::string line;
    line.reserve(2 * record._data.size() + 3 + 2 * wire::kStampBytes);
    line += record._timeStamp != 0 ? kTimedHead : '*';
    if (record._timeStamp != 0) appendHex(line, writtenStamp(record._timeStamp), 2 * wire::kStampBytes);
    appendHex(line, record._data);
    line += kTail;
    line += '\n';
    return line;
}

} // namespace quorvel::modes
