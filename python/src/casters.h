// SPDX-License-Identifier: MIT
#pragma once

#include "texts.h"

#include <pybind11/pybind11.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace quorvel::modes::python {

namespace py = pybind11;

/// Bytes of a frame or a stream: `bytes` in Python and whatever else shows its bytes, but never text.
struct Bytes {
    std::string bytes;
};

/// The same, looked at where they are, for as long as this lives.
class BytesView {
public:
    BytesView() = default;
    BytesView(BytesView&& other) noexcept : _view(std::exchange(other._view, Py_buffer())) {}
    BytesView& operator=(BytesView&& other) noexcept {
        std::swap(_view, other._view);
        return *this;
    }
    ~BytesView() { PyBuffer_Release(&_view); }

    /// False for what shows no bytes, or not in one piece.
    bool open(py::handle object) {
        PyBuffer_Release(&_view);
        if (PyObject_CheckBuffer(object.ptr()) && PyObject_GetBuffer(object.ptr(), &_view, PyBUF_SIMPLE) == 0)
            return true;
        PyErr_Clear();
        return false;
    }

    std::string_view bytes() const {
        return {static_cast<char const*>(_view.buf), static_cast<std::size_t>(_view.len)};
    }

private:
    Py_buffer _view{};
};

/// An object or nothing: `None` in Python.
template <class T> struct OrNone { std::shared_ptr<T> pointer; };

template <class E, class = void> inline constexpr bool isEnumeration = false;
template <class E> inline constexpr bool isEnumeration<E, std::void_t<decltype(Enumeration<E>::kName)>> = true;

/// The Python class (an `enum.IntEnum`) of an enumeration of the library, and its members by value. They live
/// as long as the process.
template <class E> struct EnumerationClass {
    inline static PyObject* type = nullptr;
    inline static PyObject* members = nullptr;
};

} // namespace quorvel::modes::python

namespace pybind11::detail {

namespace trevallo = quorvel::modes::python;

/// Only members of the enumeration itself are taken, so that overloads can distinguish enumerations. A value
/// that has no name comes out as a plain number.
template <class E> struct type_caster<E, std::enable_if_t<trevallo::isEnumeration<E>>> {
    PYBIND11_TYPE_CASTER(E, const_name(trevallo::Enumeration<E>::kFullName));

    bool load(handle source, bool) {
        auto* const expected = trevallo::EnumerationClass<E>::type;
        if (!expected || !type::handle_of(source).is(handle(expected))) return false;
        value = static_cast<E>(source.cast<std::underlying_type_t<E>>());
        return true;
    }

    static handle cast(E source, return_value_policy, handle) {
        int_ const number(static_cast<std::underlying_type_t<E>>(source));
        auto* const member = PyDict_GetItem(trevallo::EnumerationClass<E>::members, number.ptr());
        return handle(member ? member : number.ptr()).inc_ref();
    }
};

template <> struct type_caster<trevallo::Bytes> {
    PYBIND11_TYPE_CASTER(trevallo::Bytes, const_name("bytes"));

    bool load(handle source, bool) {
        trevallo::BytesView view;
        if (!view.open(source)) return false;
        value.bytes = view.bytes();
        return true;
    }

    static handle cast(trevallo::Bytes const& source, return_value_policy, handle) {
        return bytes(source.bytes).release();
    }
};

template <> struct type_caster<trevallo::BytesView> {
    PYBIND11_TYPE_CASTER(trevallo::BytesView, const_name("bytes"));

    bool load(handle source, bool) { return value.open(source); }
};

template <class T> struct type_caster<trevallo::OrNone<T>> {
    using Pointer = make_caster<std::shared_ptr<T>>;
    PYBIND11_TYPE_CASTER(trevallo::OrNone<T>, const_name("Optional[") + Pointer::name + const_name("]"));

    bool load(handle source, bool convert) {
        if (source.is_none()) {
            value.pointer.reset();
            return true;
        }
        Pointer pointer;
        if (!pointer.load(source, convert)) return false;
        value.pointer = cast_op<std::shared_ptr<T>>(pointer);
        return true;
    }

    static handle cast(trevallo::OrNone<T> const& source, return_value_policy policy, handle parent) {
        return Pointer::cast(source.pointer, policy, parent);
    }
};

} // namespace pybind11::detail
