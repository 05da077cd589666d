// SPDX-License-Identifier: MIT
#include "airspace/readings/register_evidence.h"

#include "airspace/readings/register_contents.h"
#include "airspace/readings/standard_atmosphere.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace quorvel::airspace {

namespace {

// All evidence is in nats. A zero bit, or any other bit that could not be otherwise, is worth this:
constexpr double kBit = 0.693;

// What a value is worth that agrees with what is expected of it: `peak` when equal, the logarithm of the range that the
// field could show by the width of what is expected; less by 1 for each `scale` of distance, but not below `floor`,
// since every instrument and every expectation is wrong at times.
struct Expectation {
    double scale;
    double peak;
    double floor;

    double at(double distance) const { return std::max(peak - std::abs(distance) / scale, floor); }
};

constexpr Expectation kSpeed{8.0, 4.8, -4.0};            // kt, of one known seconds before
constexpr Expectation kSpeedInWind{40.0, 3.2, -4.0};     // kt, of one known through the air or over ground
constexpr Expectation kDirection{3.0, 4.1, -3.5};        // degrees
constexpr Expectation kDirectionInWind{15.0, 2.5, -3.5}; // degrees, heading and track, magnetic and true
constexpr Expectation kLevelWings{2.0, 3.8, -1.0};       // degrees
constexpr Expectation kTurnByRoll{0.3, 4.0, -3.0};       // degrees/s
constexpr Expectation kNoTurn{1.0, 2.8, -2.0};           // degrees/s
constexpr Expectation kClimb{400.0, 3.0, -3.0};          // ft/min
constexpr Expectation kAnyClimb{700.0, 2.4, -2.0};       // ft/min
constexpr Expectation kSameClimb{200.0, 3.7, -3.0};      // ft/min, barometric and inertial
constexpr Expectation kSameMach{0.015, 4.9, -4.0};       //
constexpr Expectation kPitotPressure{0.06, 4.6, -5.0};   // by Mach and altitude, of that by indicated airspeed
constexpr Expectation kSameAltitude{16.0, 6.0, -2.0};    // ft, selected
constexpr Expectation kNearAltitude{8000.0, 1.4, -2.0};  // ft, selected and flown
constexpr Expectation kSamePressure{0.3, 6.0, -2.0};     // hPa, set
constexpr Expectation kTemperature{6.0, 3.7, -4.0};      // degrees Celsius, of the standard atmosphere
constexpr Expectation kStaticPressure{10.0, 4.6, -4.0};  // hPa, of the standard atmosphere

constexpr double kSpeedThatFlies = 1.2; // any that is plausible

// Of directions from 0 up to 360 degrees.
double turn(double from, double to) {
    auto const difference = std::abs(to - from);
    return std::min(difference, 360.0 - difference);
}

// Within 1 % up to 35 degrees.
double tangent(double degrees) {
    auto const x = degrees / 57.29578;
    return x * (1.0 + x * x * (1.0 / 3 + x * x * 2 / 15));
}

// What a status bit is worth: the logarithm of twice the share of aircraft that set it or do not, with the `bits` that
// are 0 behind one that is not set.
struct Presence {
    double present;
    double absent;
    int bits;

