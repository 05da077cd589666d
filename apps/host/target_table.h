// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_target.h>

#include <memory>
#include <string>
#include <vector>

namespace quorvel::host {

using Targets = std::vector<std::shared_ptr<modes::ADSBTarget>>;

/// One cell of the table for each column, headings included; empty where the target has no valid value.
struct TargetTable {
    std::vector<std::string> headings;
    std::vector<std::string> units;
    std::vector<std::vector<std::string>> rows;
};

/// The targets by track number: number, address, callsign, squawk, altitude, speed, heading, position,
/// version (in parentheses while only assumed), messages, and age against `now` (ms since 1970-01-01 00:00:00
/// UTC).
TargetTable makeTable(Targets targets, unsigned long long now);

/// The table as lines of text in aligned columns.
std::string tableText(TargetTable const& table);

/// Text from the air without control characters and trailing blanks.
std::string shown(std::string const& text);

} // namespace quorvel::host
