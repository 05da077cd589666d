// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvel::simulate {

// How numbers and letters are sent, as the standards say.

/// Altitude in feet, 13 bits: in steps of 25 ft, or as Mode C has it in steps of 100 ft, as is all above 50,175 ft.
/// Source: ICAO Annex 10 Vol. IV, 3.1.2.6.5.4 and 3.1.1.7.12.2.3.
std::uint64_t altitudeCode(double feet, bool hundreds);

/// The 12 bits of it that squitters carry: without the M bit.
std::uint64_t squitterAltitudeCode(double feet, bool hundreds);

/// The feet that the altitude code stands for.
double codedAltitude(double feet, bool hundreds);

/// A Mode A code, four octal digits as a number, in 13 bits. Source: ICAO Annex 10 Vol. IV, 3.1.2.6.7.1.
std::uint64_t identityCode(std::uint32_t squawk);

/// The first `count` letters and digits in six bits each, blanks behind. Source: ICAO Annex 10 Vol. IV, 3.1.2.9.1.
std::uint64_t characterCodes(std::string const& text, std::size_t count);

/// Speed on the ground, 7 bits; the steps depend on the version. Source: RTCA DO-260 and DO-260B, 2.2.3.2.4.2.
std::uint64_t movementCode(double knots, unsigned version);

} // namespace quorvel::simulate
