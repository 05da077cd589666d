// SPDX-License-Identifier: MIT
// AVR text lines: "*" or ":" and the frame in hexadecimal digits, or "@" and a 48-bit time stamp before the
// frame; then ";". Lines that begin with "?" are comments of receivers.
#include <modes/modes_encapsulation.h>

#include <modes/log.h>

#include "core/clock.h"
#include "core/hex.h"
#include "core/log_shows.h"
#include "modes/frame_record.h"
#include "modes/receiver_time.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quorvel::modes {

namespace {

constexpr std::string_view kPlainHeads = "*:";
constexpr char kTimedHead = '@';
constexpr char kSilentHead = '?';
constexpr char kTail = ';';

constexpr unsigned kNoDigit = 16;

// The values of the hexadecimal digits by character.
constexpr auto kDigitValues = [] {
    std::array<unsigned char, 256> values{};
    for (auto& value : values) value = kNoDigit;
    for (unsigned char i = 0; i < 10; ++i) values['0' + i] = i;
    for (unsigned char i = 10; i < 16; ++i) values['A' + i - 10] = values['a' + i - 10] = i;
    return values;
}();

unsigned digitValue(char character) { return kDigitValues[static_cast<unsigned char>(character)]; }

bool isBlank(char character) { return character == ' ' || ('\t' <= character && character <= '\r'); }

// The byte of two characters as the base 16 conversion of C reads them: what is no digit ends the number, one
// blank or sign may stand before it.
char byteOf(char first, char second) {
    auto const high = digitValue(first);
    auto const low = digitValue(second);
    if (high != kNoDigit) return static_cast<char>(low != kNoDigit ? high << 4 | low : high);
    if (low == kNoDigit) return 0;
    if (first == '-') return static_cast<char>(0U - low);
    return static_cast<char>(first == '+' || isBlank(first) ? low : 0);
}

// The number of bytes between head and tail of a line; a lone digit at the end is ignored.
std::size_t bytesIn(std::string_view line) { return line.size() < 2 ? 0 : (line.size() - 2) / 2; }

bool isFrameLength(std::size_t bytes) {
    return bytes == kModeACFrameBytes || bytes == kShortFrameBytes || bytes == kLongFrameBytes;
}

void logCorrupted(char const* text) {
    if (logShows(Log::Info)) Log::log(Log::Info, kEncapsulationModule, std::string(text));
}

void logLine(std::string_view line) {
    if (!logShows(Log::Debug)) return; // every line comes by here
    Log::log(Log::Debug, kEncapsulationModule, "Get AVR line (size = %u): %s",
             static_cast<unsigned>(line.size()), std::string(line).c_str());
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

    auto const timeBytes = timed ? kReceiverTimeBytes : 0;
    auto const size = bytesIn(line);
    if (size < timeBytes || !isFrameLength(size - timeBytes)) {
        logCorrupted("Corrupted AVR message (length error):");
        return {};
    }
    std::array<char, kReceiverTimeBytes + kLongFrameBytes> bytes;
    for (std::size_t i = 0; i < size; ++i) bytes[i] = byteOf(line[1 + 2 * i], line[2 + 2 * i]);
    std::string_view const decoded(bytes.data(), size);
    auto const time = timed ? receiverTime(decoded.substr(0, timeBytes), host.midnight) : host.now;
    return RecordAccess::make(time, decoded.substr(timeBytes));
}

} // namespace

ModeSEncapsulation::Records ModeSEncapsulation::extractAvr(std::string& buffer) {
    Records records;
    auto const now = clock::nowMilliseconds();
    ExtractionTime const host{now, midnightBefore(now)};
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
    line.reserve(2 * record._data.size() + 3 + 2 * kReceiverTimeBytes);
    line += record._timeStamp != 0 ? kTimedHead : '*';
    if (record._timeStamp != 0) {
        auto const time = receiverTimeBits(record._timeStamp);
        for (unsigned shift = 8 * kReceiverTimeBytes; shift > 0; shift -= 4) {
            line += hexDigits[time >> (shift - 4) & 0xF];
        }
    }
    appendHex(line, record._data);
    line += kTail;
    line += '\n';
    return line;
}

} // namespace quorvel::modes
