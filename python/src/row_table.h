// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/numpy.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

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

/// An array that owns the rows; they are not copied.
template <class Row> py::array asArray(std::vector<Row>&& rows, std::span<Column const> columns) {
    py::list names;
    py::list formats;
    py::list offsets;
    for (auto const& column : columns) {
        names.append(column.name);
        formats.append(column.format);
        offsets.append(column.offset);
    }
    py::dtype const type(names, formats, offsets, sizeof(Row));
    auto owned = std::make_unique<std::vector<Row>>(std::move(rows));
    auto const* const first = owned->data();
    auto const count = static_cast<py::ssize_t>(owned->size());
    py::capsule const owner(owned.get(), [](void* vector) { delete static_cast<std::vector<Row>*>(vector); });
    owned.release();
    return py::array(type, {count}, {static_cast<py::ssize_t>(sizeof(Row))}, first, owner);
}

} // namespace quorvel::modes::python
