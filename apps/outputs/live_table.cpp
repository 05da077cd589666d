// SPDX-License-Identifier: MIT
#include "outputs/live_table.h"

#include <utility>

namespace quorvel::outputs {

LiveTable::LiveTable(std::unique_ptr<terminal::Terminal> terminal) : _terminal(std::move(terminal)) { show(); }

void LiveTable::picture(Picture const& picture) {
    _picture = picture;
    _state = afterPicture(std::move(_state), _picture);
    show();
}

void LiveTable::poll() {
    auto const rows = _terminal->size().rows;
    for (auto const key : _terminal->keys()) {
        if (key.kind == terminal::Key::Kind::Redraw) _terminal->forget();
        _state = afterKey(std::move(_state), key, _picture, rows);
    }
    show();
}

void LiveTable::show() {
    auto const size = _terminal->size();
    _terminal->show(draw(_picture, _state, size.columns, size.rows));
}

} // namespace quorvel::outputs
