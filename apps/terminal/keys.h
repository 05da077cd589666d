// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvel::terminal {

/// One press of a key.
struct Key {
    enum class Kind : std::uint8_t {
        Character,
        Up,
        Down,
        PageUp,
        PageDown,
        Home,
        End,
        Enter,
        Escape,
        Backspace,
        Redraw, ///< Ctrl-L
    };

    Kind kind = Kind::Character;
    char character = 0; ///< for characters

    bool operator==(Key const&) const = default;
};

/// Extracts the keys from the bytes that a terminal sent. The start of a key's sequence stays, unless the terminal
/// has paused since (`isAll`): then an escape byte is the key of that name. Keys that are not used here are left out.
std::vector<Key> takeKeys(std::string& bytes, bool isAll);

} // namespace quorvel::terminal
