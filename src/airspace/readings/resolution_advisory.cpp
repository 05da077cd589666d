// SPDX-License-Identifier: MIT
#include <airspace/resolution_advisory.h>

#include "airspace/readings/register_bits.h"

#include <airspace/altitude_code.h>

namespace quorvel::airspace {

namespace {

constexpr std::uint32_t kBeyondRange = 127; // more than 12.55 NM
constexpr std::uint32_t kLastSector = 60;

SameSenseAdvisory sameSense(RegisterBits const& mb) {
    return {mb.flag(10), mb.flag(11), mb.flag(12), mb.flag(13), mb.flag(14), mb.flag(15)};
}

MixedSenseAdvisory mixedSense(RegisterBits const& mb) {
    return {mb.flag(10), mb.flag(11), mb.flag(12), mb.flag(13), mb.flag(14), mb.flag(15)};
}

void readThreatPosition(ResolutionAdvisory& advisory, RegisterBits const& mb) {
    advisory.threatAltitudeFt = readAltitudeCode(mb.number(31, 43)).altitudeFt;
    auto const range = mb.number(44, 50);
    if (range > 0 && range < kBeyondRange) advisory.threatRangeNm = (range - 1) / 10.0;
    auto const sector = mb.number(51, 56);
    if (sector > 0 && sector <= kLastSector) advisory.threatBearingDegrees = static_cast<int>(6 * sector - 3);
}

} // namespace

ResolutionAdvisory readResolutionAdvisory(std::string_view register3_0) {
    ResolutionAdvisory advisory;
    if (register3_0.size() != RegisterBits::kBytes) return advisory;
    RegisterBits const mb(register3_0);
    advisory.ara = static_cast<std::uint16_t>(mb.number(9, 22));
    advisory.rac = static_cast<std::uint8_t>(mb.number(23, 26));
    advisory.noBelow = mb.flag(23);
    advisory.noAbove = mb.flag(24);
    advisory.noLeft = mb.flag(25);
    advisory.noRight = mb.flag(26);
    advisory.isTerminated = mb.flag(27);
    advisory.hasMultipleThreats = mb.flag(28);
    if (mb.flag(9)) {
        advisory.sameSense = sameSense(mb);
    } else if (advisory.hasMultipleThreats) {
        advisory.mixedSense = mixedSense(mb);
    }
    advisory.threatType = static_cast<ThreatType>(mb.number(29, 30));
    if (advisory.threatType == ThreatType::Address) advisory.threatAddress = mb.number(31, 54);
    if (advisory.threatType == ThreatType::Position) readThreatPosition(advisory, mb);
    return advisory;
}

} // namespace quorvel::airspace
