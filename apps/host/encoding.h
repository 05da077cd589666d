// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvel::host {

/// The encodings that frames are read and written in.
enum class Encoding : std::uint8_t {
    Avr,        ///< lines such as "*5D4CA2D46B609F;", read with time stamps ("@") where they have them
    AvrStamped, ///< the same, written with time stamps
    Beast, ///< binary with 0x1A before each frame, each 0x1A inside a frame doubled, as receivers send it
    BeastPlain, ///< the same without the doubling
    Raw,        ///< the bytes of one frame after the other
    Hex,        ///< lines of hexadecimal digits
};

/// What one encoding is called: on the command line, and in sentences.
struct EncodingName {
    Encoding encoding;
    std::string_view identifier;
    std::string_view name;
};

inline constexpr std::array<EncodingName, 6> kEncodings{{
    {Encoding::Avr, "avr", "AVR text"},
    {Encoding::AvrStamped, "avr-time", "AVR text with time stamps"},
    {Encoding::Beast, "beast", "Beast"},
    {Encoding::BeastPlain, "beast-plain", "Beast without doubled escapes"},
    {Encoding::Raw, "bin", "raw binary"},
    {Encoding::Hex, "hex", "hexadecimal lines"},
}};

std::string_view nameOf(Encoding encoding);
std::string_view identifierOf(Encoding encoding);

/// The encoding of an identifier; none for any other text.
std::optional<Encoding> encodingOf(std::string_view identifier);

} // namespace quorvel::host
