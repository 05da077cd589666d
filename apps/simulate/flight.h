// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/pose.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvel::simulate {

/// What the address of an aircraft is.
enum class AddressKind : std::uint8_t {
    Icao,      ///< that of its transponder
    NonIcao,   ///< a transmitter's own choice
    TrackFile, ///< of a ground station: Mode A code and track number
    TisB,      ///< of a ground station, its own choice
};

/// ADS-B equipment: none, or a transmitter of version 0, 1 or 2.
enum class Equipment : std::uint8_t { Version0, Version1, Version2, None };

/// What sends the squitters of the aircraft itself.
enum class Transmitter : std::uint8_t { None, Transponder, Device };

/// What a ground station sends of it.
enum class GroundStation : std::uint8_t { None, TisB, CoarseTisB, Rebroadcast };

/// What its velocity squitters tell.
enum class VelocityReport : std::uint8_t { OverGround, TrueAirspeed, IndicatedAirspeed };

/// How well its position is known, and the bits that say so.
struct PositionQuality {
    unsigned typeCode;
    bool supplementA, supplementB, supplementC;
    unsigned category; ///< NUCp of version 0, NIC of the others
    double radius;     ///< of containment, metres; 0 where there is no bound
};

/// The other categories of quality, as numbers.
struct Accuracies {
    unsigned position = 8;            ///< NACp
    unsigned velocity = 2;            ///< NACv; NUCr of version 0
    unsigned velocityOnSurface = 0;   ///< NACv of the status on the surface
    unsigned sourceIntegrity = 2;     ///< SIL
    bool isIntegrityBySample = false; ///< SIL supplement
    unsigned designAssurance = 0;     ///< SDA
    unsigned vertical = 0;            ///< GVA; BAQ of version 1
    bool isBarometerChecked = true;   ///< NICbaro
};

/// What it tells of its equipment.
struct Capabilities {
    bool hasAcas = false; ///< in status squitters
    bool receivesSquitters = false;
    bool receivesUat = false;
    bool reportsAirVelocity = false;
    bool reportsTargetState = false;
    bool isIfrCapable = false;
    bool hasSingleAntenna = false;
    bool isLowPower = false;
    bool isHeadingOnSurface = true; ///< surface positions tell the heading
    bool isMagneticNorth = false;   ///< headings are magnetic
    unsigned lengthWidth = 0;
    unsigned antennaOffset = 0;
    unsigned sensitivity = 6;      ///< of ACAS
    unsigned replyInformation = 3; ///< kind of ACAS
    bool tellsHeightDifference = false;
    bool isVerticalRateGnss = true;
    bool hasHundredFootSteps = false; ///< its altimeter
    bool tellsInertialRate = true;
    bool tellsOperationalStatus = true;
    bool tellsModeACode = false; ///< in test messages of version 1
};

/// What the pilot has selected.
struct Selection {
    double altitude; ///< feet
    double heading;  ///< degrees, magnetic or true as `Capabilities` has it
    bool isFlightManagement, isVnav, isAltitudeHold, isApproach, isLnav, isAutopilot;
};

/// The air around it.
struct Weather {
    Vector wind{};                    ///< the rotation of the air about the centre of the earth, radians per second
    double warmer = 0.0;              ///< kelvin above the standard atmosphere
    double pressureSetting = 1013.25; ///< QNH, hPa
    double variation = 0.0;           ///< degrees from true to magnetic north, to the east positive
    double geoidHeight = 0.0;         ///< feet above the ellipsoid
    unsigned turbulence = 0;          ///< 0 none to 3 severe
    double humidity = 0.0;            ///< per cent
};

/// How it moves: through the air at constant speed, straight on but for one turn, climbing or descending to a final
/// altitude.
struct Motion {
    Pose start;
    double airspeed;                       ///< true, knots
    double startAltitude, finalAltitude;   ///< pressure altitude, feet
    double verticalRate;                   ///< feet per minute, until the final altitude
    double turnRate = 0.0;                 ///< degrees per second, to the right positive
    double turnBegin = 0.0, turnEnd = 0.0; ///< seconds
};

/// A resolution advisory that comes and goes.
struct Advisory {
    double first;            ///< seconds
    std::uint16_t active;    ///< ARA
    std::uint8_t complement; ///< RAC
    bool hasMultipleThreats;
    std::uint32_t threat;            ///< address; 0: the three values that follow
    double altitude, range, bearing; ///< feet, nautical miles, degrees
};

/// What does not change of an aircraft.
struct Profile {
    std::uint32_t address; ///< 24 bits
    AddressKind addressKind = AddressKind::Icao;
    std::string callsign;     ///< up to 8 letters and digits
    std::string registration; ///< up to 7
    std::uint32_t squawk;     ///< four octal digits as a number
    char categorySet = 'A';   ///< of the emitter category
    unsigned category;        ///< in the set
    Equipment equipment;
    Transmitter transmitter = Transmitter::Transponder;
    GroundStation groundStation = GroundStation::None;
    bool hasModeS = true; ///< answers interrogations
    bool onGround = false;
    unsigned emergency = 0;           ///< emergency state
    std::optional<double> identBegin; ///< seconds; the pilot presses the button again and again
    std::optional<Advisory> advisory;
    std::optional<Selection> selection;
    VelocityReport velocityReport = VelocityReport::OverGround;
    PositionQuality quality;
    Accuracies accuracies;
    Capabilities capabilities;
    std::vector<unsigned> registers; ///< that radars ask for, in turn: 0x40 for 4,0
    Weather weather;
    Motion motion;
};

enum class AdvisoryPhase : std::uint8_t { None, Active, Terminated };

/// What an aircraft is doing at one moment, and what the air around it does.
struct FlightState {
    Place place;
    double altitude;     ///< pressure altitude, feet
    double groundSpeed;  ///< knots
    double track;        ///< degrees clockwise from true north, [0, 360)
    double verticalRate; ///< by pressure, feet per minute, positive climbing

    double gnssHeight;        ///< above the ellipsoid, feet
    double gnssVerticalRate;  ///< feet per minute
    double trackRate;         ///< degrees per second, to the right positive
    double roll;              ///< degrees, right wing down positive
    double trueHeading;       ///< degrees, [0, 360)
    double magneticHeading;   ///< degrees, [0, 360)
    double trueAirspeed;      ///< knots
    double indicatedAirspeed; ///< knots; below the speed of sound alone
    double mach;
    double windSpeed;       ///< knots
    double windDirection;   ///< where it comes from, degrees from true north
    double temperature;     ///< degrees Celsius
    double pressure;        ///< hPa
    double pressureSetting; ///< of the altimeter, hPa
    bool isIdent;           ///< special position identification
    AdvisoryPhase advisory;
};

/// An aircraft that flies as its profile says.
class Aircraft {
public:
    explicit Aircraft(Profile profile) : _profile(std::move(profile)) {}

    Profile const& profile() const { return _profile; }
    std::uint32_t address() const { return _profile.address; }
    std::string const& callsign() const { return _profile.callsign; }
    std::uint32_t squawk() const { return _profile.squawk; }
    unsigned category() const { return _profile.category; }
    Equipment equipment() const { return _profile.equipment; }
    bool onGround() const { return _profile.onGround; }

    /// The number of the version of its transmitter; of one that has none, 3.
    unsigned version() const { return static_cast<unsigned>(_profile.equipment); }

    /// Where it is and what it does, `seconds` after the start.
    FlightState at(double seconds) const;

private:
    Profile _profile;
};

} // namespace quorvel::simulate
