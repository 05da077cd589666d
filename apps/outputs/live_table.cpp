// SPDX-License-Identifier: MIT
#include "outputs/live_table.h"

#include <utility>

namespace quorvel::host {

LiveTable::LiveTable(std::unique_ptr<Terminal> terminal) : _terminal(std::move(terminal)) { show(); }

void LiveTable::picture(Picture const& picture) {
    _picture = picture;
    _state = seen(std::move(_state), _picture);
    show();
}

void LiveTable::poll() {
    auto const rows = _terminal->size().rows;
    for (auto const key : _terminal->keys()) {
        if (key.kind == Key::Kind::Redraw) _terminal->forget();
        _state = pressed(std::move(_state), key, _picture, rows);
    }
    show();
}

void LiveTable::show() {
    auto const size = _terminal->size();
    _terminal->show(draw(_picture, _state, size.columns, size.rows));
}

} // namespace quorvel::host
