// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/comm_b.h>
#include <modes/adsb_message.h>
#include <modes/modes_message_field.h>

#include <span>
#include <string>
#include <string_view>

namespace quorvel::inspect {

/// What a payload's field is called in words.
std::string_view titleOf(modes::ADSBMessageField::Designator designator);

/// What the value of a reply's field means, where its text does not say it.
std::string meaningOf(modes::ModeSMessageField const& field, unsigned long long raw);

/// The same of a payload's field.
std::string meaningOf(modes::ADSBMessageField const& field, unsigned typeCode);

/// How a value of the standards is shown to people.
struct ValueTitle {
    std::string_view name;  ///< as `visitFields` gives it
    std::string_view title; ///< "Ground speed"; empty of those that are shown otherwise
    std::string_view unit;  ///< "knots"; empty where there is none

    std::span<std::string_view const> words{}; ///< of a code: what each number means
    bool hasCode = true;                       ///< whether the number is shown, too
};

/// That of a name; null of one that no reading has.
ValueTitle const* titleOfValue(std::string_view name);

/// What a register holds: "track and turn".
std::string_view titleOf(airspace::Register number);

/// "A3, large", of an emitter category such as "A3".
std::string emitterCategoryText(std::string_view category);

/// A field that the library omits, and its position in replies of a format (bits counted from 1).
struct SpareField {
    std::string_view name;
    std::string_view title;
    unsigned firstBit;
    unsigned width;
};

std::span<SpareField const> spareFieldsOf(unsigned format);

/// "short air-air surveillance"; "reserved" for unassigned formats.
std::string_view titleOfFormat(unsigned format);

} // namespace quorvel::inspect
