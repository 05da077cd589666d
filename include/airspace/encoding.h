// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/frame.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::airspace {

/// The encodings that frames are read and written in. Source: they are those of receivers, which no standard
/// describes.
enum class Encoding : std::uint8_t {
    Avr,        ///< lines such as "*5D4CA2D46B609F;", read with time stamps ("@") where they have them
    AvrStamped, ///< the same, written with time stamps
    Beast,      ///< 0x1A before each frame, each 0x1A inside a frame doubled, as receivers send it
    BeastPlain, ///< the same without the doubling
    Raw,        ///< the bytes of one frame after the other
    Hex,        ///< lines of hexadecimal digits
};

/// What one encoding is called.
struct EncodingName {
    Encoding encoding;           ///< which one
    std::string_view identifier; ///< on command lines: "beast"
    std::string_view name;       ///< in sentences: "AVR text"
};

/// All encodings with their names.
inline constexpr std::array<EncodingName, 6> kEncodings{{
    {Encoding::Avr, "avr", "AVR text"},
    {Encoding::AvrStamped, "avr-time", "AVR text with time stamps"},
    {Encoding::Beast, "beast", "Beast"},
    {Encoding::BeastPlain, "beast-plain", "Beast without doubled escapes"},
    {Encoding::Raw, "bin", "raw binary"},
    {Encoding::Hex, "hex", "hexadecimal lines"},
}};

/// What an encoding is called in sentences: "AVR text".
TREVALLO_AIRSPACE_EXPORT std::string_view nameOf(Encoding encoding);

/// What an encoding is called on command lines: "avr".
TREVALLO_AIRSPACE_EXPORT std::string_view identifierOf(Encoding encoding);

/// The encoding of an identifier; none for any other text.
TREVALLO_AIRSPACE_EXPORT std::optional<Encoding> encodingOf(std::string_view identifier);

/// How many bytes at the start of a stream are enough to detect what it is.
inline constexpr std::size_t kSampleBytes = 64 * 1024;

/// The encoding of a stream that starts like this: Beast when most of it is frames that follow each other,
/// AVR or hexadecimal when a line of it is one, raw binary when its extended squitters are intact; none
/// otherwise.
TREVALLO_AIRSPACE_EXPORT std::optional<Encoding> findEncoding(std::string_view sample);

/// Whether a Beast stream that starts like this has its escape bytes doubled: whether more of its frames
/// follow each other without a gap when they are read so. True when there is no difference.
TREVALLO_AIRSPACE_EXPORT bool looksDoubled(std::string_view sample);

/// The frames of a Beast stream with doubled escape bytes, without the doubling: whole frames of types "1",
/// "2" and "3" one after the other, as the core's extractor reads them.
TREVALLO_AIRSPACE_EXPORT std::string undoubledBeast(std::string_view stream);

/// Appends one frame to a stream of an encoding.
///
/// Time stamps are those that the receiver sent, whatever they count; a frame without one gets 0 where the
/// encoding has room for it. Raw binary, in which the first bit gives the length of a frame, has no form for
/// Mode A/C replies: nothing is appended then.
TREVALLO_AIRSPACE_EXPORT void appendEncoded(std::string& out, Frame const& frame, Encoding encoding);

/// The time stamp of receivers that keep UTC: 18 bits second of the day, 30 bits nanosecond.
TREVALLO_AIRSPACE_EXPORT std::uint64_t timeOfDayStamp(TimeMs time);

} // namespace quorvel::airspace
