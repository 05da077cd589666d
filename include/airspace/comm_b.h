// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/airspace_export.h>
#include <airspace/callsign.h>
#include <airspace/resolution_advisory.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

/// @file
/// The registers that aircraft send on request in the 56-bit field MB of formats 20 and 21. A value is there only if
/// the status bit in front of it is set. Source: ICAO Doc 9871, tables A-2-16 to A-2-96.

namespace quorvel::airspace {

/// The registers that are read, by number: its high digit names the group, as in "4,0".
enum class Register : std::uint8_t {
    DataLinkCapability = 0x10,
    CommonUsageCapability = 0x17,
    AircraftIdentification = 0x20,
    AircraftRegistration = 0x21,
    ActiveAdvisory = 0x30,
    SelectedIntention = 0x40,
    RoutineMeteorology = 0x44,
    HazardMeteorology = 0x45,
    TrackAndTurn = 0x50,
    AirReferencedState = 0x53,
    HeadingAndSpeed = 0x60,
};

/// All of them in order of their numbers.
inline constexpr std::array<Register, 11> kRegisters{Register::DataLinkCapability, Register::CommonUsageCapability,
    Register::AircraftIdentification, Register::AircraftRegistration, Register::ActiveAdvisory,
    Register::SelectedIntention, Register::RoutineMeteorology, Register::HazardMeteorology, Register::TrackAndTurn,
    Register::AirReferencedState, Register::HeadingAndSpeed};

/// Numbers of registers, `0x40` for 4,0, in ascending order.
class RegisterNumbers {
public:
    void append(std::uint8_t number) { _numbers[_size++] = number; } ///< at most 32
    std::uint8_t const* begin() const { return _numbers.data(); }    ///< the first
    std::uint8_t const* end() const { return begin() + _size; }      ///< behind the last
    std::size_t size() const { return _size; }                       ///< how many

private:
    std::array<std::uint8_t, 32> _numbers{};
    std::size_t _size = 0;
};

/// What a register is called: "4,0".
struct RegisterName {
    std::array<char, 3> characters{}; ///< two hexadecimal digits with a comma between them

    std::string_view text() const { return {characters.data(), characters.size()}; } ///< the same as text
};

/// The name of a register by number.
constexpr RegisterName nameOf(std::uint8_t number) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {{digits[number >> 4], ',', digits[number & 0xF]}};
}

/// The name of a register.
constexpr RegisterName nameOf(Register number) { return nameOf(static_cast<std::uint8_t>(number)); }

/// Register 1,0: what the transponder and its data link can do. Source: ICAO Doc 9871, table A-2-16.
struct DataLinkCapability {
    bool hasContinuation = false;           ///< MB 9: more follows in register 1,1
    bool hasOverlayCommand = false;         ///< MB 15: answers name their register in the parity field
    bool isAcasOperational = false;         ///< MB 16
    std::uint8_t subnetworkVersion = 0;     ///< MB 17 to 23
    bool isLevel5 = false;                  ///< MB 24: enhanced protocol indicator
    bool hasSpecificServices = false;       ///< MB 25
    std::uint8_t uplinkThroughput = 0;      ///< MB 26 to 28: average of extended length messages, a code
    std::uint8_t downlinkThroughput = 0;    ///< MB 29 to 32: peak of extended length messages, a code
    bool hasIdentification = false;         ///< MB 33: aircraft identification
    bool hasSquitter = false;               ///< MB 34: extended squitter
    bool hasSurveillanceIdentifier = false; ///< MB 35: SI codes
    bool hasCommonUsageCapability = false;  ///< MB 36: toggles when register 1,7 changes
    bool hasHybridSurveillance = false;     ///< MB 37: of ACAS
    bool hasResolutionAdvisories = false;   ///< MB 38: ACAS issues resolution advisories, not only traffic advisories
    std::uint8_t acasVersion = 0; ///< MB 40 and 39, the former as the high bit: 0 DO-185, 1 DO-185A, 2 DO-185B
    std::uint16_t terminals = 0;  ///< MB 41 to 56: data terminals 0 to 15 that are on line
};

/// Register 1,7: which registers the aircraft serves. Source: ICAO Doc 9871, table A-2-23.
struct CommonUsageCapability {
    /// MB 1 to 29 as they stand, MB 1 as the highest of 29 bits.
    std::uint32_t flags = 0;

