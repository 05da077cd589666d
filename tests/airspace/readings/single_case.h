// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/readings/truth.h"
#include "core/bits.h"
#include "support/bytes.h"

#include <airspace/comm_b.h>
#include <airspace/compact_position.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace quorvel::airspace::test {

// What the lines of single cases hold: frames, what the reader is told, and what must come of it.

/// The register that a case names: "4,0".
inline Register registerNamed(std::string const& name) {
    for (auto const number : kRegisters) {
        if (nameOf(number).text() == name) return number;
    }
    throw std::invalid_argument("no register " + name);
}

/// Of an extended squitter with a position.
inline CompactPosition positionOf(std::string const& frame) {
    auto const message = modes::test::fromHex(frame).substr(4, 7);
    auto const typeCode = modes::bits(message, 0, 5);
    return {modes::bits(message, 22, 17), modes::bits(message, 39, 17), modes::bit(message, 21),
        typeCode >= 5 && typeCode <= 8};
}

inline std::optional<Place> referenceOf(Json const& one) {
    if (!one.contains("ref") || one["ref"].is_null()) return std::nullopt;
    return Place{one["ref"][0], one["ref"][1]};
}

/// Whether a case is of a position: of one frame around the reference, or of a pair.
inline bool isOfPosition(Json const& one) { return one["kind"].get<std::string>().rfind("CPR", 0) == 0; }

inline std::optional<Place> placeOf(Json const& one) {
    auto const& frames = one["hex"];
    if (frames.size() == 1) return localPosition(positionOf(frames[0]), referenceOf(one).value());
    return globalPosition(positionOf(frames[0]), positionOf(frames[1]), referenceOf(one));
}

} // namespace quorvel::airspace::test
