// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/numpy.h>

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <type_traits>

namespace quorvel::modes::python {

namespace py = pybind11;

inline constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
inline constexpr float kNothingShort = std::numeric_limits<float>::quiet_NaN();

/// A column of an array of rows.
struct Column {
    char const* name;
    char const* format; ///< numpy's
    std::size_t offset; ///< in the row
    char const* text;   ///< for the documentation, with the unit
};

/// A line for each column.
inline std::string columnsText(std::span<Column const> columns) {
    constexpr std::size_t width = 18;
    std::string text;
    for (auto const& column : columns) {
        std::string name(column.name);
        name.resize(width, ' ');
        text += name + column.text + "\n";
    }
    return text;
}

/// Rows that become an array without being copied. They grow by moving pages, which takes half the time that a vector of
/// large recordings does.
template <class Row> class RowTable {
public:
    /// A row of nothing, behind the others.
    Row& add() {
        static_assert(std::is_trivially_copyable_v<Row>);
        if (_size == _room) grow();
        return *new (_rows.get() + _size++) Row();
    }

    /// An array that owns the rows; none are left here.
    py::array takeArray(std::span<Column const> columns) {
        py::list names;
        py::list formats;
        py::list offsets;
        for (auto const& column : columns) {
            names.append(column.name);
            formats.append(column.format);
            offsets.append(column.offset);
        }
        py::dtype const type(names, formats, offsets, sizeof(Row));
        if (_size == 0) return py::array(type, 0);
        auto const count = static_cast<py::ssize_t>(_size);
        py::capsule const owner(_rows.get(), &std::free);
        auto const* const first = _rows.release();
        _size = _room = 0;
        return py::array(type, {count}, {static_cast<py::ssize_t>(sizeof(Row))}, first, owner);
    }

private:
    struct Free {
        void operator()(Row* rows) const { std::free(rows); }
    };

    void grow() {
        auto const room = _room == 0 ? 1024 : 2 * _room;
        auto* const rows = std::realloc(static_cast<void*>(_rows.get()), room * sizeof(Row));
        if (!rows) throw std::bad_alloc();
        static_cast<void>(_rows.release());
        _rows.reset(static_cast<Row*>(rows));
        _room = room;
    }

    std::unique_ptr<Row[], Free> _rows;
    std::size_t _size = 0;
    std::size_t _room = 0;
};

} // namespace quorvel::modes::python
