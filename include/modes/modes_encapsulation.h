// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::modes {

/// One frame as a receiver delivered it, and the stream encodings that frames come in.
///
/// Source: the encodings are those of receivers, which no standard describes; lengths of frames, ICAO Annex
/// 10 Vol. IV, 3.1.2.3.1.
///
/// The extractors cut complete frames off the front of a buffer to which the host appends what it receives.
/// Bad input is dropped, in part with a line in the log; nothing throws.
class TREVALLO_EXPORT ModeSEncapsulation {
public:
    /// How frames are encoded in a stream; the comments begin with the identifiers.
    enum Format : std::uint32_t {
        Unknown = 0, ///< "unknown"
        RawHex = 1,  ///< "hex": written only
        RawBin = 2,  ///< "bin": the bytes of one frame
        Avr = 3,     ///< "avr": text lines such as "*5D4CA2D46B609F;", with a time stamp when they begin with "@"
        Beast = 4,   ///< "beast": binary stream, 0x1A before each frame; read only
    };

    /// Frames in the order of the stream.
    using Records = std::vector<std::shared_ptr<ModeSEncapsulation>>;

    /// Time of reception in milliseconds since 1970-01-01 00:00:00 UTC; 0, the initial value, is none.
    unsigned long long timeStamp() const { return _timeStamp; }
    void setTimeStamp(unsigned long long const& time) { _timeStamp = time; }

    /// The bytes of the frame, first transmitted byte first: 2 (Mode A/C reply), 7 or 14 (Mode S).
    std::string data() const { return _data; }
    void setData(std::string const& data) { _data = data; }

    /// Identifier ("beast") and display name ("Beast") of a format; "unknown" and "Unknown" for all other
    /// values.
    static std::string identifier(Format const& format);
    static std::string name(Format const& format);

    /// Format of an identifier, which must match exactly; `Unknown` for any other text.
    static Format fromIdentifier(std::string const& identifier);

    /// Cuts the frames of a format out of the buffer. Nothing happens for `Unknown` and other values.
    ///
    /// A receiver's own time stamp (Beast, and AVR lines with "@") is 48 bits: 18 bits second of the UTC day,
    /// 30 bits nanosecond. The date is that of the host's clock, so a frame from just before midnight that is
    /// read just after it lands on the new day. Frames without a time stamp get the host's time.
    static Records extract(std::string& buffer, Format const& format);

    /// Empties the buffer and finds nothing: hexadecimal input is deliberately not read.
    static Records extractRawHex(std::string& buffer);

    /// Takes the whole buffer as one frame of 7 or 14 bytes. Any other length is logged. The buffer ends
    /// empty.
    static Records extractRawBin(std::string& buffer);

    /// Takes all lines of the buffer, a last one without its line feed included: a host passes complete lines only.
    /// Lines begin with "*", ":" or "@" and end with ";"; lines that begin with "?" are dropped silently, all other bad
    /// lines with a line in the log.
    static Records extractAvr(std::string& buffer);

    /// Takes all complete frames of types "1" to "3" and drops what is between them; an incomplete frame stays in the
    /// buffer. Bytes are taken as they are: a host whose receiver doubles 0x1A inside frames removes the doubling
    /// first.
    static Records extractBeast(std::string& buffer);

    /// Writes a frame in a format; empty for `Unknown`, `Beast` (deliberate: there is no Beast encoder) and
    /// others.
    static std::string encapsulate(ModeSEncapsulation const& record, Format const& format);

    /// Two upper-case hexadecimal digits for each byte, and a line feed.
    static std::string encapsulateRawHex(ModeSEncapsulation const& record);

    /// The bytes as they are.
    static std::string encapsulateRawBin(ModeSEncapsulation const& record);

    /// An AVR line. With a time stamp it begins with "@" and the second of the day; the nanoseconds of the
    /// encoding then hold the millisecond times 1000, so reading the line back keeps whole seconds only
    /// (deliberate).
    static std::string encapsulateAvr(ModeSEncapsulation const& record);

private:
    friend struct RecordAccess;

    unsigned long long _timeStamp = 0;
    std::string _data;
};

} // namespace quorvel::modes
