// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

#include "adsb/type_code.h"
#include "core/bits.h"
#include "core/names.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvel::modes {

/// A field of a payload and its position.
struct PayloadField {
    ADSBMessageField::Designator designator;
    std::uint8_t pos;
    std::uint8_t bits;
};

/// The 56 bits of a payload as one number, for reading fields out of it.
class Payload {
public:
    explicit Payload(ADSBMessage const& message) : _bits(bits<std::uint64_t>(message.data(), 0, kBits)) {}

    template <class Value = unsigned int> Value read(PayloadField const& field) const {
        auto const upToLast = _bits >> (kBits - field.pos - field.bits);
        return static_cast<Value>(upToLast & ((std::uint64_t{1} << field.bits) - 1));
    }

    bool flag(PayloadField const& field) const { return read(field) != 0; }

private:
    static constexpr std::size_t kBits = 8 * kPayloadBytes;

    std::uint64_t _bits;
};

inline bool hasPayload(ADSBMessage const& message) { return message.data().size() >= kPayloadBytes; }

/// A row of a message class's table of fields: a field and how its value reads. Decoding only says which rows
/// a payload has; the descriptors with their texts are made from the payload when a host asks for them.
struct ListedField {
    PayloadField field;
    std::string (*text)(ADSBMessage const& message, PayloadField const& field);
};

inline std::string numberText(ADSBMessage const& message, PayloadField const& field) {
    return std::to_string(Payload(message).read(field));
}

template <auto const& names> std::string nameText(ADSBMessage const& message, PayloadField const& field) {
    return names[Payload(message).read(field)];
}

/// Lists rows of a table, in their order. Rows stay where they are: tables are constants.
struct PayloadFields {
    static void list(ADSBMessage& message, ListedField const& row) { list(message, &row, 1); }

    template <std::size_t N> static void list(ADSBMessage& message, ListedField const (&rows)[N]) {
        list(message, rows, N);
    }

private:
    static void list(ADSBMessage& message, ListedField const* rows, std::size_t count) {
        // rows of an earlier decoding, or more than there is room for
        if (message._listedSorted || message._listedCount == message._listed.size()) {
            message.makeListedFields();
        }
        message._listed[message._listedCount++] = {rows, count};
    }
};

} // namespace quorvel::modes
