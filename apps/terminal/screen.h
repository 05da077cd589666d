// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quorvel::terminal {

enum class Colour : std::uint8_t { Default, Red, Yellow };

struct Style {
    Colour colour = Colour::Default;
    bool bold = false;
    bool dim = false;
    bool reverse = false;

    bool operator==(Style const&) const = default;
};

/// Text of one style, printable ASCII only: each character takes one cell.
struct Span {
    std::string text;
    Style style;

    bool operator==(Span const&) const = default;
};

using ScreenLine = std::vector<Span>;

/// What a terminal should show, from top to bottom; no line is wider than it.
using Screen = std::vector<ScreenLine>;

} // namespace quorvel::terminal
