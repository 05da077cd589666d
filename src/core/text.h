// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h>

#include <cstddef>
#include <string>

namespace quorvel::modes {

/// The bytes at `data`. The interface counts in 64 bits on every machine; what is in memory fits its size_t.
inline std::string bytesAt(char const* data, unsigned long long size) { return {data, static_cast<std::size_t>(size)}; }

/// printf-style formatting into a string, for short texts: what exceeds 63 characters is cut.
TREVALLO_PRINTF(1, 2) std::string formatted(char const* format, ...);

/// A number with six decimals, or with up to six significant digits and no trailing zeros ("%f" and "%g"),
/// written with a point whatever the locale of the host.
std::string fixedSix(double number);
std::string sixSignificant(double number);

} // namespace quorvel::modes
