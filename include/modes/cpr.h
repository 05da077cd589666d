// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Functions of compact position reporting (CPR), by which airborne positions are sent as 17-bit coordinates
/// in even and odd frames. Source: ICAO Doc 9871, C.2.6.

#include <modes/export.h>

namespace quorvel::modes {

/// Remainder of the truncating division a / b, plus b when it is negative: 0 to b - 1 for positive b, so -7
/// modulo 60 is 53. 0 when b is 0.
TREVALLO_EXPORT int cprModFunction(int a, int b);

/// Number of longitude zones (NL) at a latitude in degrees: 59 around the equator, 2 from 86.53536998 and 1
/// from 87 degrees on, the same north and south. A latitude exactly on a transition has the lower number. 1
/// for what is not a number.
TREVALLO_EXPORT int cprNLFunction(double lat);

/// Number of longitude zones of even (i = 0) or odd (i = 1) frames at a latitude: NL - i, and at least 1.
TREVALLO_EXPORT int cprNFunction(double lat, int i);

/// Width in degrees of a longitude zone of even (i = 0) or odd (i = 1) frames at a latitude.
TREVALLO_EXPORT double cprDlonFunction(double lat, int i);

} // namespace quorvel::modes
