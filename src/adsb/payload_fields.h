// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

#include "adsb/type_code.h"
#include "core/bits.h"
#include "core/names.h"

#include <cstdint>
#include <string>

namespace quorvel::modes {

// Payload fields are read and listed in one step, so that the descriptor cannot say anything else than what
// was read.

/// A field of a payload: designator, position of its first bit (from 0), width.
struct PayloadField {
    ADSBMessageField::Designator designator;
    std::uint8_t pos;
    std::uint8_t bits;
};

/// Whether the message has a payload to decode: message classes may be asked to before they were given one.
inline bool hasPayload(ADSBMessage const& message) { return message.data().size() >= kPayloadBytes; }

/// Lists a field with a text of its own.
inline void listField(ADSBMessage& message, PayloadField const& field, std::string const& text) {
    message.addField({field.designator, field.pos, field.bits, text});
}

/// The bits of a field, without listing it.
template <class Value = unsigned int> Value peekField(ADSBMessage const& message, PayloadField const& field) {
    return bits<Value>(message.data(), field.pos, field.bits);
}

/// Reads a number and lists it in decimal.
template <class Value = unsigned int> Value readNumber(ADSBMessage& message, PayloadField const& field) {
    auto const value = peekField<Value>(message, field);
    listField(message, field, std::to_string(value));
    return value;
}

/// Reads a one-bit field and lists it as "0" or "1".
inline bool readFlag(ADSBMessage& message, PayloadField const& field) {
    return readNumber(message, field) != 0;
}

/// Reads a field whose values have names, and lists the name.
template <std::size_t N>
unsigned int readNamed(ADSBMessage& message, PayloadField const& field, NameTable<N> const& names) {
    auto const value = peekField(message, field);
    listField(message, field, names[value]);
    return value;
}

} // namespace quorvel::modes
