// SPDX-License-Identifier: MIT
#include "simulate/fleet.h"

#include "simulate/standard_air.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <span>

namespace quorvel::simulate {

namespace {

constexpr std::size_t kAircraftPerPlace = 25;
constexpr double kMetresPerMile = 1852.0;

std::string makeCallsign(Random& random) {
    std::string callsign;
    for (int i = 0; i < 3; ++i) callsign += static_cast<char>('A' + random.below(26));
    return callsign + std::to_string(1 + random.below(9999));
}

std::string makeRegistration(Random& random) {
    std::string registration;
    for (int i = 0; i < 5; ++i) registration += static_cast<char>('A' + random.below(26));
    return registration;
}

template <class Row> Row const& anyOf(std::span<Row const> rows, Random& random) {
    return rows[random.below(rows.size())];
}

unsigned anyFrom(unsigned first, unsigned last, Random& random) {
    return first + static_cast<unsigned>(random.below(last - first + 1));
}

Pose startNear(Place const& around, double radius, Random& random) {
    double const distance = radius * std::sqrt(random.between(0.0, 1.0)) / kEarthRadius;
    auto const outward = directionAt(around, random.between(0.0, 360.0));
    auto const up = sum(upAt(around), std::cos(distance), outward, std::sin(distance));
    return {up, directionAt(placeOf(up), random.between(0.0, 360.0))};
}

Place randomPlace(Random& random) {
    double const sine = random.between(-1.0, 1.0); // evenly over the sphere
    return {std::asin(sine) / kRadians, random.between(-180.0, 180.0)};
}

// Of position messages in the air and on the surface (RTCA DO-260, DO-260A and DO-260B, 2.2.3.2.3.1, and 2.2.3.2.7.2.6
// of DO-260B), the usual ones first.
using Qualities = std::span<PositionQuality const>;
constexpr PositionQuality kAirborne0[] = {{9, false, false, false, 9, 7.5}, {10, false, false, false, 8, 25.0},
    {11, false, false, false, 7, 0.1 * kMetresPerMile}, {12, false, false, false, 6, 0.2 * kMetresPerMile},
    {13, false, false, false, 5, 0.5 * kMetresPerMile}, {14, false, false, false, 4, 1.0 * kMetresPerMile},
    {16, false, false, false, 2, 10.0 * kMetresPerMile}, {18, false, false, false, 0, 0.0},
    {20, false, false, false, 9, 7.5}};
constexpr PositionQuality kAirborne1[] = {{9, false, false, false, 11, 7.5}, {10, false, false, false, 10, 25.0},
    {11, true, false, false, 9, 75.0}, {11, false, false, false, 8, 0.1 * kMetresPerMile},
    {12, false, false, false, 7, 0.2 * kMetresPerMile}, {13, false, false, false, 6, 0.5 * kMetresPerMile},
    {13, true, false, false, 6, 0.6 * kMetresPerMile}, {14, false, false, false, 5, 1.0 * kMetresPerMile},
    {16, true, false, false, 3, 4.0 * kMetresPerMile}, {16, false, false, false, 2, 8.0 * kMetresPerMile},
    {21, false, false, false, 10, 25.0}};
constexpr PositionQuality kAirborne2[] = {{9, false, false, false, 11, 7.5}, {10, false, false, false, 10, 25.0},
    {11, true, true, false, 9, 75.0}, {11, false, false, false, 8, 0.1 * kMetresPerMile},
    {12, false, false, false, 7, 0.2 * kMetresPerMile}, {13, false, true, false, 6, 0.3 * kMetresPerMile},
    {13, false, false, false, 6, 0.5 * kMetresPerMile}, {13, true, true, false, 6, 0.6 * kMetresPerMile},
    {14, false, false, false, 5, 1.0 * kMetresPerMile}, {15, false, false, false, 4, 2.0 * kMetresPerMile},
    {16, true, true, false, 3, 4.0 * kMetresPerMile}, {17, false, false, false, 1, 20.0 * kMetresPerMile},
    {20, false, false, false, 11, 7.5}};
constexpr PositionQuality kSurface0[] = {{5, false, false, false, 9, 7.5}, {6, false, false, false, 8, 25.0},
    {7, false, false, false, 7, 0.1 * kMetresPerMile}};
constexpr PositionQuality kSurface1[] = {{5, false, false, false, 11, 7.5}, {6, false, false, false, 10, 25.0},
    {7, true, false, false, 9, 75.0}, {7, false, false, false, 8, 0.1 * kMetresPerMile}};
constexpr PositionQuality kSurface2[] = {{5, false, false, false, 11, 7.5}, {6, false, false, false, 10, 25.0},
    {7, true, false, false, 9, 75.0}, {7, false, false, false, 8, 0.1 * kMetresPerMile},
    {8, true, false, true, 7, 0.2 * kMetresPerMile}, {8, true, false, false, 6, 0.3 * kMetresPerMile},
    {8, false, false, true, 6, 0.6 * kMetresPerMile}};
constexpr std::size_t kUsualQualities = 3; // the first ones
constexpr std::array<std::array<Qualities, 3>, 2> kQualities{
    {{kAirborne0, kAirborne1, kAirborne2}, {kSurface0, kSurface1, kSurface2}}};

constexpr PositionQuality kPlainAirborne{11, false, false, false, 8, 0.1 * kMetresPerMile};
constexpr PositionQuality kPlainSurface{7, false, false, false, 8, 0.1 * kMetresPerMile};
constexpr PositionQuality kNoPosition{0, false, false, false, 0, 0.0};

Equipment makeEquipment(Random& random) {
    auto const percent = random.below(100);
    if (percent < 20) return Equipment::Version0;
    if (percent < 35) return Equipment::Version1;
    return percent < 88 ? Equipment::Version2 : Equipment::None;
}

// What kinds of aircraft there are, and how their motion is made up.
enum class Kind : std::uint8_t {
    Adsb,          // by satellite navigation, as most do
    AirspeedAlone, // without speeds over ground
    Supersonic,
    WithoutPosition,
    Taxiing,
    Vehicle,
    ModeS, // without squitters
    TisB,
    CoarseTisB,
    TrackFile,   // without Mode S, known to a ground station
    Rebroadcast, // by a ground station, of another link
    HeardTwice,  // itself, and by a ground station
};

struct Member {
    Kind kind;
    Equipment equipment;
};

// The sky around one place: about half of the aircraft have version 2, one in six has no ADS-B of its own.
using enum Equipment;
constexpr std::array<Member, kAircraftPerPlace> kMembers{{{Kind::Adsb, Version2}, {Kind::ModeS, None},
    {Kind::Adsb, Version0}, {Kind::Taxiing, Version2}, {Kind::Adsb, Version2}, {Kind::Adsb, Version1},
    {Kind::TisB, None}, {Kind::AirspeedAlone, Version2}, {Kind::HeardTwice, Version2}, {Kind::Supersonic, Version2},
    {Kind::Rebroadcast, Version2}, {Kind::TrackFile, None}, {Kind::Vehicle, Version2}, {Kind::Adsb, Version2},
    {Kind::CoarseTisB, None}, {Kind::Taxiing, Version0}, {Kind::AirspeedAlone, Version0},
    {Kind::WithoutPosition, Version2}, {Kind::Adsb, Version2}, {Kind::Taxiing, Version1}, {Kind::Adsb, Version2},
    {Kind::Adsb, Version0}, {Kind::ModeS, None}, {Kind::Adsb, Version2}, {Kind::Adsb, Version1}}};

// The air around a place.
struct Region {
    Place place;
    double windTowards; // degrees
    double highWind;    // knots at 30,000 ft
    double warmer, pressureSetting, variation, geoidHeight;
};

Region makeRegion(Place const& place, Random& random) {
    return {place, random.between(0.0, 360.0), random.between(0.0, 100.0), random.between(-10.0, 10.0),
        std::round(random.between(985.0, 1040.0)), std::round(random.between(-15.0, 15.0)),
        random.between(-150.0, 200.0)};
}

Weather weatherAt(Region const& region, double altitude, Random& random) {
    double const knots = region.highWind * std::min(altitude / 30'000.0, 1.2);
    Weather weather;
    weather.wind = sum(crossProduct(upAt(region.place), directionAt(region.place, region.windTowards)),
        knots * kRadiansPerKnot, Vector{}, 0.0);
    weather.warmer = region.warmer;
    weather.pressureSetting = region.pressureSetting;
    weather.variation = region.variation;
    weather.geoidHeight = region.geoidHeight;
    weather.turbulence = random.chance(0.2) ? anyFrom(1, 3, random) : 0;
    weather.humidity = random.between(5.0, 95.0);
    return weather;
}

// As airliners fly: by indicated airspeed, and high up by Mach number.
double usualAirspeed(double altitude, double warmer, Random& random) {
    double const indicated = altitude < 10'000.0 ? random.between(190.0, 250.0) : random.between(260.0, 310.0);
    double const mach = std::min(machOfIndicated(indicated, standardPressure(altitude)), random.between(0.74, 0.82));
    return trueAirspeedOf(mach, standardTemperature(altitude) + warmer);
}

constexpr double kTransition = 6000.0; // feet
constexpr double kLowest = 1500.0;
constexpr double kHighest = 41'000.0;

// What an altitude that is selected below the transition altitude is as a pressure altitude.
double pressureAltitudeOf(double selected, Region const& region) {
    return selected < kTransition ? selected - 27.3 * (region.pressureSetting - 1013.25) : selected;
}

void bank(Motion& motion, Random& random) {
    constexpr double kKnotsPerDegreeEachSecond = 1091.3; // at a bank of 45 degrees: g over the speed
    double const side = random.chance(0.5) ? 1.0 : -1.0;
    double const roll = side * random.between(10.0, 28.0);
    motion.turnRate = kKnotsPerDegreeEachSecond * std::tan(roll * kRadians) / motion.airspeed;
    motion.turnBegin = random.between(5.0, 120.0);
    bool const circles = random.chance(0.2);
    motion.turnEnd = circles ? 1e9 : motion.turnBegin + random.between(20.0, 180.0) / std::fabs(motion.turnRate);
}

// Level, or on the way to an altitude that is selected; sometimes in a turn.
void fly(Profile& profile, Region const& region, Pose const& start, Random& random) {
    auto const selected = 100.0 * std::round(random.between(kLowest, kHighest) / 100.0);
    double const final = pressureAltitudeOf(selected, region);
    bool const level = random.chance(0.5);
    double const from = level ? final + random.between(-20.0, 20.0)
                              : std::clamp(final + random.between(-6000.0, 6000.0), 500.0, kHighest);
    double const rate = random.between(500.0, 2500.0) * (final < from ? -1.0 : 1.0);
    profile.weather = weatherAt(region, std::max(from, final), random);
    auto& motion = profile.motion;
    motion = {start, usualAirspeed(std::max(from, final), region.warmer, random), from, level ? from : final,
        level ? 0.0 : rate};
    if (random.chance(0.4)) bank(motion, random);
    double const turned = motion.turnEnd < 1e8 ? motion.turnRate * (motion.turnEnd - motion.turnBegin) : 0.0;
    double const heading = bearing(placeOf(start.up), start.forward) + turned;
    double const shown = profile.capabilities.isMagneticNorth ? heading - region.variation : heading;
    profile.selection = {selected, withinTurn(std::round(shown)), random.chance(0.3), random.chance(0.4), level,
        selected < kTransition && random.chance(0.5), random.chance(0.5), random.chance(0.8)};
}

void flySupersonic(Profile& profile, Region const& region, Pose const& start, Random& random) {
    double const altitude = random.between(40'000.0, 58'000.0);
    profile.weather = weatherAt(region, altitude, random);
    profile.motion = {start, random.between(1100.0, 1400.0), altitude, altitude, 0.0};
}

void taxi(Profile& profile, Region const& region, Pose const& start, Random& random) {
    double const altitude = pressureAltitudeOf(random.between(0.0, 1500.0), region);
    profile.weather = weatherAt(region, 0.0, random);
    double const knots = random.chance(0.15) ? 0.0 : random.between(0.0, random.chance(0.1) ? 140.0 : 30.0);
    profile.motion = {start, knots, altitude, altitude, 0.0};
    profile.onGround = true;
}

void move(Profile& profile, Kind kind, Region const& region, double radius, Random& random) {
    auto const start = startNear(region.place, radius, random);
    switch (kind) {
    case Kind::Supersonic: return flySupersonic(profile, region, start, random);
    case Kind::Taxiing:
    case Kind::Vehicle: return taxi(profile, region, start, random);
    default: return fly(profile, region, start, random);
    }
}

bool isIn(Kind kind, std::initializer_list<Kind> kinds) { return std::ranges::find(kinds, kind) != kinds.end(); }

// How each kind is heard.
struct Hearing {
    Kind kind;
    Transmitter transmitter;
    GroundStation groundStation;
    bool hasModeS;
};
constexpr Hearing kHearings[] = {
    {Kind::Adsb, Transmitter::Transponder, GroundStation::None, true},
    {Kind::AirspeedAlone, Transmitter::Transponder, GroundStation::None, true},
    {Kind::Supersonic, Transmitter::Transponder, GroundStation::None, true},
    {Kind::WithoutPosition, Transmitter::Transponder, GroundStation::None, true},
    {Kind::Taxiing, Transmitter::Transponder, GroundStation::None, true},
    {Kind::Vehicle, Transmitter::Device, GroundStation::None, false},
    {Kind::ModeS, Transmitter::None, GroundStation::None, true},
    {Kind::TisB, Transmitter::None, GroundStation::TisB, true},
    {Kind::CoarseTisB, Transmitter::None, GroundStation::CoarseTisB, true},
    {Kind::TrackFile, Transmitter::None, GroundStation::TisB, false},
    {Kind::Rebroadcast, Transmitter::None, GroundStation::Rebroadcast, true},
    {Kind::HeardTwice, Transmitter::Transponder, GroundStation::Rebroadcast, true},
};

void equip(Profile& profile, Kind kind, Random& random) {
    auto const& hearing = *std::ranges::find(kHearings, kind, &Hearing::kind);
    profile.transmitter = hearing.transmitter;
    profile.groundStation = hearing.groundStation;
    profile.hasModeS = hearing.hasModeS;
    bool const isEven = random.chance(0.5);
    if (kind == Kind::TrackFile) {
        profile.addressKind = isEven ? AddressKind::TrackFile : AddressKind::TisB;
        profile.squawk = profile.address >> 12;
    } else if (isEven && isIn(kind, {Kind::Vehicle, Kind::Rebroadcast})) {
        profile.addressKind = AddressKind::NonIcao;
        profile.hasModeS = false;
    }
    if (kind == Kind::AirspeedAlone) {
        profile.velocityReport = isEven ? VelocityReport::TrueAirspeed : VelocityReport::IndicatedAirspeed;
    } else if (isEven && kind == Kind::Supersonic) {
        profile.velocityReport = VelocityReport::TrueAirspeed;
    }
}

// What it is: airliners and the like, gliders and drones, or a vehicle.
void classify(Profile& profile, Kind kind, Random& random) {
    constexpr unsigned kFastAndAgile = 6;
    bool const isLight = random.chance(0.3);
    profile.category = anyFrom(1, 5, random);
    if (kind == Kind::Supersonic) profile.category = kFastAndAgile;
    if (kind == Kind::Vehicle) {
        profile.categorySet = 'C';
        profile.category = anyFrom(1, 3, random);
    } else if (isLight && isIn(kind, {Kind::TisB, Kind::CoarseTisB, Kind::TrackFile})) {
        profile.categorySet = 'B';
        profile.category = anyOf<unsigned>(std::array{1U, 2U, 4U, 6U}, random);
    }
}

void qualify(Profile& profile, Kind kind, Random& random) {
    auto const version = std::min<std::size_t>(static_cast<std::size_t>(profile.equipment), 2);
    auto const qualities = kQualities[profile.onGround ? 1 : 0][version];
    auto& quality = profile.quality;
    do { // a ground station has another use for supplement B
        quality = anyOf(random.chance(0.6) ? qualities.first(kUsualQualities) : qualities, random);
    } while (quality.supplementB && profile.groundStation != GroundStation::None);
    if (kind == Kind::WithoutPosition) quality = kNoPosition;
    auto& accuracies = profile.accuracies;
    accuracies.position = std::min(quality.category, 11U);
    accuracies.velocity = anyFrom(1, 4, random);
    accuracies.velocityOnSurface = accuracies.velocity;
    accuracies.sourceIntegrity = anyFrom(1, 3, random);
    if (version == 2) {
        accuracies.isIntegrityBySample = random.chance(0.2);
        accuracies.designAssurance = anyFrom(1, 3, random);
        accuracies.vertical = anyFrom(1, 2, random);
    }
    accuracies.isBarometerChecked = random.chance(0.8);
}

// Emergency states with the Mode A codes that go with them (RTCA DO-260B, 2.2.3.2.7.8.1.1).
struct Trouble {
    unsigned squawk;
    unsigned emergency;
};
constexpr Trouble kTroubles[] = {{07700, 1}, {07700, 2}, {07700, 3}, {07600, 4}, {07500, 5}, {07700, 6}};
constexpr unsigned kConspicuity = 01000;

void trouble(Profile& profile, Kind kind, Random& random) {
    if (random.chance(0.15)) profile.identBegin = random.between(0.0, 60.0);
    if (isIn(kind, {Kind::TrackFile, Kind::Vehicle})) return;
    bool const isTrouble = std::ranges::find(kTroubles, profile.squawk, &Trouble::squawk) != std::end(kTroubles);
    if (isTrouble) profile.squawk = kConspicuity;
    if (!random.chance(0.08)) return;
    auto const& troubled = anyOf<Trouble>(kTroubles, random);
    profile.squawk = troubled.squawk;
    profile.emergency = troubled.emergency;
}

Advisory makeAdvisory(Random& random) {
    constexpr std::uint16_t kAdvisories[] = {
        0b11000010000000, // climb
        0b11100010000000, // descend
        0b11010010000000, // increase climb
        0b11101010000000, // reversed to a descent
        0b10000000000000, // do not descend
    };
    auto active = anyOf<std::uint16_t>(kAdvisories, random);
    bool const several = random.chance(0.2);
    if (several) active = 0b01100100000000; // climb from some, cross others
    bool const isByAddress = random.chance(0.6);
    return {random.between(0.0, 40.0), active, static_cast<std::uint8_t>(random.below(4) << 2), several,
        isByAddress ? static_cast<std::uint32_t>(1 + random.below(0xFFFFFE)) : 0,
        100.0 * static_cast<double>(anyFrom(20, 400, random)), 0.1 * static_cast<double>(anyFrom(1, 125, random)),
        static_cast<double>(6 * anyFrom(1, 60, random) - 3)};
}

void tell(Profile& profile, Random& random) {
    auto& capabilities = profile.capabilities;
    bool const hasAcas = profile.hasModeS && profile.categorySet == 'A' && random.chance(0.8);
    bool const newer = profile.equipment == Version1 || profile.equipment == Version2;
    capabilities.hasAcas = hasAcas;
    if (!hasAcas) capabilities.sensitivity = capabilities.replyInformation = 0;
    capabilities.receivesSquitters = random.chance(0.3);
    capabilities.receivesUat = random.chance(0.1);
    capabilities.reportsAirVelocity = profile.velocityReport != VelocityReport::OverGround;
    capabilities.reportsTargetState = newer && !profile.onGround;
    capabilities.isIfrCapable = profile.equipment != Version2;
    capabilities.hasSingleAntenna = random.chance(0.2) && profile.groundStation == GroundStation::None;
    capabilities.isLowPower = profile.categorySet == 'C';
    capabilities.isHeadingOnSurface = random.chance(0.5);
    capabilities.isMagneticNorth = profile.equipment != Version2 || random.chance(0.7);
    if (profile.onGround) {
        capabilities.lengthWidth = anyFrom(1, 15, random);
        capabilities.antennaOffset = random.chance(0.5) ? anyFrom(2, 255, random) : 0;
    }
    capabilities.tellsHeightDifference = random.chance(0.8);
    capabilities.isVerticalRateGnss = random.chance(0.4);
    capabilities.hasHundredFootSteps =
        profile.transmitter == Transmitter::None ? random.chance(0.5) : random.chance(0.1);
    capabilities.tellsInertialRate = random.chance(0.85);
    bool const isThorough = random.chance(0.3); // tells what its version need not
    capabilities.tellsOperationalStatus = newer || isThorough;
    capabilities.tellsModeACode = profile.equipment == Version1 && isThorough;
    if (hasAcas && !profile.onGround && random.chance(0.3)) profile.advisory = makeAdvisory(random);
}

// What radars ask for: of airliners the registers of enhanced surveillance most of the time.
void serve(Profile& profile, Kind kind, Random& random) {
    if (!profile.hasModeS) return;
    auto& registers = profile.registers;
    registers = {0x10, 0x17, 0x20, 0x30};
    bool const isEnhanced = !profile.onGround && kind != Kind::Supersonic && random.chance(0.85);
    if (!isEnhanced) return;
    registers = {0x40, 0x50, 0x60, 0x10, 0x60, 0x40, 0x50, 0x17, 0x50, 0x60, 0x40, 0x20, 0x40, 0x50, 0x60, 0x30};
    for (unsigned const number : {0x21U, 0x44U, 0x45U, 0x53U}) {
        if (random.chance(0.2)) registers.push_back(number);
    }
}

Aircraft makeAnyAircraft(
    Member const& member, std::uint32_t address, Region const& region, double radius, Random& random) {
    Profile profile{};
    profile.address = address;
    profile.callsign = makeCallsign(random);
    profile.registration = makeRegistration(random);
    profile.squawk = anyFrom(1, 07776, random);
    profile.equipment = member.equipment;
    profile.onGround = isIn(member.kind, {Kind::Taxiing, Kind::Vehicle});
    equip(profile, member.kind, random);
    classify(profile, member.kind, random);
    qualify(profile, member.kind, random);
    tell(profile, random);
    move(profile, member.kind, region, radius, random);
    trouble(profile, member.kind, random);
    serve(profile, member.kind, random);
    return Aircraft(std::move(profile));
}

std::uint32_t freshAddress(std::set<std::uint32_t>& taken, Random& random) {
    for (;;) {
        auto const address = static_cast<std::uint32_t>(random.below(0x1000000));
        if (taken.insert(address).second) return address;
    }
}

} // namespace

Aircraft makeAdsbAircraft(std::uint32_t address, Place const& around, double radius, Random& random) {
    Profile profile{};
    profile.address = address;
    profile.callsign = makeCallsign(random);
    profile.squawk = static_cast<std::uint32_t>(1 + random.below(07777));
    profile.category = static_cast<unsigned>(1 + random.below(5));
    profile.equipment = makeEquipment(random);
    if (profile.equipment == None) profile.transmitter = Transmitter::None;
    profile.onGround = random.chance(0.08);
    profile.quality = profile.onGround ? kPlainSurface : kPlainAirborne;
    if (profile.equipment == Version0) profile.quality.category = 7;
    profile.capabilities.hasAcas = profile.equipment == Version1; // which tells when there is none
    profile.registers = {0x20};

    auto const start = startNear(around, radius, random);
    bool const onGround = profile.onGround;
    double const airspeed = onGround ? random.between(0.0, 40.0) : random.between(120.0, 540.0);
    double const from = onGround ? 0.0 : random.between(1500.0, 41'000.0);
    bool const level = onGround || random.chance(0.5);
    double const to = level ? from : random.between(1500.0, 41'000.0);
    double const rate = random.between(500.0, 3000.0) * (to < from ? -1.0 : 1.0);
    profile.motion = {start, airspeed, from, to, level ? 0.0 : rate};
    return Aircraft(std::move(profile));
}

std::vector<Aircraft> makeFleet(Mix mix, std::size_t count, std::vector<Place> places, double radius, Random& random) {
    if (places.empty()) {
        for (std::size_t i = 0; i < count; i += kAircraftPerPlace) places.push_back(randomPlace(random));
    }
    std::vector<Region> regions;
    if (mix == Mix::All) {
        for (auto const& place : places) regions.push_back(makeRegion(place, random));
    }
    std::vector<Aircraft> fleet;
    std::set<std::uint32_t> taken{0};
    while (fleet.size() < count) {
        auto const address = freshAddress(taken, random);
        auto const place = fleet.size() % places.size();
        if (mix == Mix::Adsb) {
            fleet.push_back(makeAdsbAircraft(address, places[place], radius, random));
        } else {
            auto const& member = kMembers[fleet.size() / places.size() % kMembers.size()];
            fleet.push_back(makeAnyAircraft(member, address, regions[place], radius, random));
        }
    }
    return fleet;
}

} // namespace quorvel::simulate
