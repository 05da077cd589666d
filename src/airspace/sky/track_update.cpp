// SPDX-License-Identifier: MIT
#include "airspace/sky/track_update.h"

#include <cstdlib>
#include <variant>

namespace quorvel::airspace {

namespace {

constexpr TrackTime kSpeedMs = 10'000; // for which a ground speed tells how far positions can be apart

Source sourceOf(SquitterOrigin origin) {
    switch (origin) {
    case SquitterOrigin::Aircraft: return Source::AdsB;
    case SquitterOrigin::TisB: return Source::TisB;
    case SquitterOrigin::Rebroadcast: return Source::AdsR;
    }
    return Source::None;
}

// The middle of the range that a code stands for; the lower end of one without an upper.
std::optional<double> speedOf(std::optional<SpeedRange> const& range) {
    if (!range) return std::nullopt;
    return range->upperKt ? (range->lowerKt + *range->upperKt) / 2 : range->lowerKt;
}

} // namespace

TrackUpdate::TrackUpdate(
    StandardTrack& track, Reply const& reply, TimeMs time, SkyOptions const& options, TrackOutcome& outcome)
    : _track(track)
    , _items(track._items)
    , _reply(reply)
    , _options(options)
    , _time(time)
    , _now(track.trackTimeOf(time))
    , _outcome(outcome) {
    _track._heardFrom = _source;
}

bool TrackUpdate::isSquittering() const { return _track._squittered != 0; }

std::optional<std::uint8_t> TrackUpdate::version() const {
    return _items.version.isThere() ? std::optional(_items.version.value) : std::nullopt;
}

// A reply that agrees with what is known needs no other; nor does the first of an aircraft that does not squitter.
template <class Item, class Held>
void TrackUpdate::byReply(Item& item, Held& held, decltype(Held::value) const& value) {
    bool const isNews = item.isThere() ? !(item.value == value) : isSquittering();
    if (isNews && !held.confirms(value, _now)) return;
    item.offer(value, _source, _now);
}

void TrackUpdate::groundByReply(std::optional<bool> isOnGround) {
    if (isOnGround) byReply(_items.isOnGround, _track._isOnGround, *isOnGround);
}

void TrackUpdate::squawkByReply(Squawk squawk) { byReply(_items.squawk, _track._squawk, squawk.code); }

void TrackUpdate::callsignByReply(Callsign const& callsign) {
    if (callsign.isInAlphabet()) byReply(_items.callsign, _track._callsign, callsign.characters);
}

// A jump by which no aircraft climbs is a damaged reply, or another aircraft's.
bool TrackUpdate::isJump(int altitudeFt) const {
    constexpr TrackTime period = 4'000;
    constexpr int difference = 150;
    auto const last = _items.altitudeFt.fresh(_now, period);
    return _options.altitudeCheck && last && std::abs(*last - altitudeFt) > difference;
}

void TrackUpdate::altitude(AltitudeCode const& code, AltitudeType type) {
    if (type == AltitudeType::Gnss) {
        _items.gnssHeightFt.offer(code.altitudeFt, _source, _now);
    } else if (code.altitudeFt && !isJump(*code.altitudeFt)) {
        _items.altitudeFt.offer(*code.altitudeFt, _source, _now);
    }
}

void TrackUpdate::flightStatus(FlightStatus status) {
    constexpr std::uint8_t assigned = 6; // codes
    if (status.code >= assigned) return;
    groundByReply(status.isOnGround());
    _items.alert.offer(status.hasAlert(), _source, _now);
    _items.ident.offer(status.hasIdent(), _source, _now);
}

// An alert goes before an ident, and hides it: RTCA DO-260B, 2.2.3.2.3.2.
void TrackUpdate::surveillanceStatus(SurveillanceStatus status) {
    bool const isAlert = status == SurveillanceStatus::PermanentAlert || status == SurveillanceStatus::TemporaryAlert;
    _items.alert.offer(isAlert, _source, _now);
    if (!isAlert) _items.ident.offer(status == SurveillanceStatus::Ident, _source, _now);
}

void TrackUpdate::advisory(ResolutionAdvisory const& advisory) {
    _items.advisory.offer(HeldAdvisory{advisory}, _source, _now);
}

void TrackUpdate::operator()(ShortAirAirReply const& reply) {
    altitude(reply.altitude);
    groundByReply(reply.isOnGround);
}

void TrackUpdate::operator()(LongAirAirReply const& reply) {
    altitude(reply.altitude);
    groundByReply(reply.isOnGround);
    if (reply.advisory) advisory(*reply.advisory);
}

void TrackUpdate::operator()(AltitudeReply const& reply) {
    altitude(reply.altitude);
    flightStatus(reply.flightStatus);
}

void TrackUpdate::operator()(IdentityReply const& reply) {
    squawkByReply(reply.squawk);
    flightStatus(reply.flightStatus);
}

void TrackUpdate::operator()(CommBAltitudeReply const& reply) {
    altitude(reply.altitude);
    flightStatus(reply.flightStatus);
    commB(reply.mb);
}

void TrackUpdate::operator()(CommBIdentityReply const& reply) {
    squawkByReply(reply.squawk);
    flightStatus(reply.flightStatus);
    commB(reply.mb);
}

void TrackUpdate::operator()(AllCallReply const& reply) { groundByReply(reply.capability.isOnGround()); }

void TrackUpdate::operator()(ExtendedSquitter const& squitter) {
    _squitter = &squitter;
    _source = _track._heardFrom = sourceOf(squitter.origin);
    if (_source == Source::AdsB) _track._squittered = _now;
    bool const hasPosition = std::holds_alternative<AirbornePosition>(squitter.content) ||
                             std::holds_alternative<SurfacePosition>(squitter.content);
    if (squitter.capability && !hasPosition) // a position says by its kind whether it is on the ground
        _items.isOnGround.offer(squitter.capability->isOnGround(), _source, _now);
    std::visit(*this, squitter.content);
}

void TrackUpdate::position(CompactPosition const& sent, std::uint8_t typeCode, NicSupplements supplements) {
    if (!_items.position.admits(_source, _now)) return;
    auto const known = version();
    auto const containment = navigationIntegrity(typeCode, known.value_or(0), supplements);
    PositionReport report{sent, _time, _source, _reply.repairs > 0, {}, containment.radiusMetres};
    if (auto const speed = _items.groundSpeedKt.fresh(_now, kSpeedMs)) report.groundSpeedKt = *speed;
    using Verdict = PositionTracker::Verdict;
    auto const verdict = _track._positions.take(report, _options.positions);
    _outcome.position = verdict;
    if (verdict != Verdict::Given && verdict != Verdict::Believed) return;
    _items.position.offer(PackedPlace::of(*_track._positions.place()), _source, _now);
    _items.nic.offer(containment.nic, _source, _now);
    _items.radiusMetres.offer(static_cast<float>(containment.radiusMetres.value_or(0.0)), _source, _now);
}

void TrackUpdate::operator()(NoPosition const& content) {
    surveillanceStatus(content.surveillanceStatus);
    altitude(content.altitude);
}

void TrackUpdate::operator()(AirbornePosition const& content) {
    surveillanceStatus(content.surveillanceStatus);
    altitude(content.altitude, content.altitudeType);
    _items.isOnGround.offer(false, _source, _now);
    auto supplements = _track._supplements;
    supplements.b = content.nicSupplementB && _source == Source::AdsB;
    position(content.position, *_squitter->typeCode, supplements);
}

void TrackUpdate::operator()(SurfacePosition const& content) {
    _items.isOnGround.offer(true, _source, _now);
    _items.groundSpeedKt.offer(speedOf(speedOfMovement(content.movement, version().value_or(0))), _source, _now);
    if (content.trackDegrees) {
        if (_items.isTrackHeading.isThere() && _items.isTrackHeading.value)
            heading(*content.trackDegrees);
        else
            _items.trackDegrees.offer(content.trackDegrees, _source, _now);
    }
    position(content.position, *_squitter->typeCode, _track._supplements);
}

void TrackUpdate::operator()(CoarsePosition const& content) {
    surveillanceStatus(content.surveillanceStatus);
    altitude(content.altitude);
    _items.groundSpeedKt.offer(speedOf(content.groundSpeed), _source, _now);
    _items.trackDegrees.offer(content.trackDegrees, _source, _now);
}

void TrackUpdate::operator()(Identification const& content) {
    if (content.callsign.isInAlphabet()) _items.callsign.offer(content.callsign.characters, _source, _now);
    _items.category.offer(PackedCategory{content.category.set, content.category.number}, _source, _now);
}

// Without an operational status headings are magnetic, as in version 0. It comes every few seconds: an aircraft that has
// been heard for a shorter time may have a later version, and true headings.
void TrackUpdate::heading(double degrees) {
    constexpr TrackTime statusMs = 10'000;
    if (!_items.isMagneticNorth.isThere() && _now < statusMs) return;
    bool const isTrue = _items.isMagneticNorth.isThere() && !_items.isMagneticNorth.value;
    auto& item = isTrue ? _items.trueHeadingDegrees : _items.magneticHeadingDegrees;
    item.offer(static_cast<float>(degrees), _source, _now);
}

void TrackUpdate::horizontal(HorizontalVelocity const& velocity) {
    _items.groundSpeedKt.offer(velocity.groundSpeedKt(), _source, _now);
    _items.trackDegrees.offer(velocity.trackDegrees(), _source, _now);
    if (velocity.headingDegrees) heading(*velocity.headingDegrees);
    if (velocity.airspeedType == AirspeedType::True)
        _items.trueAirspeedKt.offer(velocity.airspeedKt, _source, _now);
    else
        _items.indicatedAirspeedKt.offer(velocity.airspeedKt, _source, _now);
}

void TrackUpdate::operator()(AirborneVelocity const& content) {
    horizontal(content.horizontal);
    bool const isBarometric = content.verticalRateSource == VerticalRateSource::Barometric;
    auto& rate = isBarometric ? _items.barometricRateFtMin : _items.geometricRateFtMin;
    rate.offer(content.verticalRateFtMin, _source, _now);
    _items.gnssMinusBarometricFt.offer(content.gnssMinusBarometricFt, _source, _now);
    _items.nacV.offer(content.nacV, _source, _now);
}

void TrackUpdate::operator()(TisBVelocity const& content) {
    horizontal(content.horizontal);
    _items.geometricRateFtMin.offer(content.verticalRateFtMin, _source, _now);
    _items.gnssMinusBarometricFt.offer(content.gnssMinusBarometricFt, _source, _now);
    _items.nacP.offer(content.nacP, _source, _now);
    _items.nacV.offer(content.nacV, _source, _now);
}

void TrackUpdate::operator()(EmergencyStatus const& content) {
    _items.emergency.offer(content.emergency, _source, _now);
    _items.squawk.offer(content.squawk.code, _source, _now);
}

// Since version 2.
void TrackUpdate::operator()(AdvisoryBroadcast const& content) {
    if (version().value_or(2) >= 2) advisory(content.advisory);
}

void TrackUpdate::operator()(TestMessage const& content) {
    if (version() == 1) _items.squawk.offer(content.squawk.code, _source, _now);
}

void TrackUpdate::integrity(std::uint8_t version, std::optional<std::uint8_t> nacP, std::optional<std::uint8_t> sil,
    std::optional<bool> silSupplement) {
    _items.nacP.offer(nacP, _source, _now);
    if (sil) _items.sil.offer(PackedSil{*sil, sourceIntegrity(*sil, version, silSupplement).basis}, _source, _now);
}

void TrackUpdate::operator()(TargetState const& content) {
    if (version().value_or(2) < 2) return;
    bool const isFlightManagement = content.altitudeSource == SelectedAltitudeSource::FlightManagement;
    auto& selected = isFlightManagement ? _items.flightManagementAltitudeFt : _items.controlPanelAltitudeFt;
    selected.offer(content.selectedAltitudeFt, _source, _now);
    _items.selectedHeadingDegrees.offer(content.selectedHeadingDegrees, _source, _now);
    _items.pressureSettingHpa.offer(content.pressureSettingHpa, _source, _now);
    integrity(2, content.nacP, content.sil, content.silSupplement);
    _items.isNicBaroChecked.offer(content.isNicBaroChecked, _source, _now);
    PackedModes modes;
    modes.set(PackedModes::Tcas, content.isTcasOperational);
    if (content.modes) {
        modes.set(PackedModes::Autopilot, content.modes->isEngaged);
        modes.set(PackedModes::Vnav, content.modes->isVnav);
        modes.set(PackedModes::AltitudeHold, content.modes->isAltitudeHold);
        modes.set(PackedModes::Approach, content.modes->isApproach);
        modes.set(PackedModes::Lnav, content.modes->isLnav);
    }
    _items.modes.offer(modes, _source, _now);
}

void TrackUpdate::operator()(TargetStateVersion1 const& content) {
    constexpr std::uint8_t byControlPanel = 1;
    constexpr std::uint8_t byFlightManagement = 3;
    if (version() != 1) return; // in version 0 it had another meaning
    if (content.verticalDataSource == byControlPanel)
        _items.controlPanelAltitudeFt.offer(content.targetAltitudeFt, _source, _now);
    if (content.verticalDataSource == byFlightManagement)
        _items.flightManagementAltitudeFt.offer(content.targetAltitudeFt, _source, _now);
    if (content.horizontalDataSource == byControlPanel && !content.isDirectionTrack)
        _items.selectedHeadingDegrees.offer(content.targetDirectionDegrees, _source, _now);
    integrity(1, content.nacP, content.sil, std::nullopt);
    _items.isNicBaroChecked.offer(content.isNicBaroChecked, _source, _now);
    _items.emergency.offer(static_cast<EmergencyState>(content.emergency), _source, _now);
}

void TrackUpdate::operator()(OperationalStatus const& content) {
    if (!_items.version.offer(content.version, _source, _now)) return;
    _track._supplements.a = content.nicSupplementA.value_or(false);
    if (content.nicSupplementC) _track._supplements.c = *content.nicSupplementC;
    integrity(content.version, content.nacP, content.sil, content.silSupplement);
    _items.nacV.offer(content.nacV, _source, _now);
    _items.sda.offer(content.sda, _source, _now);
    _items.gva.offer(content.gva, _source, _now);
    _items.isNicBaroChecked.offer(content.isNicBaroChecked, _source, _now);
    _items.isMagneticNorth.offer(content.isMagneticNorth, _source, _now);
    _items.isTrackHeading.offer(content.isTrackHeading, _source, _now);
    _items.ident.offer(content.isIdentActive, _source, _now);
}

} // namespace quorvel::airspace
