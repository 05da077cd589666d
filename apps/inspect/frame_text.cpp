// SPDX-License-Identifier: MIT
#include "inspect/frame_text.h"

#include "files/host_error.h"
#include "files/printable.h"

#include <airspace/stream.h>

#include <array>
#include <cstdio>

namespace quorvel::inspect {

namespace {

using airspace::Encoding;

constexpr std::size_t kQuoted = 60; // characters of a bad frame that are enough to recognize it

[[noreturn]] void refuse(std::string_view text) {
    auto const quoted = files::printable(std::string(text.substr(0, kQuoted))) + (text.size() > kQuoted ? "…" : "");
    throw files::HostError("\"" + quoted +
                           "\" is not a frame: one has 4, 14 or 28 hexadecimal digits; an AVR line ends with \";\", "
                           "and a time stamp in it has 12 digits");
}

std::string withoutBlanks(std::string_view text) {
    std::string result;
    for (char const character : text) {
        if (std::string_view(" \t\r\n").find(character) == std::string_view::npos) result += character;
    }
    return result;
}

airspace::Frames framesIn(std::string_view line, Encoding encoding) {
    airspace::StreamOptions options;
    options.encoding = encoding;
    options.time.reading = airspace::TimeReading::Fixed;
    airspace::Stream stream(options);
    airspace::Frames frames;
    stream.feed(line, 0, frames);
    stream.finish(0, frames);
    return frames;
}

} // namespace

std::string parseFrame(std::string_view text) {
    auto const line = withoutBlanks(text);
    for (auto const encoding : {Encoding::Hex, Encoding::Avr}) {
        auto const frames = framesIn(line, encoding);
        if (!frames.empty()) return std::string(frames.front().view());
    }
    refuse(text);
}

std::string hexText(std::string_view bytes) {
    std::string text;
    for (char const byte : bytes) text += hexText(static_cast<unsigned char>(byte), 2);
    return text;
}

std::string hexText(unsigned long long number, unsigned digits) {
    std::array<char, 64> text{};
    auto const length = std::snprintf(text.data(), text.size(), "%0*llX", static_cast<int>(digits), number);
    return {text.data(), static_cast<std::size_t>(length)};
}

unsigned long long bitsOf(std::string_view bytes, unsigned first, unsigned width) {
    unsigned long long value = 0;
    for (unsigned bit = first; bit < first + width; ++bit) {
        auto const byte = static_cast<unsigned char>(bytes.at(bit / 8));
        value = value << 1 | (byte >> (7 - bit % 8) & 1U);
    }
    return value;
}

} // namespace quorvel::inspect
