// SPDX-License-Identifier: MIT
#include "outputs/text_table.h"

#include "outputs/columns.h"

#include <utility>

namespace quorvel::outputs {

TextTable::TextTable(std::unique_ptr<Sink> sink) : _sink(std::move(sink)) {}

void TextTable::finish(Picture const& last) {
    _sink->write(tableText(makeTable(last)));
    _sink->flush();
}

} // namespace quorvel::outputs
