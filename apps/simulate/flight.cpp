// SPDX-License-Identifier: MIT
#include "simulate/flight.h"

#include "simulate/standard_air.h"

#include <algorithm>
#include <cmath>

namespace quorvel::simulate {

namespace {

constexpr double kGravity = 9.80665;          // m/s²
constexpr double kMetresPerSecond = 0.514444; // of a knot
constexpr double kStandardSetting = 1013.25;  // hPa
constexpr double kTransition = 6000.0;        // feet: the altitude from which on all set the standard pressure
constexpr double kFeetPerHectopascal = 27.3;

// The aircraft on its way through the air, as if there were no wind.
struct Leg {
    Pose pose;
    double turnRate; // radians per second
};

Leg legAt(Motion const& motion, double seconds) {
    double const rate = motion.airspeed * kRadiansPerKnot;
    double const turnRate = motion.turnRate * kRadians;
    auto const onwards = [&](Pose const& pose, double turn, double duration) {
        return pose.rotated(pose.rotation(rate, turn), duration);
    };
    if (turnRate == 0.0 || seconds <= motion.turnBegin) return {onwards(motion.start, 0.0, seconds), 0.0};
    auto const begun = onwards(motion.start, 0.0, motion.turnBegin);
    if (seconds < motion.turnEnd) return {onwards(begun, turnRate, seconds - motion.turnBegin), turnRate};
    auto const ended = onwards(begun, turnRate, motion.turnEnd - motion.turnBegin);
    return {onwards(ended, 0.0, seconds - motion.turnEnd), 0.0};
}

void moveInAir(FlightState& state, Profile const& profile, double seconds) {
    auto const& wind = profile.weather.wind;
    auto const leg = legAt(profile.motion, seconds);
    auto const pose = leg.pose.rotated(wind, seconds);
    double const rate = profile.motion.airspeed * kRadiansPerKnot;
    auto const blowing = crossProduct(wind, pose.up);
    auto const velocity = sum(pose.forward, rate, blowing, 1.0);
    double const groundRate = lengthOf(velocity);

    state.place = placeOf(pose.up);
    state.groundSpeed = groundRate / kRadiansPerKnot;
    state.trueHeading = bearing(state.place, pose.forward);
    state.track = groundRate > 0.0 ? bearing(state.place, velocity) : state.trueHeading;
    state.trueAirspeed = profile.motion.airspeed;
    state.windSpeed = lengthOf(blowing) / kRadiansPerKnot;
    state.windDirection = withinTurn(bearing(state.place, blowing) + 180.0);
    state.roll = std::atan(state.trueAirspeed * kMetresPerSecond * leg.turnRate / kGravity) / kRadians;
    state.trackRate = 0.0;
    if (groundRate == 0.0) return;

    // Of the curve over ground, and of north, which is elsewhere after a step to the east.
    auto const rotation = sum(pose.rotation(rate, leg.turnRate), 1.0, wind, 1.0);
    auto const acceleration = sum(crossProduct(rotation, pose.forward), rate, crossProduct(wind, velocity), 1.0);
    double const curve = product(acceleration, crossProduct(velocity, pose.up)) / (groundRate * groundRate);
    double const convergence =
        groundRate * std::sin(state.track * kRadians) * std::tan(state.place.latitude * kRadians);
    state.trackRate = (curve + convergence) / kRadians;
}

void climb(FlightState& state, Profile const& profile, double seconds) {
    auto const& motion = profile.motion;
    double const climbed = motion.startAltitude + motion.verticalRate / 60.0 * seconds;
    bool const arrived = motion.verticalRate < 0 ? climbed <= motion.finalAltitude : climbed >= motion.finalAltitude;
    state.altitude = arrived ? motion.finalAltitude : climbed;
    state.verticalRate = arrived ? 0.0 : motion.verticalRate;

    auto const& weather = profile.weather;
    double const stretched = 1.0 + weather.warmer / 288.15; // of warm air
    state.gnssHeight = state.altitude * stretched + kFeetPerHectopascal * (weather.pressureSetting - kStandardSetting) +
                       weather.geoidHeight;
    state.gnssVerticalRate = state.verticalRate * stretched;
    state.pressureSetting = state.altitude < kTransition ? weather.pressureSetting : kStandardSetting;
}

void measureAir(FlightState& state, Weather const& weather) {
    state.temperature = standardTemperature(state.altitude) + weather.warmer;
    state.pressure = standardPressure(state.altitude);
    state.mach = machOf(state.trueAirspeed, state.temperature);
    state.indicatedAirspeed = indicatedAirspeedOf(state.mach, state.pressure);
    state.magneticHeading = withinTurn(state.trueHeading - weather.variation);
}

// Seconds since the last of the moments that are `period` seconds apart.
double sinceLast(double first, double period, double seconds) {
    return seconds < first ? -1.0 : std::fmod(seconds - first, period);
}

bool isIdent(Profile const& profile, double seconds) {
    constexpr double kPeriod = 90.0;
    constexpr double kShown = 18.0; // ICAO Annex 10 Vol. IV, 3.1.2.6.10.1.3
    if (!profile.identBegin) return false;
    double const since = sinceLast(*profile.identBegin, kPeriod, seconds);
    return since >= 0.0 && since < kShown;
}

AdvisoryPhase advisoryPhase(Profile const& profile, double seconds) {
    constexpr double kPeriod = 120.0;
    constexpr double kActive = 20.0;
    constexpr double kShownAfterwards = 18.0; // ICAO Annex 10 Vol. IV, 4.3.8.4.2.2.1.3
    double const since = profile.advisory ? sinceLast(profile.advisory->first, kPeriod, seconds) : -1.0;
    if (since < 0.0 || since >= kActive + kShownAfterwards) return AdvisoryPhase::None;
    return since < kActive ? AdvisoryPhase::Active : AdvisoryPhase::Terminated;
}

} // namespace

FlightState Aircraft::at(double seconds) const {
    FlightState state{};
    moveInAir(state, _profile, seconds);
    climb(state, _profile, seconds);
    measureAir(state, _profile.weather);
    state.isIdent = isIdent(_profile, seconds);
    state.advisory = advisoryPhase(_profile, seconds);
    return state;
}

} // namespace quorvel::simulate
