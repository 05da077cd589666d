// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/frame_summary.h"
#include <airspace/place.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace quorvel::inspect {

using Json = nlohmann::ordered_json;

/// Where the texts of `summaryLine` begin, counted from 0.
inline constexpr std::size_t kSummaryTextColumn = 20;

/// "  Address           4840D6".
std::string summaryLine(std::string const& name, std::string const& text);

/// The frame and a line for each thing that is said of it. How much of its parity is shown is up to the caller.
std::string summaryText(FrameSummary const& summary, std::string const& parity);

/// A blank line and one with a position in degrees and what it is of; empty where there is none.
std::string positionText(std::optional<airspace::Place> const& position, std::string const& source);

/// The value, or null.
template <class Value> Json orNull(std::optional<Value> const& value) { return value ? Json(*value) : Json(); }

/// The text, or null where it is empty.
Json orNull(std::string const& text);

/// The members that all frames have.
Json summaryJson(FrameSummary const& summary);

/// A position, or null.
Json positionJson(std::optional<airspace::Place> const& position);

/// As a line.
std::string lineOf(Json const& json);

} // namespace quorvel::inspect
