// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/traffic.h"

#include <cstdint>
#include <string>

namespace quorvel::simulate {

/// How a receiver hands its frames on: text lines without or with time stamps, or the Beast stream, with 0x1A
/// inside frames as it is or, as receivers send it, doubled.
enum class Encoding : std::uint8_t { Avr, AvrWithTime, Beast, BeastDoubled };

/// Appends a frame, received `startOfDay` nanoseconds after midnight UTC plus its own time. Time stamps have
/// 18 bits second of the day and 30 bits nanosecond; after midnight the day begins anew.
void appendFrame(std::string& stream, Frame const& frame, Encoding encoding, std::uint64_t startOfDay);

} // namespace quorvel::simulate
