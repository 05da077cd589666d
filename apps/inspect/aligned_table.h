// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace quorvel::inspect {

enum class Align { Left, Right };

struct TableColumn {
    std::string heading;
    Align align = Align::Left;
};

using TableRow = std::vector<std::string>;

/// Rows under their headings in aligned columns, two blanks between them, each line after an indent. Columns
/// without any text are left out.
std::string alignedTable(
    std::vector<TableColumn> const& columns, std::vector<TableRow> const& rows, std::string const& indent);

} // namespace quorvel::inspect
