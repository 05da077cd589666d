// SPDX-License-Identifier: MIT
#include "airspace/readings/register_writer.h"

#include <airspace/register_choice.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>

using namespace quorvel::airspace;
using namespace quorvel::airspace::test;

namespace {

// An aircraft in an atmosphere that is not quite the standard one, and what it sends. The formulas are those of
// ICAO Doc 7488, written anew.
class Aircraft {
public:
    explicit Aircraft(std::mt19937& random) : _random(random) {
        altitudeFt = between(1'000, 43'000);
        auto const pressure = pressureRatio();
        indicatedKt = altitudeFt < 10'000 ? between(140, 250) : between(220, 320);
        auto const impact = std::pow(1 + 0.2 * std::pow(indicatedKt / 661.5, 2), 3.5) - 1;
        mach = std::sqrt(5 * (std::pow(impact / pressure + 1, 2.0 / 7) - 1));
        if (mach > 0.86) {
            mach = 0.86;
            auto const less = pressure * (std::pow(1 + 0.2 * mach * mach, 3.5) - 1);
            indicatedKt = 661.5 * std::sqrt(5 * (std::pow(less + 1, 2.0 / 7) - 1));
        }
        auto const kelvin = std::max(216.65, 288.15 - 0.00198 * altitudeFt) + normal(8);
        trueAirspeedKt = mach * 661.5 * std::sqrt(kelvin / 288.15);
        heading = between(0, 360);
        windKt = std::abs(normal(altitudeFt > 20'000 ? 40 : 15));
        windFrom = between(0, 360);
        auto const radians = [](double degrees) { return degrees * 0.017453293; };
        auto const east = trueAirspeedKt * std::sin(radians(heading)) - windKt * std::sin(radians(windFrom));
        auto const north = trueAirspeedKt * std::cos(radians(heading)) - windKt * std::cos(radians(windFrom));
        groundSpeedKt = std::hypot(east, north);
        track = wrapped(std::atan2(east, north) / 0.017453293);
        magneticHeading = wrapped(heading + normal(8));
        temperature = kelvin - 273.15;
        rate = chance(0.5) ? normal(60) : between(-3500, 3500);
        roll = chance(0.75) ? normal(0.7) : between(-30, 30);
        selectedFt = 100 * std::round((altitudeFt + (rate > 100 ? 4000 : rate < -100 ? -3000 : 0)) / 100);
        selectedFt = std::clamp(selectedFt, 500.0, 45'000.0);
        settingHpa = altitudeFt > 10'000 ? 1013.2 : 1013 + normal(10);
    }

    // What its squitters tell, a few seconds old.
    KnownState known() {
        KnownState state;
        state.altitudeFt = 25 * static_cast<int>(std::lround((altitudeFt + rate * between(0, 5) / 60) / 25));
        state.groundSpeedKt = groundSpeedKt + normal(1.5);
        state.trackDegrees = wrapped(track + turnRate() * between(-5, 0) + normal(0.3));
        state.verticalRateFtMin = static_cast<int>(rate + normal(100));
        return state;
    }

    std::string intention() {
        RegisterWriter out;
        out.value(1, 13, selectedFt, 16);
        if (chance(0.25)) out.value(14, 26, selectedFt, 16);
        out.value(27, 39, settingHpa - 800, 0.1);
        if (chance(0.1)) out.number(48, 48, 1).number(49, 51, 2);
        if (chance(0.1)) out.number(54, 54, 1).number(55, 56, 2);
        return out.bytes();
    }

    std::string trackAndTurn() {
        RegisterWriter out;
        out.value(1, 11, roll + normal(0.2), 45.0 / 256);
        out.value(12, 23, signedDirection(track), 90.0 / 512);
        out.value(24, 34, groundSpeedKt, 2);
        if (chance(0.85)) out.value(35, 45, turnRate() + normal(0.05), 8.0 / 256);
        out.value(46, 56, trueAirspeedKt, 2);
        return out.bytes();
    }

    std::string headingAndSpeed() {
        RegisterWriter out;
        out.value(1, 12, signedDirection(magneticHeading), 90.0 / 512);
        out.value(13, 23, indicatedKt + normal(1), 1);
        out.value(24, 34, mach, 2.048 / 512);
        out.value(35, 45, rate + normal(60), 32);
        if (chance(0.9)) out.value(46, 56, rate + normal(30), 32);
        return out.bytes();
    }

    std::string weather() {
        RegisterWriter out;
        out.number(1, 4, 1).number(5, 5, 1).number(6, 14, std::lround(windKt));
        out.number(15, 23, std::lround(windFrom * 256 / 180)).number(24, 34, std::lround(temperature * 4));
        if (chance(0.5)) out.value(35, 46, 1013.25 * pressureRatio(), 1);
        return out.bytes();
    }

    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(_random); }
    double normal(double deviation) { return std::normal_distribution<double>(0, deviation)(_random); }
    bool chance(double share) { return between(0, 1) < share; }

private:
    double pressureRatio() const {
        return altitudeFt < 36'089 ? std::pow(1 - altitudeFt / 145'442, 5.2559)
                                   : 0.22336 * std::exp((36'089 - altitudeFt) / 20'806);
    }
    double turnRate() const { return 1092 * std::tan(roll * 0.017453293) / trueAirspeedKt; }
    static double wrapped(double degrees) { return degrees - 360 * std::floor(degrees / 360); }
    static double signedDirection(double degrees) { return degrees >= 180 ? degrees - 360 : degrees; }

    std::mt19937& _random;
    double altitudeFt, indicatedKt, mach, trueAirspeedKt, heading, magneticHeading, windKt, windFrom, groundSpeedKt;
    double track, temperature, rate, roll, selectedFt, settingHpa;
};

struct Outcome {
    unsigned all = 0;
    unsigned right = 0;
    unsigned wrong = 0;

    void take(Register truth, RegisterChoice const& choice) {
        ++all;
        if (choice.isUnsure) return;
        ++(choice.best == truth ? right : wrong);
    }
};

std::string randomBytes(std::mt19937& random) {
    std::string bytes;
    for (int i = 0; i < 7; ++i) bytes += static_cast<char>(random() & 0xFF);
    return bytes;
}

} // namespace

TEST(RegisterChoice, IsRightForAircraftThatSquitterPositionAndVelocity) {
    std::mt19937 random(20260102);
    std::map<Register, Outcome> outcomes;
    for (int i = 0; i < 20'000; ++i) {
        Aircraft aircraft(random);
        auto const known = aircraft.known();
        auto const take = [&](Register truth, std::string const& mb) {
            outcomes[truth].take(truth, chooseRegister(mb, known));
        };
        take(Register::SelectedIntention, aircraft.intention());
        take(Register::TrackAndTurn, aircraft.trackAndTurn());
        take(Register::HeadingAndSpeed, aircraft.headingAndSpeed());
    }
    for (auto const& [number, outcome] : outcomes) {
        EXPECT_GE(outcome.right, 0.995 * outcome.all) << nameOf(number).text();
        EXPECT_LE(outcome.wrong, 0.0005 * outcome.all) << nameOf(number).text();
    }
}

TEST(RegisterChoice, FindsWeatherAndSeldomMistakesItForSomethingElse) {
    std::mt19937 random(20260103);
    Outcome outcome;
    for (int i = 0; i < 20'000; ++i) {
        Aircraft aircraft(random);
        auto const known = aircraft.known();
        outcome.take(Register::RoutineMeteorology, chooseRegister(aircraft.weather(), known));
    }
    EXPECT_GE(outcome.right, 0.95 * outcome.all);
    EXPECT_LE(outcome.wrong, 0.0005 * outcome.all);
}

TEST(RegisterChoice, IsAlmostNeverSureOfRandomBytes) {
    std::mt19937 random(20260104);
    constexpr unsigned replies = 200'000;
    unsigned sure = 0;
    for (unsigned i = 0; i < replies; ++i) {
        Aircraft aircraft(random);
        sure += chooseRegister(randomBytes(random), aircraft.known()).isUnsure ? 0U : 1U;
    }
    EXPECT_LE(sure, 0.0005 * replies);
}

TEST(RegisterChoice, ReliesOnWhatIsKnownWhenTwoRegistersFit) {
    // Fits 5,0 (ground speed 308 kt, true airspeed 304 kt) as well as 6,0 (indicated 273 kt, Mach 0.64).
    auto const mb = std::string("\xFF\xFB\x23\x28\x60\x04\xA7", 7);
    EXPECT_TRUE(fittingRegisters(mb).contains(Register::TrackAndTurn));
    EXPECT_TRUE(fittingRegisters(mb).contains(Register::HeadingAndSpeed));
    auto const turn = std::get<TrackAndTurn>(readRegister(mb, Register::TrackAndTurn));
    KnownState known;
    known.altitudeFt = 14'000;
    known.groundSpeedKt = *turn.groundSpeedKt;
    known.trackDegrees = *turn.trueTrackDegrees;
    auto const asTurn = chooseRegister(mb, known);
    EXPECT_EQ(asTurn.best, Register::TrackAndTurn);
    EXPECT_FALSE(asTurn.isUnsure);
    EXPECT_GT(asTurn.score, 0.99);
}

TEST(RegisterChoice, DoubtsARegisterThatTheAircraftReportsNotToServe) {
    RegisterWriter writer;
    auto const mb = writer.value(1, 13, 33'008, 16).bytes();
    KnownState known;
    auto const before = chooseRegister(mb, known);
    EXPECT_EQ(before.best, Register::SelectedIntention);
    known.capability = CommonUsageCapability{1U << 22}; // 2,0 only
    auto const after = chooseRegister(mb, known);
    EXPECT_TRUE(after.best != Register::SelectedIntention || after.score < before.score);
}

TEST(RegisterChoice, KnowsAnAircraftByItsCallsign) {
    auto const mb = std::string("\x20\x24\x22\xF2\xE3\x7C\xE0", 7); // IBK2873
    auto const named = std::get<AircraftIdentification>(readRegister(mb, Register::AircraftIdentification));
    KnownState known;
    known.callsign = named.callsign;
    auto const choice = chooseRegister(mb, known);
    EXPECT_EQ(choice.best, Register::AircraftIdentification);
    EXPECT_FALSE(choice.isUnsure);
}

TEST(RegisterChoice, IsUnsureOfNothing) {
    for (auto const& mb : {std::string(), std::string(6, '\x20'), std::string(8, '\x20'), std::string(7, '\0')}) {
        auto const choice = chooseRegister(mb, {});
        EXPECT_FALSE(choice.best);
        EXPECT_EQ(choice.score, 0.0);
        EXPECT_TRUE(choice.isUnsure);
    }
}

TEST(RegisterChoice, TakesAnyBytes) {
    std::mt19937 random(20260105);
    for (int i = 0; i < 100'000; ++i) {
        auto mb = randomBytes(random);
        if (i % 2 == 0) mb[0] = static_cast<char>(0x10 * (i % 7));
        auto const choice = chooseRegister(mb, {});
        EXPECT_TRUE(choice.score >= 0.0 && choice.score <= 1.0);
    }
}
