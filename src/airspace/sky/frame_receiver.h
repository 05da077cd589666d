// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/reply.h>

#include "modes/trust.h"

#include <string_view>

namespace quorvel::airspace {

/// Receives the frames of one sky: parity, repair of one or two damaged bits of extended squitters, and the trust in
/// addresses by what was heard before. The rules are those of the core's decoder; no message object is made.
///
/// Trust goes by the time that it is told, so that a replay at any speed gives the same. No memory is allocated for a
/// frame of a known address.
class FrameReceiver {
public:
    /// Takes the bytes of a frame, first transmitted byte first, and its time in ms. What depends on tracks is left open.
    Reply receive(std::string_view frame, TimeMs time);

    /// Fetches from memory what is known of an address that comes soon.
    void expect(std::uint32_t address) const { _trust.expect(address); }

private:
    modes::Trust _trust;
};

} // namespace quorvel::airspace
