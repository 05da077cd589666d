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
#include <string_view>

namespace quorvel::modes {

namespace {

constexpr std::string_view kPlainHeads = "*:";
constexpr char kTimedHead = '@';
constexpr char kSilentHead = '?';
constexpr char kTail = ';';

// The value of a hexadecimal digit, 16 for any other character.
unsigned digitValue(char character) {
    if (character >= '0' && character <= '9') return static_cast<unsigned>(character - '0');
    if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A') + 10;
    if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a') + 10;
    return 16;
}

bool isBlank(char character) { return character == ' ' || ('\t' <= character && character <= '\r'); }

// The byte of two characters as the base 16 conversion of C reads them: what is no digit ends the number, one
// blank or sign may stand before it.
char byteOf(char first, char second) {
    auto const high = digitValue(first);
    auto const low = digitValue(second);
    if (high < 16) return static_cast<char>(low < 16 ? high << 4 | low : high);
    if (low == 16) return 0;
    if (first == '-') return static_cast<char>(0U - low);
    return static_cast<char>(first == '+' || isBlank(first) ? low : 0);
}

// The bytes of a line between its head and tail; a lone digit at the end is ignored.
std::string bytesOf(std::string_view line) {
    std::string bytes;
    if (line.size() <= 3) return bytes;
    bytes.reserve(line.size() / 2);
    for (std::size_t i = 1; i < line.size() - 2; i += 2) bytes += byteOf(line[i], line[i + 1]);
    return bytes;
}

bool isFrameLength(std::size_t bytes) {
    return bytes == kModeACFrameBytes || bytes == kShortFrameBytes || bytes == kLongFrameBytes;
}

void logCorrupted(char const* text) { Log::log(Log::Info, kEncapsulationModule, std::string(text)); }

void logLine(std::string const& line) {
    if (!logShows(Log::Debug)) return; // every line comes by here
    Log::log(Log::Debug, kEncapsulationModule, "Get AVR line (size = %u): %s",
             static_cast<unsigned>(line.size()), line.c_str());
}

// The frame of one line without its line feed, or nothing.
std::shared_ptr<ModeSEncapsulation> readLine(std::string const& line) {
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

    auto const bytes = bytesOf(line);
    auto const timeBytes = timed ? kReceiverTimeBytes : 0;
    if (bytes.size() < timeBytes || !isFrameLength(bytes.size() - timeBytes)) {
        logCorrupted("Corrupted AVR message (length error):");
        return {};
    }
    auto const time = timed ? receiverTime(bytes) : clock::nowMilliseconds();
    return makeRecord(time, bytes.substr(timeBytes));
}

} // namespace

ModeSEncapsulation::Records ModeSEncapsulation::extractAvr(std::string& buffer) {
    Records records;
    for (std::size_t start = 0; start < buffer.size();) {
        auto const end = std::min(buffer.find('\n', start), buffer.size());
        if (auto record = readLine(buffer.substr(start, end - start))) records.push_back(std::move(record));
        start = end + 1;
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
