// SPDX-License-Identifier: MIT
#pragma once

#include "terminal/terminal_style.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quorvel::inspect {

struct Bar {
    std::string label;
    std::uint64_t count;
};

/// A line for each bar: its label, its count, its share of all, and the bar, as long as the width allows for
/// the longest.
std::string barChart(std::vector<Bar> const& bars, terminal::TerminalStyle const& style);

/// One character for each count, the higher the fuller.
std::string sparkline(std::span<std::uint64_t const> counts, terminal::TerminalStyle const& style);

} // namespace quorvel::inspect
