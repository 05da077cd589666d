// SPDX-License-Identifier: MIT
#include "simulate/stream_writer.h"

#include "simulate/bit_writer.h"

namespace quorvel::simulate {

namespace {

constexpr std::uint64_t kSecond = 1'000'000'000; // nanoseconds
constexpr std::uint64_t kDaySeconds = 86'400;
constexpr char kEscape = '\x1A';
constexpr std::uint64_t kStrongSignal = 0xC0; // of 0 to 255; fainter for each further aircraft

std::string timeStamp(std::uint64_t nanoseconds) {
    return BitWriter().put(nanoseconds / kSecond % kDaySeconds, 18).put(nanoseconds % kSecond, 30).bytes();
}

void appendDigits(std::string& stream, std::string const& bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    for (char const byte : bytes) {
        stream += digits[static_cast<unsigned char>(byte) >> 4];
        stream += digits[static_cast<unsigned char>(byte) & 0xF];
    }
}

void appendLine(std::string& stream, std::string const& time, std::string const& bytes) {
    stream += time.empty() ? '*' : '@';
    appendDigits(stream, time);
    appendDigits(stream, bytes);
    stream += ";\n";
}

void appendBeast(std::string& stream, std::string const& time, Frame const& frame, bool doubled) {
    auto const level = static_cast<char>(kStrongSignal - frame.aircraft % 128);
    stream += kEscape;
    stream += frame.bytes.size() == 7 ? '2' : '3';
    for (char const byte : time + level + frame.bytes) {
        stream += byte;
        if (doubled && byte == kEscape) stream += byte;
    }
}

} // namespace

void appendFrame(std::string& stream, Frame const& frame, Encoding encoding, std::uint64_t startOfDay) {
    auto const time = timeStamp(startOfDay + frame.nanoseconds);
    switch (encoding) {
    case Encoding::Avr: appendLine(stream, "", frame.bytes); break;
    case Encoding::AvrStamped: appendLine(stream, time, frame.bytes); break;
    case Encoding::Beast: appendBeast(stream, time, frame, true); break;
    case Encoding::BeastPlain: appendBeast(stream, time, frame, false); break;
    }
}

} // namespace quorvel::simulate
