// SPDX-License-Identifier: MIT
#pragma once

#include "inspect/dissection.h"
#include "inspect/named_value.h"
#include <airspace/sky.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvel::inspect {

/// What one frame says by the standards, beside what the core library makes of it.
struct StandardReading : FrameSummary {
    airspace::Reply reply;               ///< its message is read for `version`
    std::optional<std::uint8_t> version; ///< of ADS-B, for which the payload is read; none where nobody has told it
    std::string messageName;             ///< what an extended squitter is; empty of others

    /// Which register a Comm-B reply holds, by what is known of its aircraft; of others nothing.
    std::optional<airspace::RegisterChoice> registerChoice;

    NamedValues values;             ///< the standards', those of the chosen register among them
    NamedValues libraryValues;      ///< the library's where they are others
    bool isUnreadByLibrary = false; ///< the library has no reading of the payload

    std::optional<airspace::Place> position; ///< of this frame with those before it, or near the location

    Dissection dissection; ///< the library's, which says where each field is
};

/// Reads frames by the standards. It remembers earlier ones, as a receiver does: they decide how far an address can be
/// trusted, and pairs of them make positions.
class StandardReader {
public:
    /// Payloads are read for a version; without one, for that which the aircraft has announced before, if it has.
    /// `location` is near aircraft on the surface, which without it have no position.
    StandardReader(std::optional<unsigned> version, std::optional<airspace::Place> const& location);

    /// `time` is when the frame was received, 0 when that is not known.
    StandardReading read(std::string const& bytes, airspace::TimeMs time = 0);

private:
    std::optional<std::uint8_t> versionOf(airspace::Reply const& reply) const;
    void addPosition(StandardReading& reading) const;

    std::optional<std::uint8_t> _version;
    airspace::Sky _sky;
    Dissector _dissector;
    airspace::TimeMs _now = 0;
};

} // namespace quorvel::inspect
