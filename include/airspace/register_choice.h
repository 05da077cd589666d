// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/comm_b.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvel::airspace {

/// What is known of an aircraft when a Comm-B reply of it comes, from its other messages of the last seconds. The more,
/// the surer the choice.
struct KnownState {
    std::optional<int> altitudeFt;                   ///< pressure altitude
    std::optional<double> groundSpeedKt;             ///< kt
    std::optional<double> trackDegrees;              ///< true
    std::optional<int> verticalRateFtMin;            ///< up positive, of any source
    std::optional<double> headingDegrees;            ///< magnetic
    std::optional<double> indicatedAirspeedKt;       ///< kt
    std::optional<double> trueAirspeedKt;            ///< kt
    std::optional<double> mach;                      ///< of an earlier 6,0
    std::optional<int> selectedAltitudeFt;           ///< of a target state message or an earlier 4,0
    std::optional<double> pressureSettingHpa;        ///< the same
    std::optional<Callsign> callsign;                ///< of its squitters
    std::optional<CommonUsageCapability> capability; ///< its report 1,7
};

/// Which register a reply holds.
struct RegisterChoice {
    std::optional<Register> best; ///< the most likely one; none if nothing fits
    double score = 0.0;           ///< how likely it is, 0 to 1, compared with all that fit and with "none of them"
    bool isUnsure = true;         ///< too little is known to rely on it
};

/// Chooses among all registers that the seven bytes of MB fit, 2,1 4,4 4,5 and 5,3 among them, by how well their
/// values go with what is known of the aircraft.
TREVALLO_AIRSPACE_EXPORT RegisterChoice chooseRegister(std::string_view mb, KnownState const& known);

} // namespace quorvel::airspace
