// SPDX-License-Identifier: MIT
#include "airspace/stream/text_line.h"

#include "core/hex.h"
#include "core/wire.h"

#include <cstdint>

namespace quorvel::airspace {

namespace {

using modes::hexDigitValue;
using modes::kNoHexDigit;

constexpr std::size_t kStampDigits = 2 * modes::wire::kStampBytes;

std::optional<std::uint64_t> numberOf(std::string_view digits) {
    std::uint64_t number = 0;
    for (char const digit : digits) {
        if (hexDigitValue(digit) == kNoHexDigit) return {};
        number = number << 4 | hexDigitValue(digit);
    }
    return number;
}

} // namespace

std::optional<Frame> readHexLine(std::string_view line) {
    auto const bytes = line.size() / 2;
    if (!modes::wire::isFrameLength(bytes) || line.size() % 2 != 0) return {};
    Frame frame;
    frame.length = static_cast<std::uint8_t>(bytes);
    unsigned seen = 0; // all digits together: one bad one shows in the end
    for (std::size_t i = 0; i < bytes; ++i) {
        auto const high = hexDigitValue(line[2 * i]);
        auto const low = hexDigitValue(line[2 * i + 1]);
        seen |= unsigned{high} | low;
        frame.bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    if ((seen & kNoHexDigit) != 0) return {};
    return frame;
}

std::optional<Frame> readAvrLine(std::string_view line) {
    if (line.size() < 2 || line.back() != ';') return {};
    char const head = line.front();
    line = line.substr(1, line.size() - 2);
    if (head == '*' || head == ':') return readHexLine(line);
    if (head != '@' || line.size() < kStampDigits) return {};
    auto frame = readHexLine(line.substr(kStampDigits));
    if (frame) frame->stamp = numberOf(line.substr(0, kStampDigits));
    return frame;
}

} // namespace quorvel::airspace
