// SPDX-License-Identifier: MIT
#pragma once

#include <typeinfo>

namespace quorvel::modes {

// Casts down a class hierarchy. Hosts may derive classes of their own, so any cast may need a search; nearly
// always the object is of exactly the class that is asked for, and one comparison of addresses suffices.

template <class Class, class From> bool isExactly(From const& object) { return &typeid(object) == &typeid(Class); }

/// The object as another class, null when it is not of that class.
template <class To, class From> To const* asClass(From const& object) {
    if (isExactly<To>(object)) return static_cast<To const*>(&object);
    return dynamic_cast<To const*>(&object);
}

/// The same for a base of the classes that are most likely.
template <class To, class... Likely, class From> To const* asBaseOf(From const& object) {
    if ((isExactly<Likely>(object) || ...)) return static_cast<To const*>(&object);
    return dynamic_cast<To const*>(&object);
}

} // namespace quorvel::modes
