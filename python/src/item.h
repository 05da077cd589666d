// SPDX-License-Identifier: MIT
#pragma once

#include "casters.h"

#include <airspace/aircraft.h>

namespace quorvel::modes::python {

/// An item of an aircraft in Python, of any kind.
struct AnyItem {
    py::object value;
    airspace::Source source;
    airspace::TimeMs updated;
    airspace::TimeMs changed;
};

} // namespace quorvel::modes::python

namespace pybind11::detail {

/// Items only come out.
template <class T> struct type_caster<quorvel::airspace::Item<T>> {
    static constexpr auto name = const_name("trevallo.airspace.Item[") + make_caster<T>::name + const_name("]");

    static handle cast(quorvel::airspace::Item<T> const& item, return_value_policy, handle) {
        auto value = item.value ? pybind11::cast(*item.value) : none();
        return pybind11::cast(trevallo::AnyItem{value, item.source, item.updated, item.changed}).release();
    }
};

} // namespace pybind11::detail