    double at(bool isPresent) const { return isPresent ? present : absent + bits * kBit; }
};

constexpr Presence usual(int bits) { return {0.67, -3.2, bits}; }    // 98 in 100
constexpr Presence frequent(int bits) { return {0.53, -1.2, bits}; } // 85 in 100
constexpr Presence rare(int bits) { return {-1.6, 0.59, bits}; }     // 10 in 100

// Indicated airspeed and Mach number together tell the altitude.
double speedsAtAltitude(int indicatedAirspeedKt, double mach, KnownState const& known) {
    constexpr double lowestRatio = 0.10;  // 52,000 ft
    constexpr double highestRatio = 1.08; // below sea level
    constexpr double someAltitude = 2.0;
    auto const byMach = impactPressureRatio(mach);
    if (byMach <= 0.0) return kPitotPressure.floor;
    auto const ratio = impactPressureRatio(indicatedAirspeedKt / kSoundAtSeaLevelKt) / byMach;
    if (!known.altitudeFt) return ratio >= lowestRatio && ratio <= highestRatio ? someAltitude : kPitotPressure.floor;
    return kPitotPressure.at(ratio / tabulatedPressureRatio(*known.altitudeFt) - 1.0);
}

double trueAirspeedByMach(double mach, KnownState const& known) {
    constexpr double usualAltitudeFt = 25'000.0;
    return mach * standardSoundKt(known.altitudeFt ? *known.altitudeFt : usualAltitudeFt);
}

double evidenceOfAirspeed(double trueAirspeedKt, KnownState const& known) {
    if (known.trueAirspeedKt) return kSpeed.at(trueAirspeedKt - *known.trueAirspeedKt);
    if (known.groundSpeedKt) return kSpeedInWind.at(trueAirspeedKt - *known.groundSpeedKt);
    return 0.0;
}

double evidenceOfAirspeed(TrackAndTurn const& state, KnownState const& known) {
    if (known.trueAirspeedKt || !state.groundSpeedKt) return evidenceOfAirspeed(*state.trueAirspeedKt, known);
    return kSpeedInWind.at(*state.trueAirspeedKt - *state.groundSpeedKt);
}

double evidenceOfTurn(TrackAndTurn const& state) {
    auto const rate = *state.trackRateDegreesPerSecond;
    auto const speed = state.trueAirspeedKt ? state.trueAirspeedKt : state.groundSpeedKt;
    if (!state.rollDegrees || !speed || *speed == 0) return kNoTurn.at(rate);
    constexpr double rateAtOneKnot = 1092.3; // degrees/s at a bank of 45 degrees
    return kTurnByRoll.at(rate - rateAtOneKnot * tangent(*state.rollDegrees) / *speed);
}

double evidenceOfHeading(double degrees, KnownState const& known) {
    if (known.headingDegrees) return kDirection.at(turn(*known.headingDegrees, degrees));
    if (known.trackDegrees) return kDirectionInWind.at(turn(*known.trackDegrees, degrees));
    return 0.0;
}

double evidenceOfIndicated(int kt, KnownState const& known) {
    return known.indicatedAirspeedKt ? kSpeed.at(kt - *known.indicatedAirspeedKt) : kSpeedThatFlies;
}

double evidenceOfMach(double mach, std::optional<int> indicatedAirspeedKt, KnownState const& known) {
    auto sum = indicatedAirspeedKt ? speedsAtAltitude(*indicatedAirspeedKt, mach, known) : kSpeedThatFlies;
    if (known.mach) sum += kSameMach.at(mach - *known.mach) / 2; // airspeed and altitude have said half of it
    return sum + evidenceOfAirspeed(trueAirspeedByMach(mach, known), known) / 2;
}

double evidenceOfClimb(int ftMin, KnownState const& known) {
    return known.verticalRateFtMin ? kClimb.at(ftMin - *known.verticalRateFtMin) : kAnyClimb.at(ftMin);
}

double evidence(TrackAndTurn const& state, KnownState const& known) {
    auto sum = usual(10).at(state.rollDegrees.has_value()) + usual(11).at(state.trueTrackDegrees.has_value()) +
               usual(10).at(state.groundSpeedKt.has_value()) +
               frequent(10).at(state.trackRateDegreesPerSecond.has_value()) +
               usual(10).at(state.trueAirspeedKt.has_value());
    if (state.rollDegrees) sum += kLevelWings.at(*state.rollDegrees);
    if (state.trueTrackDegrees && known.trackDegrees) {
        sum += kDirection.at(turn(*known.trackDegrees, *state.trueTrackDegrees));
    }
    if (state.groundSpeedKt) {
        sum += known.groundSpeedKt ? kSpeed.at(*state.groundSpeedKt - *known.groundSpeedKt) : kSpeedThatFlies;
    }
    if (state.trackRateDegreesPerSecond) sum += evidenceOfTurn(state);
    if (state.trueAirspeedKt) sum += evidenceOfAirspeed(state, known);
    return sum;
}

double evidence(HeadingAndSpeed const& state, KnownState const& known) {
    auto sum = usual(11).at(state.magneticHeadingDegrees.has_value()) +
               usual(10).at(state.indicatedAirspeedKt.has_value()) + usual(10).at(state.mach.has_value()) +
               usual(10).at(state.barometricVerticalRateFtMin.has_value()) +
               frequent(10).at(state.inertialVerticalRateFtMin.has_value());
    if (state.magneticHeadingDegrees) sum += evidenceOfHeading(*state.magneticHeadingDegrees, known);
    if (state.indicatedAirspeedKt) sum += evidenceOfIndicated(*state.indicatedAirspeedKt, known);
    if (state.mach) sum += evidenceOfMach(*state.mach, state.indicatedAirspeedKt, known);
    auto const& barometric = state.barometricVerticalRateFtMin;
    auto const& inertial = state.inertialVerticalRateFtMin;
    if (barometric) sum += evidenceOfClimb(*barometric, known);
    if (inertial) sum += barometric ? kSameClimb.at(*inertial - *barometric) : evidenceOfClimb(*inertial, known);
    return sum;
}

double evidence(AirReferencedState const& state, KnownState const& known) {
    auto sum = usual(11).at(state.magneticHeadingDegrees.has_value()) +
               usual(10).at(state.indicatedAirspeedKt.has_value()) + usual(9).at(state.mach.has_value()) +
               usual(12).at(state.trueAirspeedKt.has_value()) + usual(9).at(state.verticalRateFtMin.has_value());
    if (state.magneticHeadingDegrees) sum += evidenceOfHeading(*state.magneticHeadingDegrees, known);
    if (state.indicatedAirspeedKt) sum += evidenceOfIndicated(*state.indicatedAirspeedKt, known);
    if (state.mach) sum += evidenceOfMach(*state.mach, state.indicatedAirspeedKt, known);
    if (state.trueAirspeedKt && state.mach) {
        sum += kSpeedInWind.at(*state.trueAirspeedKt - trueAirspeedByMach(*state.mach, known));
    } else if (state.trueAirspeedKt) {
        sum += evidenceOfAirspeed(*state.trueAirspeedKt, known);
    }
    if (state.verticalRateFtMin) sum += evidenceOfClimb(*state.verticalRateFtMin, known);
    return sum;
}

// Pilots select whole hundreds of feet; of all codes, one in six is one.
double evidenceOfSelected(int altitudeFt, KnownState const& known) {
    constexpr double isHundred = 1.7;
    constexpr double isBetween = -3.0;
    auto const overHundred = altitudeFt % 100;
    auto sum = overHundred <= 8 || overHundred >= 92 ? isHundred : isBetween;
    if (known.altitudeFt) sum += kNearAltitude.at(altitudeFt - *known.altitudeFt);
    if (known.selectedAltitudeFt) {
        sum += std::max(0.0, kSameAltitude.at(altitudeFt - *known.selectedAltitudeFt)); // may have been changed
    }
    return sum;
}

// Above the transition altitude all set the standard pressure, below it that of the place.
double evidenceOfSetting(double hpa, KnownState const& known) {
    constexpr double isStandard = 5.5;
    constexpr double isOfAPlace = 0.4;
    constexpr double isRare = -4.0;
    auto sum = isRare;
    if (std::abs(hpa - 1013.2) < 0.35)
        sum = isStandard;
    else if (hpa > 960.0 && hpa < 1050.0)
        sum = isOfAPlace;
    if (known.pressureSettingHpa) sum = std::max(sum, kSamePressure.at(hpa - *known.pressureSettingHpa));
    return sum;
}

double evidence(SelectedIntention const& intention, KnownState const& known) {
    constexpr double reserved = 10 * kBit;
    auto sum = reserved + usual(12).at(intention.controlPanelAltitudeFt.has_value()) +
               Presence{-1.0, 0.48, 12}.at(intention.flightManagementAltitudeFt.has_value()) +
               usual(12).at(intention.pressureSettingHpa.has_value()) + rare(3).at(intention.modes.has_value()) +
               rare(2).at(intention.targetAltitudeSource.has_value());
    if (intention.controlPanelAltitudeFt) sum += evidenceOfSelected(*intention.controlPanelAltitudeFt, known);
    if (intention.flightManagementAltitudeFt) sum += evidenceOfSelected(*intention.flightManagementAltitudeFt, known);
    if (intention.pressureSettingHpa) sum += evidenceOfSetting(*intention.pressureSettingHpa, known);
    return sum;
}

double evidenceOfTemperature(double celsius, KnownState const& known) {
    constexpr double anyThatIs = 1.4;
    if (!known.altitudeFt) return anyThatIs;
    return kTemperature.at(celsius - standardTemperatureCelsius(*known.altitudeFt));
}

double evidenceOfStaticPressure(int hpa, KnownState const& known) {
    if (!known.altitudeFt) return kSpeedThatFlies;
    return kStaticPressure.at(hpa - 1013.25 * tabulatedPressureRatio(*known.altitudeFt));
}

double evidence(RoutineMeteorology const& weather, KnownState const& known) {
    constexpr double assignedMerit = 1.4;
    constexpr double noMerit = -3.0;
    constexpr double windThatBlows = 0.7;
    auto sum = weather.figureOfMerit != 0 ? assignedMerit : noMerit;
    sum += usual(18).at(weather.windSpeedKt.has_value()) + rare(11).at(weather.staticPressureHpa.has_value()) +
           rare(2).at(weather.turbulence.has_value()) + rare(6).at(weather.humidityPercent.has_value());
    if (weather.windSpeedKt) sum += windThatBlows;
    if (weather.staticAirTemperatureCelsius) sum += evidenceOfTemperature(*weather.staticAirTemperatureCelsius, known);
    if (weather.staticPressureHpa) sum += evidenceOfStaticPressure(*weather.staticPressureHpa, known);
    return sum;
}

double evidence(HazardMeteorology const& weather, KnownState const& known) {
    constexpr double reserved = 5 * kBit;
    auto sum = reserved + frequent(10).at(weather.staticAirTemperatureCelsius.has_value()) +
               frequent(11).at(weather.staticPressureHpa.has_value()) + rare(12).at(weather.radioHeightFt.has_value());
    for (bool const isGiven : {weather.turbulence.has_value(), weather.windShear.has_value(),
             weather.microburst.has_value(), weather.icing.has_value(), weather.wakeVortex.has_value()}) {
        sum += rare(2).at(isGiven);
    }
    if (weather.staticAirTemperatureCelsius) sum += evidenceOfTemperature(*weather.staticAirTemperatureCelsius, known);
    if (weather.staticPressureHpa) sum += evidenceOfStaticPressure(*weather.staticPressureHpa, known);
    return sum;
}

double evidence(DataLinkCapability const& capability, KnownState const& /*known*/) {
    constexpr double fixed = 14 * kBit;
    constexpr double knownVersion = 2.5;
    constexpr double noTerminals = 16 * kBit - 0.3;
    constexpr double someTerminals = -2.0;
    return fixed + (capability.subnetworkVersion <= 8 ? knownVersion : -knownVersion) +
           (capability.terminals == 0 ? noTerminals : someTerminals);
}

constexpr std::uint32_t flagsOf(std::initializer_list<int> positions) {
    std::uint32_t flags = 0;
    for (auto const position : positions) flags |= 1U << (29 - position);
    return flags;
}

constexpr auto kSquitters = flagsOf({1, 2, 4, 5});                       // 0,5 0,6 0,8 0,9
constexpr auto kEnhanced = flagsOf({9, 16, 24});                         // 4,0 5,0 6,0
constexpr auto kSeldomServed = flagsOf({6, 10, 11, 12, 15, 20, 21, 22}); // 0,A 4,1 to 4,3 4,8 5,4 to 5,6

double evidence(CommonUsageCapability const& capability, KnownState const& known) {
    constexpr double reserved = 30 * kBit;
    constexpr double goTogether = 1.5;
    constexpr double seldomServed = 0.5;
    if (known.capability && known.capability->flags == capability.flags) return 56 * kBit - 1.0;
    auto const count = [&](std::uint32_t mask) { return std::popcount(capability.flags & mask); };
    auto const together = [&](std::uint32_t mask) {
        auto const served = count(mask);
        return served == 0 || served == std::popcount(mask) ? goTogether : -2 * goTogether;
    };
    auto const seldom = count(kSeldomServed);
    return reserved + together(kSquitters) + together(kEnhanced) +
           seldomServed * (std::popcount(kSeldomServed) - 6 * seldom);
}

template <std::size_t Size> double evidenceOfText(SixBitText<Size> const& text) {
    constexpr double inAlphabet = 0.55;
    constexpr double blankAtEnd = 2.5;
    constexpr double blankInside = -5.0;
    std::string_view const all(text.characters.data(), Size);
    auto const trimmed = text.text();
    auto sum = inAlphabet * static_cast<double>(Size);
    sum += blankAtEnd * static_cast<double>(Size - trimmed.size());
    if (trimmed.empty() || all.front() == ' ' || trimmed.find(' ') != trimmed.npos) sum += blankInside;
    return sum;
}

double evidence(AircraftIdentification const& identification, KnownState const& known) {
    constexpr double fixed = 8 * kBit;
    constexpr double same = 25.0;
    constexpr double other = -6.0;
    if (!known.callsign) return fixed + evidenceOfText(identification.callsign);
    bool const isSame = known.callsign->text() == identification.callsign.text();
    return fixed + (isSame ? same : evidenceOfText(identification.callsign) + other);
}

double evidence(AircraftRegistration const& registration, KnownState const& /*known*/) {
    auto sum = usual(42).at(registration.registration.has_value()) + frequent(12).at(registration.airline.has_value());
    if (registration.registration) sum += evidenceOfText(*registration.registration);
    if (registration.airline) sum += evidenceOfText(*registration.airline);
    return sum;
}

double evidence(ActiveAdvisory const& active, KnownState const& /*known*/) {
    constexpr double fixed = 16 * kBit;
    constexpr double nothing = 40 * kBit - 0.1;
    constexpr double consistent = 2.0;
    auto const& advisory = active.advisory;
    bool const hasThreat = advisory.threatType != ThreatType::None;
    if (!advisory.isIssued()) {
        return fixed + (advisory.ara == 0 && advisory.rac == 0 && !hasThreat ? nothing : -consistent);
    }
    return fixed + (hasThreat ? consistent : 0.0);
}

// Each aircraft may be asked for 1,0 1,7 2,0 and 3,0, whether its report names them or not.
bool isNotServed(Register number, KnownState const& known) {
    bool const isReported = number >= Register::SelectedIntention || number == Register::AircraftRegistration;
    return isReported && known.capability && !known.capability->serves(number);
}

// What is known of a register before its content is: how often it is asked for, and who judges what it holds. Most
// ground stations ask for 4,0, 5,0 and 6,0 in turn, and for others now and then.
struct Judgement {
    Register number;
    double prior;
    double (*evidence)(RegisterBits const& mb, KnownState const& known);
};

template <auto readContent> double evidenceIn(RegisterBits const& mb, KnownState const& known) {
    return evidence(readContent(mb), known);
}

constexpr std::array<Judgement, kRegisters.size()> kJudgements{{
    {Register::DataLinkCapability, -3.5, evidenceIn<readDataLinkCapability>},
    {Register::CommonUsageCapability, -3.5, evidenceIn<readCommonUsageCapability>},
    {Register::AircraftIdentification, -3.5, evidenceIn<readAircraftIdentification>},
    {Register::AircraftRegistration, -6.5, evidenceIn<readAircraftRegistration>},
    {Register::ActiveAdvisory, -2.5, evidenceIn<readActiveAdvisory>},
    {Register::SelectedIntention, -1.3, evidenceIn<readSelectedIntention>},
    {Register::RoutineMeteorology, -5.0, evidenceIn<readRoutineMeteorology>},
    {Register::HazardMeteorology, -6.5, evidenceIn<readHazardMeteorology>},
    {Register::TrackAndTurn, -1.3, evidenceIn<readTrackAndTurn>},
    {Register::AirReferencedState, -6.5, evidenceIn<readAirReferencedState>},
    {Register::HeadingAndSpeed, -1.3, evidenceIn<readHeadingAndSpeed>},
}};

constexpr bool isInOrder() {
    for (std::size_t place = 0; place != kRegisters.size(); ++place) {
        if (kJudgements[place].number != kRegisters[place]) return false;
    }
    return true;
}
static_assert(isInOrder());

constexpr double kNotServed = -5.0;
constexpr double kOthers = -2.0;

} // namespace

double evidenceFor(std::size_t place, RegisterBits const& mb, KnownState const& known) {
    Judgement const& judgement = kJudgements[place];
    return judgement.prior + (isNotServed(judgement.number, known) ? kNotServed : 0.0) + judgement.evidence(mb, known);
}

double evidenceForOthers(RegisterBits const& mb) {
    constexpr double zeroByte = 4.3; // three bytes in ten
    constexpr double otherByte = -0.35;
    auto sum = kOthers;
    for (int shift = 0; shift < 56; shift += 8) sum += (mb.value() >> shift & 0xFF) == 0 ? zeroByte : otherByte;
    return sum;
}

} // namespace quorvel::airspace
