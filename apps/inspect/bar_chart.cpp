// SPDX-License-Identifier: MIT
#include "inspect/bar_chart.h"

#include "outputs/output_text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvel::inspect {

namespace {

constexpr std::size_t kIndent = 4;
constexpr std::size_t kShortestBar = 10;
constexpr std::uint64_t kEighths = 8;

constexpr std::array<std::string_view, kEighths> kBlocks{"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
constexpr std::array<std::string_view, 9> kHeights{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::array<std::string_view, 9> kPlainHeights{" ", ".", ":", "-", "=", "+", "*", "#", "@"};

// How many of `columns` a count gets in relation to the greatest one; at least a part unless it is 0.
std::string barOf(std::uint64_t count, std::uint64_t greatest, std::size_t columns, bool hasBlocks) {
    if (count == 0) return "";
    auto const share = static_cast<double>(count) / static_cast<double>(greatest);
    auto const rounded = std::llround(share * static_cast<double>(kEighths * columns));
    auto const eighths = std::max<std::uint64_t>(static_cast<std::uint64_t>(rounded), 1);
    if (!hasBlocks) return std::string((eighths + kEighths - 1) / kEighths, '#');
    std::string bar;
    for (std::uint64_t full = 0; full < eighths / kEighths; ++full) bar += "█";
    return bar + std::string(kBlocks[eighths % kEighths]);
}

std::string percent(std::uint64_t count, std::uint64_t all) {
    auto const share = all == 0 ? 0.0 : 100.0 * static_cast<double>(count) / static_cast<double>(all);
    return outputs::fixed(share, 1) + " %";
}

std::string right(std::string const& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

} // namespace

std::string barChart(std::vector<Bar> const& bars, terminal::TerminalStyle const& style) {
    std::size_t labelWidth = 0;
    std::size_t countWidth = 0;
    std::uint64_t greatest = 0;
    std::uint64_t all = 0;
    for (auto const& bar : bars) {
        labelWidth = std::max(labelWidth, bar.label.size());
        countWidth = std::max(countWidth, std::to_string(bar.count).size());
        greatest = std::max(greatest, bar.count);
        all += bar.count;
    }
    constexpr std::size_t kPercentWidth = 7;
    auto const used = kIndent + labelWidth + 2 + countWidth + 2 + kPercentWidth + 2;
    auto const columns = style.columns > used + kShortestBar ? style.columns - used : kShortestBar;

    std::string text;
    for (auto const& bar : bars) {
        auto line = std::string(kIndent, ' ') + bar.label + std::string(labelWidth - bar.label.size() + 2, ' ') +
                    right(std::to_string(bar.count), countWidth) + "  " +
                    right(percent(bar.count, all), kPercentWidth) + "  " +
                    barOf(bar.count, greatest, columns, style.hasBlocks);
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

std::string sparkline(std::span<std::uint64_t const> counts, terminal::TerminalStyle const& style) {
    std::uint64_t greatest = 1;
    for (auto const count : counts) greatest = std::max(greatest, count);
    auto const& heights = style.hasBlocks ? kHeights : kPlainHeights;
    std::string text;
    for (auto const count : counts) text += heights[(count * kEighths + greatest - 1) / greatest];
    return text;
}

} // namespace quorvel::inspect
