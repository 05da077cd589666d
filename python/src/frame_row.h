// SPDX-License-Identifier: MIT
#pragma once

#include "row_table.h"

#include <airspace/core_sky.h>
#include <airspace/sky.h>

#include <cstddef>
#include <cstdint>

namespace quorvel::modes::python {

/// What one frame reported.
struct FrameRow {
    static constexpr std::size_t kCallsignCharacters = 8;

    std::int64_t timeStamp = 0;
    char32_t callsign[kCallsignCharacters]{}; // as numpy keeps text
    double latitude = kNothing;
    double longitude = kNothing;
    double groundSpeed = kNothing;
    double track = kNothing;
    std::uint32_t icaoAddress = 0;
    float altitude = kNothingShort;
    float altitudeGnss = kNothingShort;
    float verticalRate = kNothingShort;
    float verticalRateGnss = kNothingShort;
    float indicatedAirspeed = kNothingShort;
    float trueAirspeed = kNothingShort;
    float mach = kNothingShort;
    float magneticHeading = kNothingShort;
    std::int16_t squawk = -1;
    std::int8_t downlinkFormat = -1;
    std::int8_t typeCode = -1;
    std::int8_t isOnGround = -1;
    std::uint8_t registerNumber = 0;
    std::uint8_t signalAmplitude = 0;
    std::uint8_t confidence = 0;
    bool decoded = false;
    bool tracked = false;
};

inline constexpr Column kFrameColumns[] = {
    {"timeStamp", "M8[ms]", offsetof(FrameRow, timeStamp), "of reception, UTC"},
    {"signalAmplitude", "u1", offsetof(FrameRow, signalAmplitude),
        "as the receiver has measured it, where the encoding has it"},
    {"downlinkFormat", "i1", offsetof(FrameRow, downlinkFormat), "0 to 24; -1 for a Mode A/C reply"},
    {"icaoAddress", "u4", offsetof(FrameRow, icaoAddress), "aircraft address, 24 bits"},
    {"confidence", "u1", offsetof(FrameRow, confidence),
        "how far the address can be trusted, as ModeSMessage.Confidence"},
    {"decoded", "?", offsetof(FrameRow, decoded), "whether the frame could be decoded"},
    {"tracked", "?", offsetof(FrameRow, tracked), "whether it was believed and given to an aircraft"},
    {"typeCode", "i1", offsetof(FrameRow, typeCode), "of the ADS-B message in an extended squitter, 0 to 31"},
    {"register", "u1", offsetof(FrameRow, registerNumber),
        "that a Comm-B reply surely holds, as airspace.Register: 0x40 is 4,0"},
    {"callsign", "U8", offsetof(FrameRow, callsign), "as sent, blanks included"},
    {"squawk", "i2", offsetof(FrameRow, squawk), "Mode A code as a number; oct() shows its four digits"},
    {"isOnGround", "i1", offsetof(FrameRow, isOnGround), "1 on the ground, 0 in the air"},
    {"altitude", "f4", offsetof(FrameRow, altitude), "feet, of standard pressure"},
    {"altitudeGnss", "f4", offsetof(FrameRow, altitudeGnss), "feet, above the WGS-84 ellipsoid"},
    {"latitude", "f8", offsetof(FrameRow, latitude), "degrees, north positive; of positions that passed the checks"},
    {"longitude", "f8", offsetof(FrameRow, longitude), "degrees, east positive"},
    {"groundSpeed", "f8", offsetof(FrameRow, groundSpeed), "knots"},
    {"track", "f8", offsetof(FrameRow, track), "over ground, degrees clockwise from true north"},
    {"verticalRate", "f4", offsetof(FrameRow, verticalRate), "barometric, feet per minute, positive climbing"},
    {"verticalRateGnss", "f4", offsetof(FrameRow, verticalRateGnss), "the same by GNSS, or inertial"},
    {"indicatedAirspeed", "f4", offsetof(FrameRow, indicatedAirspeed), "knots"},
    {"trueAirspeed", "f4", offsetof(FrameRow, trueAirspeed), "knots"},
    {"mach", "f4", offsetof(FrameRow, mach), "Mach number"},
    {"magneticHeading", "f4", offsetof(FrameRow, magneticHeading), "degrees clockwise from magnetic north"},
};
/// Puts what a reply of an aircraft says by the standards into its row.
void putValues(FrameRow& row, airspace::Reply const& reply, airspace::Sky const& sky, airspace::TimeMs time);

/// The same as the core library reads it.
void putValues(FrameRow& row, airspace::Reply const& reply, airspace::CoreSky const& sky, airspace::TimeMs time);

} // namespace quorvel::modes::python
