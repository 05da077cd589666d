// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/reply.h>

#include <string_view>

namespace quorvel::airspace {

/// Fills in what the received frame, and the message that was read of it, say of format, overlay and type code.
void describe(std::string_view frame, Reply& reply);

/// What a frame meant, given the core's message of it (null when it could not be decoded), as far as it does
/// not depend on what else was heard.
Reply readReply(Frame const& frame, modes::ModeSMessage const* message);

/// The set of an emitter category, 'A' to 'D', by the type code of its identification message, 1 to 4: they
/// are numbered downwards (RTCA DO-260B, 2.2.3.2.5.2).
char categorySetOf(std::uint8_t typeCode);

} // namespace quorvel::airspace
