// SPDX-License-Identifier: MIT
#pragma once

#include "simulate/random.h"

#include <array>
#include <cstdint>
#include <string>

namespace quorvel::simulate {

/// A place on earth in degrees, north and east positive.
struct Place {
    double latitude;
    double longitude;
};

/// What an aircraft is doing at one moment.
struct FlightState {
    Place place;
    double altitude;     ///< feet
    double groundSpeed;  ///< knots
    double track;        ///< degrees clockwise from true north, [0, 360)
    double verticalRate; ///< feet per minute, positive climbing
};

/// ADS-B equipment: none, or a transmitter of version 0, 1 or 2.
enum class Equipment : std::uint8_t { Version0, Version1, Version2, None };

/// An aircraft on a great circle at constant speed, climbing or descending to its final altitude and then
/// level; or one that taxies straight on.
class Aircraft {
public:
    /// An aircraft within `radius` nautical miles of a place, made up at random.
    Aircraft(std::uint32_t address, Place const& around, double radius, Random& random);

    std::uint32_t address() const { return _address; }        ///< 24 bits
    std::string const& callsign() const { return _callsign; } ///< up to 8 letters and digits
    std::uint32_t squawk() const { return _squawk; }          ///< four octal digits as a number
    std::uint8_t category() const { return _category; }       ///< emitter category, set A
    Equipment equipment() const { return _equipment; }
    bool onGround() const { return _onGround; }

    /// Where it is and what it does, `seconds` after the start.
    FlightState at(double seconds) const;

private:
    using Vector = std::array<double, 3>;

    std::uint32_t _address;
    std::string _callsign;
    std::uint32_t _squawk;
    std::uint8_t _category;
    Equipment _equipment;
    bool _onGround;
    Vector _start;     // unit vector from the centre of the earth
    Vector _direction; // unit vector of the movement at the start
    double _groundSpeed;
    double _startAltitude;
    double _finalAltitude;
    double _verticalRate; // until the final altitude
};

} // namespace quorvel::simulate
