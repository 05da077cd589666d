// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/message.h>

#include <string_view>

namespace quorvel::airspace {

/// As `read`, of a message that is made where it stays: copied right after it was read, it would be waited for.
void readInto(Message& message, std::string_view frame, Reading const& how = {});

} // namespace quorvel::airspace
