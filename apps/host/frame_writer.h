// SPDX-License-Identifier: MIT
#pragma once

#include "host/encoding.h"
#include "host/frame.h"

#include <string>

namespace quorvel::host {

/// Appends one frame to a stream of an encoding.
///
/// Time stamps are those that the receiver sent, whatever they count; a frame without one bears 0 where the
/// encoding has room for it. Raw binary, in which the first bit tells the length of a frame, has no form for
/// Mode A/C replies: nothing is appended then.
void appendEncoded(std::string& out, Frame const& frame, Encoding encoding);

} // namespace quorvel::host
