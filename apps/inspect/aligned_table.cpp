// SPDX-License-Identifier: MIT
#include "inspect/aligned_table.h"

#include <algorithm>

namespace quorvel::inspect {

std::string alignedTable(
    std::vector<TableColumn> const& columns, std::vector<TableRow> const& rows, std::string const& indent) {
    std::vector<std::size_t> widths;
    TableRow headings;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        std::size_t width = 0;
        for (auto const& row : rows) width = std::max(width, row[column].size());
        widths.push_back(width == 0 ? 0 : std::max(width, columns[column].heading.size()));
        headings.push_back(columns[column].heading);
    }

    std::string text;
    auto const addLine = [&](TableRow const& cells) {
        std::string line;
        for (std::size_t column = 0; column < cells.size(); ++column) {
            if (widths[column] == 0) continue;
            if (!line.empty()) line += "  ";
            std::string const blanks(widths[column] - cells[column].size(), ' ');
            line += columns[column].align == Align::Left ? cells[column] + blanks : blanks + cells[column];
        }
        text += indent + line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    };
    addLine(headings);
    std::for_each(rows.begin(), rows.end(), addLine);
    return text;
}

} // namespace quorvel::inspect
