// SPDX-License-Identifier: MIT
#pragma once

#include "airspace/sky/standard_track.h"

#include <array>
#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// Brings one message into the items of its track: a visitor of `Message`, of the contents of squitters and of registers.
class TrackUpdate {
public:
    TrackUpdate(
        StandardTrack& track, Reply const& reply, TimeMs time, SkyOptions const& options, TrackOutcome& outcome);

    void operator()(ShortAirAirReply const& reply);
    void operator()(LongAirAirReply const& reply);
    void operator()(AltitudeReply const& reply);
    void operator()(IdentityReply const& reply);
    void operator()(CommBAltitudeReply const& reply);
    void operator()(CommBIdentityReply const& reply);
    void operator()(AllCallReply const& reply);
    void operator()(ExtendedSquitter const& squitter);
    template <class Other> void operator()(Other const&) {} // brings nothing

    void operator()(NoPosition const& content);
    void operator()(AirbornePosition const& content);
    void operator()(SurfacePosition const& content);
    void operator()(Identification const& content);
    void operator()(AirborneVelocity const& content);
    void operator()(TisBVelocity const& content);
    void operator()(EmergencyStatus const& content);
    void operator()(AdvisoryBroadcast const& content);
    void operator()(TargetState const& content);
    void operator()(TargetStateVersion1 const& content);
    void operator()(OperationalStatus const& content);
    void operator()(TestMessage const& content);
    void operator()(CoarsePosition const& content);

    void operator()(CommonUsageCapability const& content);
    void operator()(AircraftIdentification const& content);
    void operator()(ActiveAdvisory const& content);
    void operator()(SelectedIntention const& content);
    void operator()(RoutineMeteorology const& content);
    void operator()(HazardMeteorology const& content);
    void operator()(TrackAndTurn const& content);
    void operator()(AirReferencedState const& content);
    void operator()(HeadingAndSpeed const& content);

private:
    bool isJump(int altitudeFt) const;
    void altitude(AltitudeCode const& code, AltitudeType type = AltitudeType::Barometric);
    void flightStatus(FlightStatus status);
    void surveillanceStatus(SurveillanceStatus status);
    void groundByReply(std::optional<bool> isOnGround);
    void squawkByReply(Squawk squawk);
    void callsignByReply(Callsign const& callsign);
    void commB(std::array<std::uint8_t, 7> const& mb);
    void advisory(ResolutionAdvisory const& advisory);
    void horizontal(HorizontalVelocity const& velocity);
    void heading(double degrees);
    void position(CompactPosition const& sent, std::uint8_t typeCode, NicSupplements supplements);
    void integrity(std::uint8_t version, std::optional<std::uint8_t> nacP, std::optional<std::uint8_t> sil,
        std::optional<bool> silSupplement);

    bool isSquittering() const;
    std::optional<std::uint8_t> version() const;
    template <class Item, class Held> void byReply(Item& item, Held& held, decltype(Held::value) const& value);

    StandardTrack& _track;
    TrackItems& _items;
    Reply const& _reply;
    SkyOptions const& _options;
    TimeMs _time;
    TrackTime _now;
    Source _source = Source::ModeS;
    ExtendedSquitter const* _squitter = nullptr;
    TrackOutcome& _outcome;
};

} // namespace quorvel::airspace
