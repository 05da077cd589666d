// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/message.h>
#include <airspace/reply.h>

#include "modes/trust.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace quorvel::airspace {

/// A frame as it was received: what it says, and how far its address can be trusted.
struct Reception {
    /// Of the repaired frame where it was repaired; `std::monostate` of bytes that are not a Mode S frame.
    Message message;

    /// Whether it can be believed at all: of a format that is read, and intact or repaired where its parity tells.
    bool isDecoded = false;

    std::uint32_t address = 0;                                ///< 24 bits; 0 where there is none
    Reply::Confidence confidence = modes::ModeSMessage::NONE; ///< how far the address can be trusted
    std::array<std::uint8_t, 2> repairedBits{};               ///< counted from 1, ascending
    std::uint8_t repairs = 0;                                 ///< how many bits were repaired: 0 to 2
};

/// Receives the frames of one sky: parity, repair of one or two damaged bits of extended squitters, and the trust in
/// addresses by what was heard before. The rules are those of the core's decoder; no message object is made.
///
/// Trust goes by the time that it is told, so that a replay at any speed gives the same. No memory is allocated for a
/// frame of a known address.
class FrameReceiver {
public:
    /// Takes the bytes of a frame, first transmitted byte first, and its time in ms.
    Reception receive(std::string_view frame, TimeMs time);

private:
    modes::Trust _trust;
};

} // namespace quorvel::airspace
