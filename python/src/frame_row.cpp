// SPDX-License-Identifier: MIT
#include "frame_row.h"
#include "reading_value.h"

#include <modes/adsb_message.h>
#include <modes/df_message.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <variant>

namespace quorvel::modes::python {

namespace {

using namespace airspace;
using airspace::Aircraft; // the core has one, too

template <class Cell, class Value> void put(Cell& cell, std::optional<Value> const& value) {
    if (value) cell = static_cast<Cell>(*value);
}

void putCallsign(FrameRow& row, std::string_view callsign) {
    std::copy_n(callsign.begin(), std::min(callsign.size(), FrameRow::kCallsignCharacters), row.callsign);
}

// What a frame of this time brought.
template <class T> std::optional<T> brought(Item<T> const& item, TimeMs time) {
    return item.updated == time && item.source != Source::Derived ? item.value : std::nullopt;
}

void putPlace(FrameRow& row, Reply const& reply, Aircraft const& aircraft) {
    if (!reply.isPositionShown) return;
    row.latitude = aircraft.position.value->latitude;
    row.longitude = aircraft.position.value->longitude;
}

// Puts values of a message by the standards: a visitor of `Message`, of the contents of squitters and of registers. What
// depends on more than the message is taken from its aircraft.
class StandardValues {
public:
    StandardValues(FrameRow& row, Reply const& reply, Sky const& sky, TimeMs time)
        : _row(row), _reply(reply), _sky(sky), _time(time) {}

    void operator()(ShortAirAirReply const& reply) { airAir(reply); }
    void operator()(LongAirAirReply const& reply) { airAir(reply); }
    void operator()(AltitudeReply const& reply) { altitude(reply); }
    void operator()(IdentityReply const& reply) { identity(reply); }
    void operator()(AllCallReply const& reply) { put(_row.isOnGround, reply.capability.isOnGround()); }

    void operator()(CommBAltitudeReply const& reply) {
        altitude(reply);
        content();
    }

    void operator()(CommBIdentityReply const& reply) {
        identity(reply);
        content();
    }

    void operator()(ExtendedSquitter const& squitter) {
        if (squitter.capability) put(_row.isOnGround, squitter.capability->isOnGround());
        std::visit(*this, squitter.content);
    }

    void operator()(NoPosition const& content) { put(_row.altitude, content.altitude.altitudeFt); }

    void operator()(AirbornePosition const& content) {
        bool const isGnss = content.altitudeType == AltitudeType::Gnss;
        put(isGnss ? _row.altitudeGnss : _row.altitude, content.altitude.altitudeFt);
        _row.isOnGround = 0;
        if (_reply.isPositionShown) putPlace(_row, _reply, aircraft());
    }

    void operator()(SurfacePosition const& content) {
        _row.isOnGround = 1;
        auto const known = aircraft();
        putPlace(_row, _reply, known);
        if (content.speed) put(_row.groundSpeed, brought(known.groundSpeed, _time));
        if (!content.trackDegrees) return;
        put(_row.track, brought(known.track, _time));
        put(_row.magneticHeading, brought(known.magneticHeading, _time));
    }

    void operator()(CoarsePosition const& content) {
        put(_row.altitude, content.altitude.altitudeFt);
        put(_row.track, content.trackDegrees);
        if (content.groundSpeed) put(_row.groundSpeed, brought(aircraft().groundSpeed, _time));
    }

    void operator()(Identification const& content) { callsign(content.callsign); }

    void operator()(AirborneVelocity const& content) {
        horizontal(content.horizontal);
        bool const isBarometric = content.verticalRateSource == VerticalRateSource::Barometric;
        put(isBarometric ? _row.verticalRate : _row.verticalRateGnss, content.verticalRateFtMin);
    }

    void operator()(TisBVelocity const& content) {
        horizontal(content.horizontal);
        put(_row.verticalRateGnss, content.verticalRateFtMin);
    }

    void operator()(EmergencyStatus const& content) { squawk(content.squawk); }
    void operator()(AircraftIdentification const& content) { callsign(content.callsign); }

    void operator()(TrackAndTurn const& content) {
        put(_row.track, content.trueTrackDegrees);
        put(_row.groundSpeed, content.groundSpeedKt);
        put(_row.trueAirspeed, content.trueAirspeedKt);
    }

    void operator()(AirReferencedState const& content) {
        put(_row.magneticHeading, content.magneticHeadingDegrees);
        put(_row.indicatedAirspeed, content.indicatedAirspeedKt);
        put(_row.mach, content.mach);
        put(_row.trueAirspeed, content.trueAirspeedKt);
        put(_row.verticalRate, content.verticalRateFtMin);
    }

