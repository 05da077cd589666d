// SPDX-License-Identifier: MIT
#include "core/hex.h"

#include "core/text.h"

namespace quorvel::modes {

void appendHex(std::string& text, std::string_view bytes) {
    for (char const byte : bytes) {
        auto const value = static_cast<unsigned char>(byte);
        text += hexDigits[value >> 4];
        text += hexDigits[value & 0xF];
    }
}

std::string hexOfBytes(std::string_view bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    appendHex(text, bytes);
    return text;
}

std::string hexOfNumber(std::uint32_t number) { return formatted("%.2X", number); }

} // namespace quorvel::modes
