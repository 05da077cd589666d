// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quorvel::inspect {

/// The bytes of one frame written as text with blanks anywhere: hexadecimal digits of either case, alone or as
/// an AVR line, whose time stamp is left out. Throws HostError, which quotes the text, for anything that is not 2,
/// 7 or 14 bytes.
std::string parseFrame(std::string_view text);

/// Two upper-case hexadecimal digits for each byte.
std::string hexText(std::string_view bytes);

/// A number in at least so many upper-case hexadecimal digits, at most 63.
std::string hexText(unsigned long long number, unsigned digits);

/// The bits of a frame from one on, counted from 0, as a number; at most 64. The libraries' own reader of bits is
/// not public.
unsigned long long bitsOf(std::string_view bytes, unsigned first, unsigned width);

} // namespace quorvel::inspect
