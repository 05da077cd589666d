// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// Where a selected altitude comes from. Source: RTCA DO-260B, 2.2.3.2.7.1.3.2.
enum class SelectedAltitudeSource : std::uint8_t {
    ControlPanel,     ///< mode control panel or flight control unit
    FlightManagement, ///< flight management system
};

/// Modes of the autopilot and what it follows. Source: RTCA DO-260B, 2.2.3.2.7.1.3.10 to 2.2.3.2.7.1.3.17.
struct AutopilotModes {
    bool isEngaged = false;      ///< ME 48: the autopilot
    bool isVnav = false;         ///< ME 49: vertical navigation
    bool isAltitudeHold = false; ///< ME 50
    bool isApproach = false;     ///< ME 52
    bool isLnav = false;         ///< ME 54: lateral navigation
};

/// Type code 29 subtype 1, register 6,2, since version 2: target state and status. Source: RTCA DO-260B, 2.2.3.2.7.1.
struct TargetState {
    bool silSupplement = false;                                                   ///< ME 8
    SelectedAltitudeSource altitudeSource = SelectedAltitudeSource::ControlPanel; ///< ME 9: with an altitude alone
    std::optional<std::int32_t> selectedAltitudeFt;                               ///< ME 10 to 20: steps of 32 ft
    std::optional<double> pressureSettingHpa;     ///< ME 21 to 29: 800 to 1,208 hPa, steps of 0.8
    std::optional<double> selectedHeadingDegrees; ///< ME 30 to 39: 0 up to 360, steps of 180/256
    std::uint8_t nacP = 0;                        ///< ME 40 to 43
    bool isNicBaroChecked = false;                ///< ME 44: the barometric altitude is cross-checked
    std::uint8_t sil = 0;                         ///< ME 45 and 46
    std::optional<AutopilotModes> modes;          ///< ME 48 to 54, if ME 47 is 1
    bool isTcasOperational = false;               ///< ME 53, whatever ME 47 is
};

/// Type code 29 subtype 0, register 6,2, of version 1: target state and status. Source: RTCA DO-260A, 2.2.3.2.7.1.
struct TargetStateVersion1 {
    std::uint8_t verticalDataSource = 0;          ///< ME 8 and 9: none, control panel, holding altitude, FMS
    bool isMeanSeaLevel = false;                  ///< ME 10: the target altitude; else a flight level
    std::uint8_t targetAltitudeCapability = 0;    ///< ME 12 and 13: holding, and autopilot, and FMS too
    std::uint8_t verticalMode = 0;                ///< ME 14 and 15: unknown, acquiring, capturing or holding
    std::optional<std::int32_t> targetAltitudeFt; ///< ME 16 to 25: -1,000 to 100,000 ft, steps of 100
    std::uint8_t horizontalDataSource = 0;        ///< ME 26 and 27: none, control panel, holding, FMS
    std::optional<double> targetDirectionDegrees; ///< ME 28 to 36: 0 to 359, steps of 1
    bool isDirectionTrack = false;                ///< ME 37: a track; else a heading
    std::uint8_t horizontalMode = 0;              ///< ME 38 and 39: unknown, acquiring, capturing or holding
    std::uint8_t nacP = 0;                        ///< ME 40 to 43
    bool isNicBaroChecked = false;                ///< ME 44: the barometric altitude is cross-checked
    std::uint8_t sil = 0;                         ///< ME 45 and 46
    std::uint8_t capabilityMode = 0;              ///< ME 52 and 53: TCAS not operational, advisory active
    std::uint8_t emergency = 0;                   ///< ME 54 to 56: as in `EmergencyState`
};

} // namespace quorvel::airspace
