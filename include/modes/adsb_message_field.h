// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstdint>
#include <string>

namespace quorvel::modes {

/// Describes one bit field of an ADS-B payload: which it is, where it stands, and its value as text.
class TREVALLO_EXPORT ADSBMessageField {
public:
    // clang-format off
    /// What a field is; the comments say in which messages it occurs.
    enum Designator : std::uint32_t {
        TYPE = 0, TYPECODE, EMTSET, EMTCAT,                                                     // all, identification
        ACIDCHAR1, ACIDCHAR2, ACIDCHAR3, ACIDCHAR4, ACIDCHAR5, ACIDCHAR6, ACIDCHAR7, ACIDCHAR8, // identification
        MOVCODE, GNDSPD, HDGSTATE, HDG,                                                         // surface position
        SAF, NICB, ALTSRC, ALTRES, ALT,                                                         // airborne position
        TMAP, CPRFMT, CPRLAT, CPRLON,                                                           // both positions
        VELTYPE, NUCR, DIREW, DIRNS, VELEW, VELNS, VRSRC, VRSIGN, VR,                           // airborne velocity
        TSTTYPE, TSTDATA,                                                                       // test
        ACSTYPE, EMGSTATE, MODEA,                                                               // aircraft status
        TGSTYPE, NACP, NICBARO, SIL, SILSUPP,                                                   // target state
        OPSTYPE, VERNUM, NICA,                                                                  // operational status
        UNKNOWN,                                                                                // marks an invalid field
    };
    // clang-format on

    /// `pos` is the number of the field's first bit in the payload, counted from 0 (one less than in the
    /// tables of RTCA DO-260B), `bits` its width. The field is valid unless it is `UNKNOWN` or has no bits.
    ADSBMessageField(Designator designator, std::uint8_t pos, std::uint8_t bits, std::string const& description);

    /// Name of a designator, "--" for `UNKNOWN` and beyond. The full name is the same text, except "Type" for
    /// `TYPE` (deliberate: hosts show it).
    static std::string const& designatorName(Designator designator);
    static std::string const& designatorFullName(Designator designator);
    std::string const& name() const { return designatorName(_designator); }
    std::string const& fullName() const { return designatorFullName(_designator); }

    Designator designator() const { return _designator; } ///< what the field is

    /// Number of the field's first bit, counted from 0.
    std::uint8_t pos() const { return _pos; }
    void setPos(std::uint8_t pos) { _pos = pos; }

    /// Width in bits.
    std::uint8_t bits() const { return _bits; }
    void setBits(std::uint8_t bits) { _bits = bits; }

    /// Whether the field is valid.
    bool valid() const { return _valid; }
    void setValid(bool valid) { _valid = valid; }

    /// The value as text: a number, a name, a character. "NO_DESCRIPTION" when there is none.
    std::string const& description() const;
    void setDescription(std::string const& description) { _description = description; }

    /// Fields are ordered by position.
    bool operator<(ADSBMessageField const& other) const { return _pos < other._pos; }

private:
    Designator _designator;
    std::uint8_t _pos;
    std::uint8_t _bits;
    bool _valid;
    std::string _description;
};

} // namespace quorvel::modes