    /// Whether a register by number is served: `0x40` for 4,0. False for registers that have no bit here.
    TREVALLO_AIRSPACE_EXPORT bool serves(std::uint8_t number) const;
    bool serves(Register number) const { return serves(static_cast<std::uint8_t>(number)); } ///< the same by name

    /// All that are served.
    TREVALLO_AIRSPACE_EXPORT RegisterNumbers served() const;
};

/// Register 2,0: the flight number or registration. Source: ICAO Doc 9871, table A-2-32.
struct AircraftIdentification {
    Callsign callsign; ///< MB 9 to 56
};

/// Register 2,1: registration and airline. Source: ICAO Doc 9871, table A-2-33.
struct AircraftRegistration {
    std::optional<SixBitText<7>> registration; ///< MB 2 to 43
    std::optional<SixBitText<2>> airline;      ///< MB 45 to 56: ICAO's two letters
};

/// Register 3,0: the collision avoidance advisory. Source: ICAO Doc 9871, table A-2-48.
struct ActiveAdvisory {
    ResolutionAdvisory advisory; ///< MB 9 to 56
};

/// What altitude the aircraft levels at next. Source: ICAO Doc 9871, table A-2-64.
enum class TargetAltitudeSource : std::uint8_t {
    Unknown,          ///< not known
    AircraftAltitude, ///< the present altitude
    ControlPanel,     ///< selected on the mode control panel or flight control unit
    FlightManagement, ///< selected in the flight management system
};

/// Register 4,0: selected vertical intention. Source: ICAO Doc 9871, table A-2-64.
struct SelectedIntention {
    std::optional<int> controlPanelAltitudeFt;     ///< MB 2 to 13: selected by the pilot, steps of 16 ft
    std::optional<int> flightManagementAltitudeFt; ///< MB 15 to 26: steps of 16 ft
    std::optional<double> pressureSettingHpa;      ///< MB 28 to 39: 800 to 1,209.5 hPa, steps of 0.1

    /// MB 49 to 51: modes of the control panel.
    struct Modes {
        bool isVnav = false;         ///< vertical navigation
        bool isAltitudeHold = false; ///< altitude hold
        bool isApproach = false;     ///< approach
    };
    std::optional<Modes> modes;                               ///< only if MB 48 is set
    std::optional<TargetAltitudeSource> targetAltitudeSource; ///< MB 55 and 56
};

/// How bad turbulence, wind shear, a microburst, icing or wake vortex is. Source: ICAO Doc 9871, table A-2-69.
enum class Hazard : std::uint8_t {
    Nil,      ///< none
    Light,    ///< light
    Moderate, ///< moderate
    Severe,   ///< severe
};

/// Register 4,4: routine meteorological report. Source: ICAO Doc 9871, table A-2-68.
struct RoutineMeteorology {
    std::uint8_t figureOfMerit = 0;                    ///< MB 1 to 4: source of the wind; 0 means invalid
    std::optional<int> windSpeedKt;                    ///< MB 6 to 14: 0 to 511 kt
    std::optional<double> windDirectionDegrees;        ///< MB 15 to 23: where it comes from, true, steps of 180/256
    std::optional<double> staticAirTemperatureCelsius; ///< MB 24 to 34: steps of 0.25; none with figure of merit 0
    std::optional<int> staticPressureHpa;              ///< MB 36 to 46: 0 to 2,047 hPa
    std::optional<Hazard> turbulence;                  ///< MB 48 and 49
    std::optional<double> humidityPercent;             ///< MB 51 to 56: steps of 100/64
};

/// Register 4,5: meteorological hazards. Source: ICAO Doc 9871, table A-2-69.
struct HazardMeteorology {
    std::optional<Hazard> turbulence;                  ///< MB 2 and 3
    std::optional<Hazard> windShear;                   ///< MB 5 and 6
    std::optional<Hazard> microburst;                  ///< MB 8 and 9
    std::optional<Hazard> icing;                       ///< MB 11 and 12
    std::optional<Hazard> wakeVortex;                  ///< MB 14 and 15
    std::optional<double> staticAirTemperatureCelsius; ///< MB 17 to 26: -128 to 127.75, steps of 0.25
    std::optional<int> staticPressureHpa;              ///< MB 28 to 38: 0 to 2,047 hPa
    std::optional<int> radioHeightFt;                  ///< MB 40 to 51: 0 to 65,520 ft, steps of 16
};

