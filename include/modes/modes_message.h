// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace quorvel::modes {

class ModeSMessageField;

/// One received Mode S frame: its bytes, its parity, and what is known about its reception.
///
/// Base of all reply classes. A message is made, decoded once and then read; decoding an object a second time
/// is possible (the repair of damaged frames does) and replaces what the first decoding stored.
class TREVALLO_EXPORT ModeSMessage {
public:
    /// Which way the frame goes: to the aircraft, or from it.
    enum ModeSMsgType : std::uint32_t { UPLINK = 0, DOWNLINK = 1 };

    /// Where the time stamp comes from.
    enum TimeSource : std::uint32_t {
        LOCAL = 0,    ///< the host's clock when the object was made
        EXTERNAL = 1, ///< the receiver, with the frame
    };

    /// How far the frame's address can be trusted; the decoder grades it.
    enum Confidence : std::uint32_t { NONE = 0, LOW = 1, MEDIUM = 2, HIGH = 3 };

    /// A message that is not decoded yet, received now.
    explicit ModeSMessage(ModeSMsgType type);

    virtual ~ModeSMessage();

    /// Length of the frame in bits: 56 for short and 112 for long replies (ICAO Annex 10 Vol. IV, 3.1.2.3.1).
    virtual unsigned char bits() const = 0;

    /// The fields of the message in frame order; they live as long as the message.
    virtual std::vector<ModeSMessageField const*> fields() const = 0;

    /// One line of text about the message.
    virtual std::string description() const;

    /// Decodes the fields out of `data()`. `decode` calls it; the result becomes `valid()`.
    virtual bool decodeImpl() = 0;

    /// Stores the bytes, computes their parity and decodes the fields. Returns `valid()`; false, with no
    /// parity computed, when there are fewer than `size()` bytes. Bytes past `size()` are stored and not
    /// looked at.
    bool decode(std::string const& bytes);
    bool decode(char const* bytes, unsigned long long size);

    /// The bytes of the frame, first transmitted byte first; empty before the first `decode`.
    std::string const& data() const { return _data; }
    std::string dataHexString() const; ///< two upper-case hexadecimal digits for each byte

    bool valid() const { return _valid; } ///< result of the last `decode` that had enough bytes, false before
    ModeSMsgType modeSMsgType() const { return _modeSMsgType; } ///< as of the class
    std::string const& modeSMsgTypeName() const;                ///< "Uplink" or "Downlink"
    unsigned char size() const;                                 ///< `bits()` in whole bytes: 7 or 14

    /// Where the time stamp comes from; the host's clock until set otherwise.
    TimeSource timeSource() const { return _timeSource; }
    void setTimeSource(TimeSource const& source) { _timeSource = source; }

    /// Time of reception in milliseconds since 1970-01-01 00:00:00 UTC. A new message has the host's clock
    /// in whole seconds.
    unsigned long long timeStamp() const { return _timeStamp; }
    void setTimeStamp(unsigned long long const& time) { _timeStamp = time; }

    /// Signal level as the receiver reports it, in the receiver's own unit; 0 when nobody set it.
    unsigned char signalAmplitude() const { return _signalAmplitude; }
    void setSignalAmplitude(unsigned char amplitude) { _signalAmplitude = amplitude; }

    /// How far the address can be trusted; `NONE` until the decoder or the host grades it.
    Confidence confidence() const { return _confidence; }
    void setConfidence(Confidence confidence) { _confidence = confidence; }

    /// CRC-24 of the frame as of the last `decode`, 0 before.
    unsigned int calculatedParity() const { return _calculatedParity; }
    std::string calculatedParityHexString() const; ///< at least two upper-case digits, not padded to six

    /// Aircraft address, 24 bits; 0 when the frame carries none or its parity failed.
    unsigned int icaoAddress() const { return _icaoAddress; }
    void setIcaoAddress(unsigned int address) { _icaoAddress = address; }
    std::string icaoAddressHexString() const; ///< at least two upper-case digits, not padded to six

    /// CRC-24 of the frame without its parity field (generator 0x1FFF409; ICAO Annex 10 Vol. IV, 3.1.2.3.3).
    /// It equals the parity field of an intact frame whose parity is not overlaid; of address/parity replies,
    /// it is the aircraft address XOR the parity field. Missing bytes count as zeros.
    unsigned int calculateParity() const;
    unsigned int calculateParity(std::string const& bytes) const;

    /// Looks for the one bit whose inversion makes the parity of `bytes` equal to `parity`. Found: inverts
    /// it, sets `pos` to its position (0 = first bit transmitted; the lowest that fits) and returns true. Not
    /// found, or fewer than `bits()` bits: returns false and leaves `bytes` and `pos` as they were.
    bool fixError1Bit(std::string& bytes, unsigned char& pos, unsigned int parity) const;

    /// The same with two bits, `pos1` < `pos2`; the first pair that fits in lexicographic order.
    bool fixError2Bits(std::string& bytes, unsigned char& pos1, unsigned char& pos2, unsigned int parity) const;

private:
    std::string _data;
    bool _valid = false;
    ModeSMsgType _modeSMsgType;
    TimeSource _timeSource = LOCAL;
    unsigned long long _timeStamp;
    unsigned char _signalAmplitude = 0;
    Confidence _confidence = NONE;
    unsigned int _calculatedParity = 0;
    unsigned int _icaoAddress = 0;
};

} // namespace quorvel::modes
