// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/message.h>
#include <airspace/register_choice.h>
#include <modes/modes_message.h>

#include <array>
#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// What is laid over the parity of a frame, by its format (ICAO Annex 10 Vol. IV, 3.1.2.3.3.2). For military extended
/// squitters it is not known.
enum class Overlay : std::uint8_t {
    Nothing,      ///< extended squitters: what is left of the parity is 0 in an intact one
    Interrogator, ///< all-call replies: the identifier of the interrogator
    Address,      ///< all other replies: the address, so that damage cannot be detected
    Unknown,
};

/// What one frame meant, worked out once for whoever shows it.
struct Reply {
    /// How far an address can be trusted.
    using Confidence = modes::ModeSMessage::Confidence;

    /// That of no frame.
    Reply() noexcept {} // NOLINT(modernize-use-equals-default): a constant's bytes would all be cleared for each frame

    /// What it says, by the standards: of the repaired frame where it was repaired, and whether it could be decoded or
    /// not. `std::monostate` of Mode A/C replies, and of bytes that are no frame.
    Message message;

    /// Whether it can be believed at all: of a format that is read, and intact or repaired where its parity tells.
    /// Members that do not depend on that say so. False for Mode A/C replies.
    bool isDecoded = false;

    /// Downlink format, 0 to 24; whether decoded or not. None for Mode A/C replies.
    std::optional<std::uint8_t> format;

    /// Aircraft address, 24 bits; 0 when the frame carries none or its parity failed.
    std::uint32_t address = 0;

    /// How far the address can be trusted.
    Confidence confidence = modes::ModeSMessage::NONE;

    /// What its format lays over its parity, whether decoded or not, and what it was, 24 bits; 0 when it
    /// could not be decoded.
    Overlay overlay = Overlay::Unknown;
    std::uint32_t overlaid = 0;

    /// The damaged bits that were repaired, counted from 1 as the standards do, and how many: 0 to 2.
    std::array<std::uint8_t, 2> repairedBits{};
    std::uint8_t repairs = 0;

    /// Type code of its ADS-B message, 0 to 31: of extended squitters that carry one and could be decoded.
    std::optional<std::uint8_t> typeCode;

    /// Which register it holds, by what is known of its aircraft: of Comm-B replies that `Sky` gave to one.
    std::optional<RegisterChoice> registerChoice;

    bool isTracked = false; ///< it was given to an aircraft
    bool isPositionShown =
        false; ///< it completed a position that passed the checks, which its aircraft has from now on
};

} // namespace quorvel::airspace
