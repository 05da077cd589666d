// SPDX-License-Identifier: MIT
#include "inspect/frame_text.h"

#include "host/host_error.h"
#include "host/printable.h"

#include <optional>

namespace quorvel::host {

namespace {

constexpr std::size_t kStampDigits = 12;
constexpr std::size_t kQuoted = 60; // characters of a bad frame that are enough to know it again

[[noreturn]] void refuse(std::string_view text, std::string const& reason) {
    auto const quoted = printable(std::string(text.substr(0, kQuoted))) + (text.size() > kQuoted ? "…" : "");
    throw HostError("\"" + quoted + "\" is no frame: " + reason);
}

std::string withoutBlanks(std::string_view text) {
    std::string result;
    for (char const character : text) {
        if (std::string_view(" \t\r\n").find(character) == std::string_view::npos) result += character;
    }
    return result;
}

// What stands between the marks of an AVR line, or all of a line that has none.
std::string_view digitsOf(std::string_view line, std::string_view text) {
    if (line.empty() || std::string_view("*:@").find(line.front()) == std::string_view::npos) return line;
    bool const isStamped = line.front() == '@';
    line.remove_prefix(1);
    if (line.empty() || line.back() != ';') refuse(text, "an AVR line ends with \";\"");
    line.remove_suffix(1);
    if (!isStamped) return line;
    if (line.size() < kStampDigits) refuse(text, "a time stamp has 12 digits");
    return line.substr(kStampDigits);
}

std::optional<unsigned> valueOf(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    return std::nullopt;
}

} // namespace

std::string parseFrame(std::string_view text) {
    auto const line = withoutBlanks(text);
    auto const digits = digitsOf(line, text);
    std::string bytes;
    unsigned high = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        auto const value = valueOf(digits[i]);
        if (!value) refuse(text, "it has other characters than hexadecimal digits");
        if (i % 2 != 0) bytes += static_cast<char>(high << 4 | *value);
        high = *value;
    }
    bool const isFrame = digits.size() == 4 || digits.size() == 14 || digits.size() == 28;
    if (!isFrame)
        refuse(text, "a frame has 14 or 28 hexadecimal digits, this has " + std::to_string(digits.size()));
    return bytes;
}

std::string hexText(std::string_view bytes) {
    std::string text;
    for (char const byte : bytes) text += hexText(static_cast<unsigned char>(byte), 2);
    return text;
}

std::string hexText(unsigned long long number, unsigned digits) {
    std::string text;
    for (; number != 0 || text.size() < digits; number >>= 4) {
        text.insert(text.begin(), "0123456789ABCDEF"[number & 0xF]);
    }
    return text;
}

unsigned long long bitsOf(std::string_view bytes, unsigned first, unsigned width) {
    unsigned long long value = 0;
    for (unsigned bit = first; bit < first + width; ++bit) {
        auto const byte = static_cast<unsigned char>(bytes.at(bit / 8));
        value = value << 1 | (byte >> (7 - bit % 8) & 1U);
    }
    return value;
}

} // namespace quorvel::host
