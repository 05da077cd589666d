// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

namespace quorvel::modes {

/// Airborne velocity, type code 19 (RTCA DO-260B, 2.2.3.2.6). Valid for the ground speed subtypes; airspeed
/// subtypes are recognised and logged, and deliberately not decoded.
class TREVALLO_EXPORT ADSBAirborneVelocityMessage : public ADSBMessage {
public:
    /// The subtype: what the velocity is measured against. The supersonic ones have steps of 4 instead of 1
    /// knot.
    enum VelocityType : std::uint32_t {
        GROUND_SPEED = 1,         ///< over ground
        GROUND_SPEED_SUPER_SONIC, ///< over ground, steps of 4 knots
        AIR_SPEED,                ///< through the air; not decoded
        AIR_SPEED_SUPER_SONIC,    ///< through the air, steps of 4 knots; not decoded
    };

    /// What the vertical rate is measured by: air pressure or satellite navigation.
    enum VerticalRateSource : std::uint32_t { BARO = 0, GNSS = 1 };

    ADSBAirborneVelocityMessage();
    std::string description() const override;
    bool decodeImpl() override;

    VelocityType velocityType() const { return _velocityType; } ///< `GROUND_SPEED` before a decode
    double groundSpeed() const { return _groundSpeed; }         ///< knots; 0 when a component is not available
    double heading() const { return _heading; } ///< track, degrees clockwise from true north, [0, 360); 0 without speed

    VerticalRateSource verticalRateSource() const { return _verticalRateSource; } ///< `BARO` before a decode

    /// Feet per minute, positive climbing; 0 without information. Both parts of the rate are taken from
    /// payload byte 4 (deliberate).
    int verticalRate() const { return _verticalRate; }

private:
    VelocityType _velocityType = GROUND_SPEED;
    double _groundSpeed = 0.0;
    double _heading = 0.0;
    VerticalRateSource _verticalRateSource = BARO;
    int _verticalRate = 0;
};

/// As a version 0 transmitter sends it.
class TREVALLO_EXPORT ADSBAirborneVelocityMessageV0 : public ADSBAirborneVelocityMessage {
public:
    std::string description() const override;
    bool decodeImpl() override;

    /// Navigation uncertainty category for velocity; its two lower bits, 0 to 3 (deliberate).
    std::uint8_t nucr() const { return _nucr; }

private:
    std::uint8_t _nucr = 0;
};

/// As a version 1 transmitter sends it.
class TREVALLO_EXPORT ADSBAirborneVelocityMessageV1 : public ADSBAirborneVelocityMessage {};

/// As a version 2 transmitter sends it.
class TREVALLO_EXPORT ADSBAirborneVelocityMessageV2 : public ADSBAirborneVelocityMessage {};

} // namespace quorvel::modes
