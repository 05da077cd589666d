// SPDX-License-Identifier: MIT
#include "airspace/sky/derived_items.h"

#include "airspace/readings/standard_atmosphere.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvel::airspace {

namespace {

constexpr TrackTime kTogetherMs = 10'000;    // inputs of one value are of the last seconds
constexpr TrackTime kTemperatureMs = 60'000; // which changes slowly
constexpr double kSlowestMach = 0.4;         // below, steps of speed and Mach number are degrees of temperature
constexpr double kKelvin = 273.15;
constexpr double kSeaLevelKelvin = 288.15;
constexpr double kDegreesPerRadian = 180.0 / std::numbers::pi;

double radians(double degrees) { return degrees / kDegreesPerRadian; }

double fullTurn(double degrees) {
    auto const turned = std::fmod(degrees, 360.0);
    return turned < 0.0 ? turned + 360.0 : turned;
}

using Value = std::optional<DerivedValue>;

template <class Item> Value reported(Item const& item, TrackTime now, TrackTime within = kTogetherMs) {
    if (!item.isFresh(now, within)) return std::nullopt;
    return DerivedValue{static_cast<double>(item.value), item.updated};
}

// The value of a function of values that are all there.
template <class Function, class... Values> Value derived(Function const& function, Values const&... values) {
    if (!(values && ...)) return std::nullopt;
    return DerivedValue{function(values->value...), std::min({values->updated...})};
}

Value firstOf(Value const& one, Value const& other) { return one ? one : other; }

// What is known of the air around an aircraft.
struct AirState {
    Value mach, trueAirspeed, temperature; // as reported
    Value altitude, indicatedAirspeed;
};

Value derivedMach(AirState const& air) {
    auto const byPressure = derived(machOfIndicatedAirspeed, air.indicatedAirspeed, air.altitude);
    if (byPressure && byPressure->value < 1.0)
        return byPressure; // a pitot tube in faster flow measures another pressure
    auto const byStandard = [](double speed, double altitude) { return speed / standardSoundKt(altitude); };
    return derived(byStandard, air.trueAirspeed, air.altitude);
}

Value derivedTrueAirspeed(AirState const& air, Value const& mach) {
    auto const byTemperature =
        derived([](double number, double temperature) { return number * soundKt(temperature); }, mach, air.temperature);
    auto const byStandard =
        derived([](double number, double altitude) { return number * standardSoundKt(altitude); }, mach, air.altitude);
    return firstOf(byTemperature, byStandard);
}

Value derivedTemperature(AirState const& air) {
    if (!air.mach || air.mach->value < kSlowestMach) return std::nullopt;
    return derived(temperatureOfSpeeds, air.trueAirspeed, air.mach);
}

void deriveAir(AirState const& air, DerivedItems& items) {
    if (!air.mach) items.mach = derivedMach(air);
    auto const mach = firstOf(air.mach, items.mach);
    if (!air.trueAirspeed) items.trueAirspeedKt = derivedTrueAirspeed(air, mach);
    if (!air.temperature) items.temperatureCelsius = derivedTemperature(air);
    auto const total = [](double temperature, double number) {
        return (temperature + kKelvin) * (1.0 + 0.2 * number * number) - kKelvin;
    };
    items.totalTemperatureCelsius = derived(total, firstOf(air.temperature, items.temperatureCelsius), mach);
}

void deriveWind(TrackItems const& items, TrackTime now, Value const& trueAirspeed,
    std::optional<double> variationDegrees, DerivedItems& derivedItems) {
    auto heading = reported(items.trueHeadingDegrees, now);
    if (!heading && variationDegrees) {
        auto const turned = [&](double magnetic) { return magnetic + *variationDegrees; };
        heading = derived(turned, reported(items.magneticHeadingDegrees, now));
    }
    auto const groundSpeed = reported(items.groundSpeedKt, now);
    auto const track = reported(items.trackDegrees, now);
    auto const speed = [](auto... all) { return windOf(all...).speedKt; };
    auto const direction = [](auto... all) { return windOf(all...).directionDegrees; };
    derivedItems.windSpeedKt = derived(speed, trueAirspeed, heading, groundSpeed, track);
    derivedItems.windDirectionDegrees = derived(direction, trueAirspeed, heading, groundSpeed, track);
}

void derivePlace(TrackItems const& items, std::optional<Place> const& receiver, DerivedItems& derivedItems) {
    if (!receiver || !items.position.isThere()) return;
    auto const place = items.position.value.place();
    derivedItems.distanceNm = {distanceNm(*receiver, place), items.position.updated};
    derivedItems.bearingDegrees = {bearingDegrees(*receiver, place), items.position.updated};
}

} // namespace

double machOfIndicatedAirspeed(double indicatedAirspeedKt, double altitudeFt) {
    auto const impact = impactPressureRatio(indicatedAirspeedKt / kSoundAtSeaLevelKt);
    auto const ratio = impact / standardPressureRatio(altitudeFt);
    return std::sqrt(5.0 * (std::pow(ratio + 1.0, 2.0 / 7.0) - 1.0));
}

double temperatureOfSpeeds(double trueAirspeedKt, double mach) {
    auto const ratio = trueAirspeedKt / (mach * kSoundAtSeaLevelKt);
    return kSeaLevelKelvin * ratio * ratio - kKelvin;
}

double soundKt(double temperatureCelsius) {
    return kSoundAtSeaLevelKt * std::sqrt((temperatureCelsius + kKelvin) / kSeaLevelKelvin);
}

double bearingDegrees(Place const& from, Place const& to) {
    auto const east = radians(to.longitude - from.longitude);
    auto const start = radians(from.latitude);
    auto const end = radians(to.latitude);
    auto const y = std::sin(east) * std::cos(end);
    auto const x = std::cos(start) * std::sin(end) - std::sin(start) * std::cos(end) * std::cos(east);
    return fullTurn(kDegreesPerRadian * std::atan2(y, x));
}

Wind windOf(double trueAirspeedKt, double trueHeadingDegrees, double groundSpeedKt, double trackDegrees) {
    auto const heading = radians(trueHeadingDegrees);
    auto const track = radians(trackDegrees);
    auto const north = groundSpeedKt * std::cos(track) - trueAirspeedKt * std::cos(heading);
    auto const east = groundSpeedKt * std::sin(track) - trueAirspeedKt * std::sin(heading);
    return {std::hypot(north, east), fullTurn(kDegreesPerRadian * std::atan2(-east, -north))};
}

DerivedItems deriveItems(TrackItems const& items, TrackTime now, std::optional<Place> const& receiver,
    std::optional<double> variationDegrees) {
    DerivedItems derivedItems;
    AirState const air{reported(items.mach, now), reported(items.trueAirspeedKt, now),
        reported(items.temperatureCelsius, now, kTemperatureMs), reported(items.altitudeFt, now),
        reported(items.indicatedAirspeedKt, now)};
    deriveAir(air, derivedItems);
    if (!items.windSpeedKt.isFresh(now)) deriveWind(items, now, air.trueAirspeed, variationDegrees, derivedItems);
    if (!items.gnssHeightFt.isFresh(now)) {
        auto const sum = [](double altitude, double difference) { return altitude + difference; };
        derivedItems.gnssHeightFt = derived(sum, air.altitude, reported(items.gnssMinusBarometricFt, now));
    }
    derivePlace(items, receiver, derivedItems);
    return derivedItems;
}

} // namespace quorvel::airspace
