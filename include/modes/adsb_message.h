// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message_field.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quorvel::modes {

struct ListedField;

/// One ADS-B message: the 7-byte ME payload of an extended squitter, decoded (RTCA DO-260B, 2.2.3.2.1).
///
/// Base of all message classes. A message is made for one payload, decoded once and then read; decoding the
/// same object again appends its fields a second time.
class TREVALLO_EXPORT ADSBMessage {
public:
    /// Kinds of messages, selected by the type code.
    enum ADSBMessageType : std::uint32_t {
        ACID = 0,      ///< identification: type codes 1 to 4
        POS_GND = 1,   ///< surface position: 5 to 8
        POS_AIR = 2,   ///< airborne position: 9 to 18, 20 to 22
        AIR_VEL = 3,   ///< airborne velocity: 19
        TEST = 4,      ///< test: 23
        AC_STATUS = 5, ///< aircraft status: 28
        TG_STATUS = 6, ///< target state and status: 29
        OP_STATUS = 7, ///< operational status: 31
        RESERVED = 8,  ///< everything else, type code 0 included (deliberate: it is not read as a position)
    };

    /// A message of this type that is not decoded yet.
    explicit ADSBMessage(ADSBMessageType type);
    virtual ~ADSBMessage();

    /// The fields found so far, ordered by position.
    virtual std::vector<ADSBMessageField> fields() const;

    /// One line of text. The base writes the type code as one raw byte, not in digits (deliberate).
    virtual std::string description() const;

    /// Decodes `data()` and lists its fields. `decode` calls it; the result becomes `valid()`.
    virtual bool decodeImpl() = 0;

    /// Takes the first 7 of the bytes, checks that their type code belongs to this kind of message, decodes
    /// them and sorts the fields by position. Returns `valid()`. False with nothing changed for fewer than 7
    /// bytes; false with the bytes and the type code stored, "Type code mismatch." in the log and `valid()`
    /// as it was for another kind.
    bool decode(std::string const& me);
    bool decode(char const* bytes, std::size_t size);

    std::string const& data() const { return _data; } ///< the 7 bytes; empty before the first decode
    std::string dataHexString() const;                ///< two upper-case hexadecimal digits for each byte

    bool valid() const { return _valid; }               ///< result of the last `decodeImpl`; false before
    std::uint8_t typeCode() const { return _typeCode; } ///< first five bits, 0 to 31; 0 before the first decode
    ADSBMessageType type() const { return _type; }      ///< as of the class, whatever the payload

    /// The type that a type code selects; `RESERVED` for 0, 24 to 27, 30 and all codes above 31.
    static ADSBMessageType typeByCode(std::uint8_t code);

    /// Name ("POS_AIR") and full name ("Airborne Position") of a type; "RESERVED" and "Reserved" for all
    /// others.
    static std::string const& typeName(ADSBMessageType type);
    static std::string const& typeFullName(ADSBMessageType type);
    std::string const& typeName() const { return typeName(_type); }
    std::string const& typeFullName() const { return typeFullName(_type); }

    /// Time of reception in milliseconds since 1970-01-01 00:00:00 UTC. A new message has the host's clock
    /// in whole seconds.
    std::uint64_t timeStamp() const { return _timeStamp; }
    void setTimeStamp(std::uint64_t time) { _timeStamp = time; }

    /// Signal level as the receiver reports it; 0 when nobody set it.
    std::uint8_t signalAmplitude() const { return _signalAmplitude; }
    void setSignalAmplitude(std::uint8_t const& amplitude) { _signalAmplitude = amplitude; }

    /// Appends a field to the list; for the `decodeImpl` of message classes.
    void addField(ADSBMessageField const& field);

private:
    friend struct PayloadFields;

    // Rows of a table of fields that are listed and not yet made.
    struct ListedRows {
        ListedField const* first;
        std::size_t count;
    };

    TREVALLO_HIDDEN void makeListedFields();
    TREVALLO_HIDDEN void appendListedFields(std::vector<ADSBMessageField>& fields) const;

    std::string _data;
    bool _valid = false;
    std::uint8_t _typeCode = 0;
    ADSBMessageType _type;
    std::uint64_t _timeStamp;
    std::uint8_t _signalAmplitude = 0;
    // Few ask for the fields. Those of the last payload are made when someone does; in `_fields` are those
    // that had to be made earlier.
    std::vector<ADSBMessageField> _fields;
    std::array<ListedRows, 4> _listed;
    std::uint8_t _listedCount = 0;
    bool _listedSorted = false;
};

} // namespace quorvel::modes
