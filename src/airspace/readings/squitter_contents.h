// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/readings/register_bits.h"

#include <airspace/extended_squitter.h>

namespace quorvel::airspace {

/// What decides how the seven bytes of ME are read.
struct SquitterSource {
    RegisterBits me;                     ///< with its type code
    unsigned subtype;                    ///< 0 of types without one
    SquitterOrigin origin;               ///< who made it
    std::optional<std::uint8_t> version; ///< of its transmitter, at most 2; none if not known

    /// Whether messages may be of a transmitter of versions `first` to `last`.
    bool mayBeOfVersion(std::uint8_t first, std::uint8_t last) const {
        return !version || (first <= *version && *version <= last);
    }
};

/// Reads seven bytes of ME with a type code.
SquitterContent readContent(std::string_view me, SquitterOrigin origin, Reading const& how);

// Readers of one type of message each. `content` comes as an `UnreadSquitter`. What is read is made where it stays:
// copies would cost as much as reading.

void readUnread(SquitterSource const& source, SquitterContent& content);
void readNoPosition(SquitterSource const& source, SquitterContent& content);
void readIdentification(SquitterSource const& source, SquitterContent& content);
void readSurfacePosition(SquitterSource const& source, SquitterContent& content);
void readAirbornePosition(SquitterSource const& source, SquitterContent& content);
void readVelocity(SquitterSource const& source, SquitterContent& content);
void readTestMessage(SquitterSource const& source, SquitterContent& content);
void readAircraftStatus(SquitterSource const& source, SquitterContent& content);
void readTargetState(SquitterSource const& source, SquitterContent& content);
void readOperationalStatus(SquitterSource const& source, SquitterContent& content);

} // namespace quorvel::airspace
