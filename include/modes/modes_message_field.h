// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstdint>
#include <string>

namespace quorvel::modes {

template <class... Fields> class Layout;

/// One field of a Mode S reply, named by its designator (ICAO Annex 10 Vol. IV, 3.1.2.3.2).
///
/// Fields are members of a message and are never deleted through this base; it has no virtual destructor.
class TREVALLO_EXPORT ModeSMessageField {
public:
    /// What a field is, by the designators of ICAO Annex 10.
    enum Designator : std::uint32_t {
        AA = 0,  ///< address announced
        AC = 1,  ///< altitude code
        AF = 2,  ///< application field
        AP = 3,  ///< address/parity
        CA = 4,  ///< capability
        CF = 5,  ///< control field
        DR = 6,  ///< downlink request (has names, no field class)
        FS = 7,  ///< flight status
        ID = 8,  ///< identity
        MB = 9,  ///< message, Comm-B
        ME = 10, ///< message, extended squitter
        MV = 11, ///< message, ACAS
        PI = 12, ///< parity/interrogator identifier
        UM = 13, ///< utility message (has names, no field class)
        VS = 14, ///< vertical status
    };

    /// A field that is not decoded yet.
    explicit ModeSMessageField(Designator designator);

    /// Width of the field in bits.
    virtual unsigned char bits() const = 0;

    /// The value as text.
    virtual std::string description() const;

    /// Takes the value out of a frame. Returns false, leaving the value as it was, when the field does not
    /// occur at `pos` in any supported format or the frame is too short. `decode` calls it; the result
    /// becomes `valid()`.
    virtual bool decodeImpl(std::string const& data, unsigned char pos) = 0;

    /// Short name ("AA") and full name ("Address announced"); "--" and "Unknown field" for any other value.
    static std::string const& designatorName(Designator designator);
    static std::string const& designatorFullName(Designator designator);

    /// What the field is, and its names.
    Designator designator() const { return _designator; }
    std::string const& name() const { return designatorName(_designator); }
    std::string const& fullName() const { return designatorFullName(_designator); }

    /// Position of the field's first bit in the frame, 0 = first bit transmitted; 0 before the first
    /// `decode`.
    unsigned char pos() const { return _pos; }

    /// Result of the last `decode` that had enough bytes; false before.
    bool valid() const { return _valid; }

    /// Decodes the field at bit `pos` of a frame. Returns `valid()`; false, with nothing changed, when the
    /// frame ends before the field does.
    bool decode(std::string const& data, unsigned char pos);
    bool decode(char const* data, unsigned long long size, unsigned char pos);

private:
    template <class... Fields> friend class Layout; // decodes the fields of a reply, whose classes it knows

