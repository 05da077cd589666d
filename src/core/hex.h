// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel::modes {

/// The digits of every hexadecimal text that the library writes.
inline constexpr char hexDigits[] = "0123456789ABCDEF";

/// Appends each byte as two upper-case digits, high nibble first.
void appendHex(std::string& text, std::string_view bytes);

/// Each byte as two upper-case digits, without separators.
std::string hexOfBytes(std::string_view bytes);

/// "%.2X": upper case, at least two digits, not padded any further.
std::string hexOfNumber(std::uint32_t number);

} // namespace quorvel::modes
