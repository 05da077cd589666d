// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/frame.h>
#include <airspace/reply.h>

namespace quorvel::airspace {

/// What a frame meant, given the core's message of it (null when it could not be decoded), as far as it does
/// not depend on what else was heard. The track is left open.
Reply readReply(Frame const& frame, modes::ModeSMessage const* message);

/// The set of an emitter category, 'A' to 'D', by the type code of its identification message, 1 to 4: they
/// are numbered downwards (RTCA DO-260B, 2.2.3.2.5.2).
char categorySetOf(std::uint8_t typeCode);

} // namespace quorvel::airspace
