// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/message.h>
#include <airspace/place.h>
#include <airspace/reply.h>

#include <cstdint>
#include <optional>

namespace quorvel::modes::python {

/// The register of a Comm-B reply, if its choice can be relied on.
inline std::optional<airspace::Register> surelyHeld(airspace::Reply const& reply) {
    auto const& choice = reply.registerChoice;
    return choice && !choice->isUnsure ? choice->best : std::nullopt;
}

/// Its number; 0 of none.
inline std::uint8_t registerNumberOf(airspace::Reply const& reply) {
    auto const held = surelyHeld(reply);
    return held ? static_cast<std::uint8_t>(*held) : 0;
}

/// A message with what its reader was told.
struct ReadMessage {
    airspace::Message message;
    std::optional<airspace::Register> number;
    std::optional<airspace::Place> place;
};

} // namespace quorvel::modes::python
