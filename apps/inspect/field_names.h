// SPDX-License-Identifier: MIT
#pragma once

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
