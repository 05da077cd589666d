// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/message.h>

#include <cstdint>
#include <string_view>

namespace quorvel::airspace {

/// As `read`, into a message that stays where it is, which saves a copy.
void readInto(Message& message, std::string_view frame, Reading const& how = {});

/// As `readAltitudeCode` and `readSquitterAltitudeCode`, of an altitude that is empty so far.
void readInto(AltitudeCode& altitude, std::uint32_t code);
void readSquitterInto(AltitudeCode& altitude, std::uint32_t code);

/// The address of the aircraft that sent a frame, if it is intact; 0 of bytes that are no frame.
std::uint32_t likelyAddress(std::string_view frame);

} // namespace quorvel::airspace