    Designator _designator;
    unsigned char _pos = 0;
    bool _valid = false;
};

/// Address announced: the 24-bit aircraft address in clear (ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.2).
class TREVALLO_EXPORT ModeSMessageFieldAA : public ModeSMessageField {
public:
    ModeSMessageFieldAA();
    unsigned char bits() const override { return 24; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int icaoAddress() const { return _icaoAddress; } ///< 24 bits
    std::string icaoAddressHexString() const;                 ///< at least two upper-case digits, not padded to six

private:
    unsigned int _icaoAddress = 0;
};

/// Altitude code (ICAO Annex 10 Vol. IV, 3.1.2.6.5.4).
///
/// The 11 bits left without M and Q are one binary number in every case: 100 ft and metric replies are
/// deliberately not decoded any other way. The decoder grades metric replies as untrusted.
class TREVALLO_EXPORT ModeSMessageFieldAC : public ModeSMessageField {
public:
    ModeSMessageFieldAC();
    unsigned char bits() const override { return 13; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int altitudeUnit() const { return _altitudeUnit; }             ///< M bit: 0 feet, 1 metric
    unsigned int altitudeResolution() const { return _altitudeResolution; } ///< feet per step: 25 (Q bit set) or 100
    int altitude() const { return _altitude; }                              ///< feet, from -1000

private:
    unsigned int _altitudeUnit = 0;
    unsigned int _altitudeResolution = 0;
    int _altitude = 0;
};

/// Application field of DF19; 0 is civil use (ICAO Annex 10 Vol. IV, 3.1.2.8.8.2).
class TREVALLO_EXPORT ModeSMessageFieldAF : public ModeSMessageField {
public:
    ModeSMessageFieldAF();
    unsigned char bits() const override { return 3; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned char code() const { return _code; } ///< 0 to 7

private:
    unsigned char _code = 0;
};

/// Address/parity: the parity overlaid with the aircraft address (ICAO Annex 10 Vol. IV, 3.1.2.3.2.1.3).
class TREVALLO_EXPORT ModeSMessageFieldAP : public ModeSMessageField {
public:
    ModeSMessageFieldAP();
    unsigned char bits() const override { return 24; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int addressParity() const { return _addressParity; } ///< the 24 bits as received
    std::string addressParityHexString() const;                   ///< at least two upper-case digits
    unsigned int parity() const { return _parity; }               ///< as given to `setParity`, 0 before
    unsigned int icaoAddress() const { return _icaoAddress; }     ///< parity XOR the bits received, 0 before

    /// Takes the frame's calculated parity and returns the aircraft address that follows from it.
    unsigned int setParity(unsigned int parity);

private:
    unsigned int _addressParity = 0;
    unsigned int _parity = 0;
    unsigned int _icaoAddress = 0;
};

/// Capability of the transponder (ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.1).
class TREVALLO_EXPORT ModeSMessageFieldCA : public ModeSMessageField {
public:
    ModeSMessageFieldCA();
    unsigned char bits() const override { return 3; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned char capability() const { return _capability; } ///< 0 to 7

private:
    unsigned char _capability = 0;
};

/// Control field of DF18 (ICAO Annex 10 Vol. IV, 3.1.2.8.7.2).
class TREVALLO_EXPORT ModeSMessageFieldCF : public ModeSMessageField {
public:
    ModeSMessageFieldCF();
    unsigned char bits() const override { return 3; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned char code() const { return _code; } ///< 0 to 7

private:
    unsigned char _code = 0;
};

/// Flight status (ICAO Annex 10 Vol. IV, 3.1.2.6.5.1).
class TREVALLO_EXPORT ModeSMessageFieldFS : public ModeSMessageField {
public:
    ModeSMessageFieldFS();
    unsigned char bits() const override { return 3; }
    std::string description()
        const override; ///< "AIR", "GND", "AIR, ALERT", "GND, ALERT", "ALERT, SPI", "SPI", "UNKNOWN"
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int flightStatus() const { return _flightStatus; } ///< 0 to 7

private:
    unsigned int _flightStatus = 0;
};

/// Identity: the Mode A code (ICAO Annex 10 Vol. IV, 3.1.2.6.7.1).
class TREVALLO_EXPORT ModeSMessageFieldID : public ModeSMessageField {
public:
    ModeSMessageFieldID();
    unsigned char bits() const override { return 13; }
    std::string description() const override; ///< four octal digits, for example "7700"
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int identity() const { return _identity; } ///< digits A, B, C, D as one octal number, 0 to 07777

private:
    unsigned int _identity = 0;
};

/// Comm-B message (ICAO Annex 10 Vol. IV, 3.1.2.6.6.1): its 7 bytes, not decoded any further.
class TREVALLO_EXPORT ModeSMessageFieldMB : public ModeSMessageField {
public:
    ModeSMessageFieldMB();
    unsigned char bits() const override { return 56; }
    std::string description() const override; ///< as `dataHexString()`
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    std::string const& data() const { return _data; } ///< the payload, at most 7 bytes; empty before a decode
    std::string dataHexString() const;                ///< two upper-case digits for each byte

private:
    std::string _data;
};

/// Extended squitter message (ICAO Annex 10 Vol. IV, 3.1.2.8.6.2): the 7 bytes that the ADS-B decoder takes.
class TREVALLO_EXPORT ModeSMessageFieldME : public ModeSMessageField {
public:
    ModeSMessageFieldME();
    unsigned char bits() const override { return 56; }
    std::string description() const override; ///< as `dataHexString()`
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    std::string const& data() const { return _data; } ///< the payload, at most 7 bytes; empty before a decode
    std::string dataHexString() const;                ///< two upper-case digits for each byte

private:
    std::string _data;
};

/// ACAS message (ICAO Annex 10 Vol. IV, 4.3.8.4.2): its 7 bytes, not decoded any further.
class TREVALLO_EXPORT ModeSMessageFieldMV : public ModeSMessageField {
public:
    ModeSMessageFieldMV();
    unsigned char bits() const override { return 56; }
    std::string description() const override; ///< as `dataHexString()`
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    std::string const& data() const { return _data; } ///< the payload, at most 7 bytes; empty before a decode
    std::string dataHexString() const;                ///< two upper-case digits for each byte

private:
    std::string _data;
};

/// Parity/interrogator identifier: the parity overlaid with the code of the interrogator
/// (ICAO Annex 10 Vol. IV, 3.1.2.3.2.1.4).
class TREVALLO_EXPORT ModeSMessageFieldPI : public ModeSMessageField {
public:
    ModeSMessageFieldPI();
    unsigned char bits() const override { return 24; }
    std::string description() const override;
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int parityInterrogatorId() const { return _parityInterrogatorId; } ///< the 24 bits as received
    std::string parityInterrogatorIdHexString() const;                          ///< at least two upper-case digits
    unsigned int parity() const { return _parity; }                 ///< of an intact frame, or as given to `setParity`
    unsigned int interrogatorId() const { return _interrogatorId; } ///< parity XOR the bits received

    /// Interrogator identifiers lie below this: II codes are 0 to 15, SI codes follow up to 79.
    static constexpr unsigned int kInterrogatorIds = 80;

    /// Whether the interrogator identifier is valid.
    bool interrogatorIdValid() const { return _interrogatorId < kInterrogatorIds; }

    /// Takes the frame's calculated parity; the interrogator identifier follows from it.
    void setParity(unsigned int parity);

    /// Takes the interrogator identifier and returns the parity that an intact frame must then have.
    unsigned int setInterrogatorId(unsigned int interrogatorId);

private:
    unsigned int _parityInterrogatorId = 0;
    unsigned int _parity = 0;
    unsigned int _interrogatorId = 0;
};

/// Vertical status of air-air replies (ICAO Annex 10 Vol. IV, 3.1.2.8.2.1).
class TREVALLO_EXPORT ModeSMessageFieldVS : public ModeSMessageField {
public:
    ModeSMessageFieldVS();
    unsigned char bits() const override { return 1; }
    std::string description() const override; ///< "AIR" or "GND"
    bool decodeImpl(std::string const& data, unsigned char pos) override;

    unsigned int verticalStatus() const { return _verticalStatus; } ///< 0 airborne, 1 on the ground

private:
    unsigned int _verticalStatus = 0;
};

} // namespace quorvel::modes
