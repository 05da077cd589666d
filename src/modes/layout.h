// SPDX-License-Identifier: MIT
#pragma once

#include <modes/modes_message_field.h>

#include <string>
#include <tuple>
#include <vector>

namespace quorvel::modes {

/// A field of a reply and the position of its first bit in the frame.
template <class Field> struct At {
    Field& field;
    unsigned char position;
};

template <class Field> At(Field&, int) -> At<Field>;

/// The fields of a reply in frame order. Decoding and listing walk the same layout.
template <class... Fields> class Layout {
public:
    explicit Layout(At<Fields>... fields) : _fields(fields...) {}

    /// Decodes every field, even if earlier ones failed; true when all of them are valid.
    bool decode(std::string const& frame) const {
        return std::apply(
            [&](auto const&... at) {
                bool valid = true;
                ((valid = decodeField(at, frame) && valid), ...);
                return valid;
            },
            _fields);
    }

    std::vector<ModeSMessageField const*> list() const {
        return std::apply(
            [](auto const&... at) { return std::vector<ModeSMessageField const*>{&at.field...}; }, _fields);
    }

private:
    // `ModeSMessageField::decode` without its virtual calls: a member is of the class it is declared with.
    template <class Field> static bool decodeField(At<Field> const& at, std::string const& frame) {
        if (at.position + at.field.Field::bits() > 8 * frame.size()) return false;
        at.field._pos = at.position;
        at.field._valid = at.field.Field::decodeImpl(frame, at.position);
        return at.field._valid;
    }

    std::tuple<At<Fields>...> _fields;
};

} // namespace quorvel::modes
