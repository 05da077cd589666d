// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/traffic.h"

#include <cstdint>
#include <string>

namespace quorvel::simulate {

/// How a receiver passes its frames on: text lines without or with time stamps, or the Beast stream, with 0x1A
/// inside frames doubled, as receivers send it, or as it is.
enum class Encoding : std::uint8_t { Avr, AvrStamped, Beast, BeastPlain };

/// Appends a frame, received `startOfDay` nanoseconds after midnight UTC plus its own time. Time stamps have
/// 18 bits second of the day and 30 bits nanosecond; after midnight the day starts again.
void appendFrame(std::string& stream, Frame const& frame, Encoding encoding, std::uint64_t startOfDay);

} // namespace quorvel::simulate
