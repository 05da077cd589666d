// SPDX-License-Identifier: MIT
#include "host/frame_writer.h"

#include <string_view>

namespace quorvel::host {

namespace {

constexpr char kEscape = '\x1A';
constexpr int kStampBits = 48;

// First byte first, as all encodings have it.
std::string stampBytes(Frame const& frame) {
    auto const stamp = frame.stamp.value_or(0);
    std::string bytes;
    for (int shift = kStampBits - 8; shift >= 0; shift -= 8)
        bytes += static_cast<char>(stamp >> shift & 0xFF);
    return bytes;
}

void appendDigits(std::string& out, std::string_view bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    for (char const byte : bytes) {
        out += digits[static_cast<unsigned char>(byte) >> 4];
        out += digits[static_cast<unsigned char>(byte) & 0xF];
    }
}

void appendAvr(std::string& out, char start, std::string_view stamp, std::string_view data) {
    out += start;
    appendDigits(out, stamp);
    appendDigits(out, data);
    out += ";\n";
}

// The type byte tells the length; 0 for lengths that no frame has.
char beastType(std::size_t bytes) {
    switch (bytes) {
    case kModeAcFrameBytes: return '1';
    case kShortFrameBytes: return '2';
    case kLongFrameBytes: return '3';
    default: return 0;
    }
}

void appendBeast(std::string& out, Frame const& frame, std::string const& data, bool doubled) {
    auto const type = beastType(data.size());
    if (type == 0) return;
    out += kEscape;
    out += type;
    for (char const byte : stampBytes(frame) + static_cast<char>(frame.signal) + data) {
        out += byte;
        if (doubled && byte == kEscape) out += byte;
    }
}

} // namespace

void appendEncoded(std::string& out, Frame const& frame, Encoding encoding) {
    auto const data = frame.record->data();
    switch (encoding) {
    case Encoding::Avr: appendAvr(out, '*', "", data); break;
    case Encoding::AvrStamped: appendAvr(out, '@', stampBytes(frame), data); break;
    case Encoding::Beast: appendBeast(out, frame, data, true); break;
    case Encoding::BeastPlain: appendBeast(out, frame, data, false); break;
    case Encoding::Raw:
        if (data.size() != kModeAcFrameBytes) out += data;
        break;
    case Encoding::Hex:
        appendDigits(out, data);
        out += '\n';
        break;
    }
}

} // namespace quorvel::host