/// Register 5,0: track and turn. Source: ICAO Doc 9871, table A-2-80.
struct TrackAndTurn {
    std::optional<double> rollDegrees;               ///< MB 2 to 11: right wing down positive, steps of 45/256
    std::optional<double> trueTrackDegrees;          ///< MB 13 to 23: 0 up to 360, steps of 90/512
    std::optional<int> groundSpeedKt;                ///< MB 25 to 34: steps of 2 kt
    std::optional<double> trackRateDegreesPerSecond; ///< MB 36 to 45: right turn positive, steps of 8/256
    std::optional<int> trueAirspeedKt;               ///< MB 47 to 56: steps of 2 kt
};

/// Register 5,3: air-referenced state vector. Source: ICAO Doc 9871, table A-2-83.
struct AirReferencedState {
    std::optional<double> magneticHeadingDegrees; ///< MB 2 to 12: 0 up to 360, steps of 90/512
    std::optional<int> indicatedAirspeedKt;       ///< MB 14 to 23
    std::optional<double> mach;                   ///< MB 25 to 33: steps of 0.008
    std::optional<double> trueAirspeedKt;         ///< MB 35 to 46: steps of 0.5 kt
    std::optional<int> verticalRateFtMin;         ///< MB 48 to 56: up positive, steps of 64
};

/// Register 6,0: heading and speed. Source: ICAO Doc 9871, table A-2-96.
struct HeadingAndSpeed {
    std::optional<double> magneticHeadingDegrees;   ///< MB 2 to 12: 0 up to 360, steps of 90/512
    std::optional<int> indicatedAirspeedKt;         ///< MB 14 to 23
    std::optional<double> mach;                     ///< MB 25 to 34: steps of 2.048/512
    std::optional<int> barometricVerticalRateFtMin; ///< MB 36 to 45: up positive, steps of 32
    std::optional<int> inertialVerticalRateFtMin;   ///< MB 47 to 56: up positive, steps of 32
};

/// What a register holds; `std::monostate` where it was not read.
using RegisterContent = std::variant<std::monostate, DataLinkCapability, CommonUsageCapability, AircraftIdentification,
    AircraftRegistration, ActiveAdvisory, SelectedIntention, RoutineMeteorology, HazardMeteorology, TrackAndTurn,
    AirReferencedState, HeadingAndSpeed>;

/// Reads the seven bytes of MB as one register, whatever they hold. Nothing for bytes of another number and for a
/// register that is none of `kRegisters`.
TREVALLO_AIRSPACE_EXPORT RegisterContent readRegister(std::string_view mb, Register number);

/// A set of registers.
class RegisterSet {
public:
    /// Whether it is in.
    constexpr bool contains(Register number) const { return (_flags >> indexOf(number) & 1U) != 0; }

    /// Whether none is.
    constexpr bool isEmpty() const { return _flags == 0; }

    /// Adds one of `kRegisters`.
    constexpr void insert(Register number) { _flags = static_cast<std::uint16_t>(_flags | 1U << indexOf(number)); }

    /// The only register of the set; none if there are none or several.
    constexpr std::optional<Register> only() const {
        for (unsigned i = 0; i < kRegisters.size(); ++i) {
            if (_flags == 1U << i) return kRegisters[i];
        }
        return std::nullopt;
    }

    /// All of them.
    RegisterNumbers numbers() const {
        RegisterNumbers numbers;
        for (unsigned i = 0; i < kRegisters.size(); ++i) {
            if ((_flags >> i & 1U) != 0) numbers.append(static_cast<std::uint8_t>(kRegisters[i]));
        }
        return numbers;
    }

    friend constexpr bool operator==(RegisterSet a, RegisterSet b) { return a._flags == b._flags; } ///< the same ones
    friend constexpr bool operator!=(RegisterSet a, RegisterSet b) { return !(a == b); }            ///< others

private:
    static constexpr unsigned indexOf(Register number) {
        unsigned index = 0;
        while (index < kRegisters.size() && kRegisters[index] != number) ++index;
        return index;
    }

    std::uint16_t _flags = 0;
};

/// Which of 1,0 1,7 2,0 3,0 4,0 5,0 and 6,0 the seven bytes of MB can be, from the bytes alone: reserved bits are 0,
/// values without their status bit are 0, and what they say can fly. A reply does not name its register, so that
/// several may fit; none fit if it holds another one, or nothing.
TREVALLO_AIRSPACE_EXPORT RegisterSet fittingRegisters(std::string_view mb);

} // namespace quorvel::airspace
