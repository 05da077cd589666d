// SPDX-License-Identifier: MIT
#include "inspect/known_states.h"

#include <limits>
#include <string_view>
#include <type_traits>
#include <variant>

namespace quorvel::inspect {

namespace {

constexpr double kMotionSeconds = 15.0;     // an aircraft in a turn has another track then
constexpr double kSelectionSeconds = 300.0; // what a pilot selects stays
constexpr double kForever = std::numeric_limits<double>::infinity();

template <class Item, class Value> void note(Item& item, std::optional<Value> const& value, double seconds) {
    if (value) item.set(*value, seconds);
}

} // namespace

// Takes over what one message says.
class KnownStates::Learner {
public:
    Learner(Aircraft& aircraft, double seconds) : _aircraft(aircraft), _seconds(seconds) {}

    template <class Reply> void operator()(Reply const& reply) {
        if constexpr (std::is_same_v<Reply, airspace::ExtendedSquitter>) {
            std::visit([&learner = *this](auto const& content) { learner.learn(content); }, reply.content);
        } else if constexpr (requires { reply.altitude; }) {
            learnAltitude(reply.altitude);
        }
    }

    void operator()(std::monostate) {}

    // Only what the bits alone and all that is known agree on.
    void learnRegister(std::string_view mb) {
        auto const only = airspace::fittingRegisters(mb).only();
        if (!only) return;
        auto const choice = airspace::chooseRegister(mb, stateOf(_aircraft, _seconds));
        if (choice.isUnsure || choice.best != only) return;
        std::visit([this](auto const& content) { learn(content); }, airspace::readRegister(mb, *only));
    }

private:
    template <class Other> void learn(Other const&) {}

    void learn(airspace::NoPosition const& content) { learnAltitude(content.altitude); }

    void learn(airspace::AirbornePosition const& content) {
        if (content.altitudeType == airspace::AltitudeType::Barometric) learnAltitude(content.altitude);
    }

    void learn(airspace::Identification const& content) { _aircraft.callsign.set(content.callsign, _seconds); }

    void learn(airspace::AirborneVelocity const& content) {
        auto const& velocity = content.horizontal;
        note(_aircraft.groundSpeedKt, velocity.groundSpeedKt(), _seconds);
        note(_aircraft.trackDegrees, velocity.trackDegrees(), _seconds);
        note(_aircraft.verticalRateFtMin, content.verticalRateFtMin, _seconds);
        bool const isTrue = velocity.airspeedType == airspace::AirspeedType::True;
        note(isTrue ? _aircraft.trueAirspeedKt : _aircraft.indicatedAirspeedKt, velocity.airspeedKt, _seconds);
    }

    void learn(airspace::TargetState const& content) {
        note(_aircraft.selectedAltitudeFt, content.selectedAltitudeFt, _seconds);
        note(_aircraft.pressureSettingHpa, content.pressureSettingHpa, _seconds);
    }

    void learn(airspace::CommonUsageCapability const& content) { _aircraft.capability.set(content, _seconds); }

    void learn(airspace::SelectedIntention const& content) {
        note(_aircraft.selectedAltitudeFt, content.controlPanelAltitudeFt, _seconds);
        note(_aircraft.pressureSettingHpa, content.pressureSettingHpa, _seconds);
    }

    void learn(airspace::TrackAndTurn const& content) {
        note(_aircraft.trackDegrees, content.trueTrackDegrees, _seconds);
        note(_aircraft.groundSpeedKt, content.groundSpeedKt, _seconds);
        note(_aircraft.trueAirspeedKt, content.trueAirspeedKt, _seconds);
    }

    void learn(airspace::HeadingAndSpeed const& content) {
        note(_aircraft.headingDegrees, content.magneticHeadingDegrees, _seconds);
        note(_aircraft.indicatedAirspeedKt, content.indicatedAirspeedKt, _seconds);
        note(_aircraft.mach, content.mach, _seconds);
        note(_aircraft.verticalRateFtMin, content.barometricVerticalRateFtMin, _seconds);
    }

    void learnAltitude(airspace::AltitudeCode const& code) { note(_aircraft.altitudeFt, code.altitudeFt, _seconds); }

    Aircraft& _aircraft;
    double _seconds;
};

void KnownStates::take(airspace::Message const& message, double seconds) {
    auto const* const header = airspace::headerOf(message);
    if (header == nullptr || header->addressKind != airspace::AddressKind::Icao) return;
    auto const* const squitter = std::get_if<airspace::ExtendedSquitter>(&message);
    auto const* const allCall = std::get_if<airspace::AllCallReply>(&message);
    if ((squitter != nullptr && !squitter->isIntact()) || (allCall != nullptr && !allCall->isIntact)) return;
    bool const isNamed = squitter != nullptr || allCall != nullptr;
    // Damage does not give the same wrong address twice.
    if (!isNamed && !isHeard(header->address) && _doubtful.insert(header->address).second) return;
    Learner learner(_aircraft[header->address], seconds);
    std::visit(learner, message);
    if (auto const mb = airspace::registerBytes(message); !mb.empty()) learner.learnRegister(mb);
}

airspace::KnownState KnownStates::stateOf(Aircraft const& aircraft, double seconds) {
    airspace::KnownState state;
    state.altitudeFt = aircraft.altitudeFt.at(seconds, kMotionSeconds);
    state.groundSpeedKt = aircraft.groundSpeedKt.at(seconds, kMotionSeconds);
    state.trackDegrees = aircraft.trackDegrees.at(seconds, kMotionSeconds);
    state.verticalRateFtMin = aircraft.verticalRateFtMin.at(seconds, kMotionSeconds);
    state.headingDegrees = aircraft.headingDegrees.at(seconds, kMotionSeconds);
    state.indicatedAirspeedKt = aircraft.indicatedAirspeedKt.at(seconds, kMotionSeconds);
    state.trueAirspeedKt = aircraft.trueAirspeedKt.at(seconds, kMotionSeconds);
    state.mach = aircraft.mach.at(seconds, kMotionSeconds);
    state.selectedAltitudeFt = aircraft.selectedAltitudeFt.at(seconds, kSelectionSeconds);
    state.pressureSettingHpa = aircraft.pressureSettingHpa.at(seconds, kSelectionSeconds);
    state.callsign = aircraft.callsign.at(seconds, kForever);
    state.capability = aircraft.capability.at(seconds, kForever);
    return state;
}

airspace::KnownState KnownStates::at(std::uint32_t address, double seconds) const {
    auto const found = _aircraft.find(address);
    return found == _aircraft.end() ? airspace::KnownState{} : stateOf(found->second, seconds);
}

bool KnownStates::isHeard(std::uint32_t address) const { return _aircraft.contains(address); }

} // namespace quorvel::inspect
