// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>

namespace quorvel::modes {

/// Surface position, type codes 5 to 8 (RTCA DO-260B, 2.2.3.2.4). Always valid; a reserved movement code is
/// logged.
class TREVALLO_EXPORT ADSBSurfacePositionMessage : public ADSBMessage {
public:
    ADSBSurfacePositionMessage();
    std::string description() const override;
    bool decodeImpl() override;

    std::uint8_t movementCode() const { return _movementCode; } ///< 0 to 127
    bool movement() const { return _movement; }                 ///< whether the code carries a speed (1 to 124)
    double groundSpeed() const { return _groundSpeed; }         ///< knots, 0 to 175 (175 and faster); 0 without a speed

    bool headingValid() const { return _headingValid; } ///< ground track status bit
    double heading() const { return _heading; } ///< degrees clockwise from true north, [0, 360); 0 when not valid

    bool timeApplicability() const { return _timeApplicability; } ///< T bit: sent at an exact 0.2 s of UTC
    unsigned int cprFormat() const { return _cprFormat; }         ///< 1 even, 0 odd (the inverse of the F bit)
    unsigned int cprLatitude() const { return _cprLatitude; }     ///< 17 bits
    unsigned int cprLongitude() const { return _cprLongitude; }   ///< 17 bits

private:
    std::uint8_t _movementCode = 0;
    bool _movement = false;
    double _groundSpeed = 0.0;
    bool _headingValid = false;
    double _heading = 0.0;
    bool _timeApplicability = false;
    unsigned int _cprFormat = 0;
    unsigned int _cprLatitude = 0;
    unsigned int _cprLongitude = 0;
};

} // namespace quorvel::modes
