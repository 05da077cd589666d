// SPDX-License-Identifier: MIT
// What a sky makes of simulated traffic, compared with what is true: every item of every aircraft, as it was when the item
// was last reported.
#include "simulate/traffic.h"

#include <airspace/sky.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <optional>
#include <string>

namespace airspace = quorvel::airspace;
namespace simulate = quorvel::simulate;

namespace {

using airspace::TimeMs;

constexpr TimeMs kStart = 1'714'566'896'000;
constexpr airspace::Place kReceiver{48.35, 11.79};

airspace::AddressKind kindOf(simulate::AddressKind kind) {
    switch (kind) {
    case simulate::AddressKind::Icao: return airspace::AddressKind::Icao;
    case simulate::AddressKind::NonIcao: return airspace::AddressKind::NonIcao;
    case simulate::AddressKind::TrackFile: return airspace::AddressKind::TrackFile;
    case simulate::AddressKind::TisB: return airspace::AddressKind::TisB;
    }
    return airspace::AddressKind::None;
}

double apartDegrees(double a, double b) { return std::abs(std::remainder(a - b, 360.0)); }

// Compares the items of aircraft with the truth, and counts by name how many there were.
class Comparison {
public:
    // Settled: heard for so long that all messages have come.
    void compare(airspace::Aircraft const& seen, simulate::Aircraft const& actual, bool isSettled) {
        _isSettled = isSettled;
        _seen = &seen;
        _actual = &actual;
        identity();
        motion();
        air();
        intentAndStatus();
        quality();
    }

    std::map<std::string, int> const& counts() const { return _counts; }

private:
    using State = simulate::FlightState;

    // The truth at the time of an item that has a value.
    template <class T> std::optional<State> truthOf(char const* name, airspace::Item<T> const& item) {
        if (!item.value) return std::nullopt;
        ++_counts[name];
        EXPECT_LE(item.updated, _seen->now) << name;
        EXPECT_GE(item.updated, item.changed) << name;
        return _actual->at(static_cast<double>(item.updated - kStart) / 1000.0);
    }

    template <class T>
    void near(char const* name, airspace::Item<T> const& item, double State::*truth, double tolerance) {
        auto const state = truthOf(name, item);
        if (state) {
            EXPECT_NEAR(static_cast<double>(*item.value), (*state).*truth, tolerance) << name << who(item.source);
        }
    }

    template <class T>
    void angle(char const* name, airspace::Item<T> const& item, double State::*truth, double tolerance) {
        auto const state = truthOf(name, item);
        if (state) {
            EXPECT_LE(apartDegrees(*item.value, (*state).*truth), tolerance) << name << who(item.source);
        }
    }

    template <class T, class Truth> void same(char const* name, airspace::Item<T> const& item, Truth const& truth) {
        if (truthOf(name, item)) {
            EXPECT_EQ(*item.value, truth) << name << who(item.source);
        }
    }

    std::string who(airspace::Source source) const {
        return " of " + airspace::addressText(_seen->address, _seen->addressKind) + " from source " +
               std::to_string(static_cast<int>(source));
    }

    void identity() {
        auto const& profile = _actual->profile();
        auto callsign = profile.callsign;
        callsign.resize(8, ' ');
        same("callsign", _seen->callsign, callsign);
        if (truthOf("squawk", _seen->squawk)) {
            EXPECT_EQ(_seen->squawk.value->code, profile.squawk);
        }
        if (truthOf("category", _seen->emitterCategory)) {
            EXPECT_EQ(_seen->emitterCategory.value->set, profile.categorySet);
            EXPECT_EQ(_seen->emitterCategory.value->number, profile.category);
        }
    }

    void motion() {
        bool const isCoarse = _actual->profile().groundStation == simulate::GroundStation::CoarseTisB;
        if (auto const state = truthOf("position", _seen->position)) {
            auto const nm =
                airspace::distanceNm(*_seen->position.value, {state->place.latitude, state->place.longitude});
            EXPECT_LE(nm, isCoarse ? 0.2 : 0.006) << who(_seen->position.source);
        }
        near("altitude", _seen->altitudeBaro, &State::altitude, 50.1);
        near("GNSS altitude", _seen->altitudeGnss, &State::gnssHeight, 110);
        near("ground speed", _seen->groundSpeed, &State::groundSpeed, isCoarse ? 17 : 4.1);
        if (_seen->groundSpeed.value.value_or(0) > 30) angle("track", _seen->track, &State::track, isCoarse ? 6 : 3);
        near("track rate", _seen->trackRate, &State::trackRate, 0.06);
        near("roll", _seen->roll, &State::roll, 0.2);
        near("vertical rate", _seen->verticalRateBaro, &State::verticalRate, 65);
        near("GNSS vertical rate", _seen->verticalRateGnss, &State::gnssVerticalRate, 80);
    }

    void air() {
        auto const isDerived = [](auto const& item) { return item.source == airspace::Source::Derived; };
        near("indicated airspeed", _seen->indicatedAirspeed, &State::indicatedAirspeed, 4.1);
        near("true airspeed", _seen->trueAirspeed, &State::trueAirspeed, isDerived(_seen->trueAirspeed) ? 25 : 4.1);
        near("mach", _seen->mach, &State::mach, isDerived(_seen->mach) ? 0.07 : 0.005);
        angle("magnetic heading", _seen->magneticHeading, &State::magneticHeading, 3);
        angle("true heading", _seen->trueHeading, &State::trueHeading, 3);
        near("wind speed", _seen->windSpeed, &State::windSpeed, isDerived(_seen->windSpeed) ? 12 : 1);
        near("temperature", _seen->temperature, &State::temperature, isDerived(_seen->temperature) ? 7 : 0.3);
    }

