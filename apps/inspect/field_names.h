// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>
#include <modes/modes_message_field.h>

#include <span>
#include <string>
#include <string_view>

namespace quorvel::host {

/// What a payload's field is called in words.
std::string_view titleOf(modes::ADSBMessageField::Designator designator);

/// What the value of a reply's field says, where its text does not speak for itself.
std::string meaningOf(modes::ModeSMessageField const& field, unsigned long long raw);

/// The same of a payload's field.
std::string meaningOf(modes::ADSBMessageField const& field, unsigned typeCode);

/// A field that the library leaves out, and where it stands in replies of a format (bits counted from 1).
struct SparePart {
    std::string_view name;
    std::string_view title;
    unsigned firstBit;
    unsigned width;
};

std::span<SparePart const> sparePartsOf(unsigned format);

/// "short air-air surveillance"; "reserved" for formats that are none.
std::string_view titleOfFormat(unsigned format);

} // namespace quorvel::host
