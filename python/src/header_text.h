// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace quorvel::modes::python {

/// What the public headers say of one of their classes or members.
struct Text {
    std::string_view of; ///< "ADSBTarget::callsign"
    char const* text;
};

/// Describes an enumeration of the library; one specialisation for each of them is made from the headers.
template <class E> struct Enumeration;

} // namespace quorvel::modes::python