    void intentAndStatus() {
        auto const& profile = _actual->profile();
        if (auto const& selection = profile.selection) {
            if (truthOf("selected altitude", _seen->selectedAltitude)) {
                EXPECT_NEAR(*_seen->selectedAltitude.value, selection->altitude, 50.1);
            }
            if (truthOf("selected heading", _seen->selectedHeading)) {
                EXPECT_LE(apartDegrees(*_seen->selectedHeading.value, selection->heading), 1.0);
            }
            near("pressure setting", _seen->pressureSetting, &State::pressureSetting, 0.5);
        } else {
            EXPECT_FALSE(_seen->selectedAltitude.value) << who(_seen->selectedAltitude.source);
        }
        same("on ground", _seen->groundStatus, profile.onGround);
        if (truthOf("emergency", _seen->emergency)) {
            EXPECT_EQ(static_cast<unsigned>(*_seen->emergency.value), profile.emergency);
        }
        if (auto const state = truthOf("ident", _seen->spiStatus)) {
            EXPECT_EQ(*_seen->spiStatus.value, state->isIdent) << who(_seen->spiStatus.source);
        }
        if (_seen->advisory.value && _seen->advisory.value->isIssued() && truthOf("advisory", _seen->advisory)) {
            ASSERT_TRUE(profile.advisory) << who(_seen->advisory.source);
            EXPECT_EQ(_seen->advisory.value->ara, profile.advisory->active);
        }
        if (profile.equipment != simulate::Equipment::None) same("version", _seen->mopsVersion, _actual->version());
    }

    void quality() {
        auto const& profile = _actual->profile();
        auto const& accuracies = profile.accuracies;
        if (truthOf("radius", _seen->radius) && _seen->position.source == airspace::Source::AdsB) {
            auto const known = _isSettled ? profile.quality.radius : *_seen->radius.value; // by version and supplements
            EXPECT_NEAR(*_seen->radius.value, known, 0.1) << who(_seen->radius.source);
        }
        if (profile.groundStation != simulate::GroundStation::None) return; // a ground station has its own
        same("NACp", _seen->nacp, accuracies.position);
        same("NACv", _seen->nacv, profile.onGround ? accuracies.velocityOnSurface : accuracies.velocity);
        same("SIL", _seen->sil, accuracies.sourceIntegrity);
        same("SDA", _seen->sda, accuracies.designAssurance);
        same("NICbaro", _seen->nicBaro, accuracies.isBarometerChecked);
    }

    airspace::Aircraft const* _seen = nullptr;
    simulate::Aircraft const* _actual = nullptr;
    bool _isSettled = false;
    std::map<std::string, int> _counts;
};

void compareSky(std::uint64_t seed, Comparison& comparison) {
    simulate::Settings settings;
    settings.aircraft = 60;
    settings.seconds = 60;
    settings.seed = seed;
    settings.bitErrors = 0.02;
    settings.places = {{kReceiver.latitude, kReceiver.longitude}};
    simulate::Traffic traffic(settings);
    std::map<std::pair<airspace::AddressKind, std::uint32_t>, simulate::Aircraft const*> byAddress;
    for (auto const& aircraft : traffic.aircraft())
        byAddress[{kindOf(aircraft.profile().addressKind), aircraft.address()}] = &aircraft;

    airspace::SkyOptions options;
    options.positions.receiver = kReceiver;
    airspace::Sky sky(options);
    TimeMs now = kStart;
    while (auto const frame = traffic.next()) {
        now = kStart + frame->nanoseconds / 1'000'000;
        sky.take(airspace::Frame::of(frame->bytes, now));
        if (frame->nanoseconds % 8 != 0) continue; // now and then
        auto const& sender = traffic.aircraft()[frame->aircraft];
        auto const seen = sky.find(sender.address(), now, kindOf(sender.profile().addressKind));
        if (seen) comparison.compare(*seen, sender, false);
    }
    auto const all = sky.aircraft(now);
    EXPECT_EQ(all.size(), byAddress.size());
    for (auto const& seen : all) {
        auto const known = byAddress.find({seen.addressKind, seen.address});
        ASSERT_NE(known, byAddress.end()) << "a ghost: " << airspace::addressText(seen.address, seen.addressKind);
        comparison.compare(seen, *known->second, true);
    }
}

} // namespace

TEST(SimulatedSkies, AreSeenAsTheyAre) {
    Comparison comparison;
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        compareSky(seed, comparison);
    }
    for (auto const* item : {"callsign", "squawk", "category", "position", "altitude", "GNSS altitude", "ground speed",
             "track", "track rate", "roll", "vertical rate", "GNSS vertical rate", "indicated airspeed",
             "true airspeed", "mach", "magnetic heading", "true heading", "wind speed", "temperature",
             "selected altitude", "selected heading", "pressure setting", "on ground", "emergency", "ident", "advisory",
             "version", "radius", "NACp", "NACv", "SIL", "SDA", "NICbaro"}) {
        auto const count = comparison.counts().find(item);
        EXPECT_NE(count, comparison.counts().end()) << "nobody reports: " << item;
        if (count != comparison.counts().end()) RecordProperty(item, count->second);
    }
}