    void operator()(HeadingAndSpeed const& content) {
        put(_row.magneticHeading, content.magneticHeadingDegrees);
        put(_row.indicatedAirspeed, content.indicatedAirspeedKt);
        put(_row.mach, content.mach);
        put(_row.verticalRate, content.barometricVerticalRateFtMin);
        put(_row.verticalRateGnss, content.inertialVerticalRateFtMin);
    }

    template <class Other> void operator()(Other const&) {} // says nothing that rows have

private:
    Aircraft aircraft() const { return *_sky.find(_reply, _time); }

    template <class AirAir> void airAir(AirAir const& reply) {
        put(_row.altitude, reply.altitude.altitudeFt);
        _row.isOnGround = reply.isOnGround ? 1 : 0;
    }

    template <class Surveillance> void altitude(Surveillance const& reply) {
        put(_row.altitude, reply.altitude.altitudeFt);
        put(_row.isOnGround, reply.flightStatus.isOnGround());
    }

    template <class Surveillance> void identity(Surveillance const& reply) {
        squawk(reply.squawk);
        put(_row.isOnGround, reply.flightStatus.isOnGround());
    }

    void content() {
        auto const held = surelyHeld(_reply);
        if (held) std::visit(*this, readRegister(registerBytes(_reply.message), *held));
    }

    void squawk(Squawk squawk) { _row.squawk = static_cast<std::int16_t>(squawk.code); }

    void callsign(Callsign const& callsign) {
        if (callsign.isInAlphabet()) putCallsign(_row, {callsign.characters.data(), callsign.characters.size()});
    }

    void horizontal(HorizontalVelocity const& velocity) {
        put(_row.groundSpeed, velocity.groundSpeedKt());
        put(_row.track, velocity.trackDegrees());
        bool const isTrue = velocity.airspeedType == AirspeedType::True;
        put(isTrue ? _row.trueAirspeed : _row.indicatedAirspeed, velocity.airspeedKt);
        if (velocity.headingDegrees) put(_row.magneticHeading, brought(aircraft().magneticHeading, _time));
    }

    FrameRow& _row;
    Reply const& _reply;
    Sky const& _sky;
    TimeMs _time;
};

// What a reply may bring by the core's readings.
enum Bringing : unsigned { kAltitude = 1, kSquawk = 2, kCallsign = 4, kPosition = 8, kVelocity = 16, kGround = 32 };

unsigned broughtBy(Reply const& reply) {
    switch (*reply.format) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF16:
    case DFMessage::DF20: return kAltitude | kGround;
    case DFMessage::DF5:
    case DFMessage::DF21: return kSquawk | kGround;
    default: break;
    }
    switch (reply.typeCode ? ADSBMessage::typeByCode(*reply.typeCode) : ADSBMessage::RESERVED) {
    case ADSBMessage::ACID: return kCallsign;
    case ADSBMessage::POS_AIR: return kAltitude | kPosition | kGround;
    case ADSBMessage::AIR_VEL: return kVelocity;
    default: return 0;
    }
}

} // namespace

void putValues(FrameRow& row, Reply const& reply, Sky const& sky, TimeMs time) {
    std::visit(StandardValues(row, reply, sky, time), reply.message);
}

void putValues(FrameRow& row, Reply const& reply, CoreSky const& sky, TimeMs time) {
    auto const may = broughtBy(reply);
    if (may == 0) return;
    auto const aircraft = *sky.find(reply.address, time);
    auto const putBrought = [&](Bringing what, auto& cell, auto const& item) {
        if ((may & what) != 0) put(cell, brought(item, time));
    };
    putBrought(kAltitude, row.altitude, aircraft.altitudeBaro);
    putBrought(kVelocity, row.groundSpeed, aircraft.groundSpeed);
    putBrought(kVelocity, row.track, aircraft.track);
    putBrought(kVelocity, row.verticalRate, aircraft.verticalRateBaro);
    putBrought(kGround, row.isOnGround, aircraft.groundStatus);
    if (auto const squawk = brought(aircraft.squawk, time); squawk && (may & kSquawk) != 0)
        row.squawk = static_cast<std::int16_t>(squawk->code);
    if (auto const callsign = brought(aircraft.callsign, time); callsign && (may & kCallsign) != 0)
        putCallsign(row, *callsign);
    if ((may & kPosition) != 0) putPlace(row, reply, aircraft);
}

} // namespace quorvel::modes::python
