// SPDX-License-Identifier: MIT
#include "simulate/traffic.h"

#include "simulate/transponder.h"

#include <cmath>
#include <iterator>
#include <set>
#include <tuple>

namespace quorvel::simulate {

namespace {

constexpr std::uint64_t kMillisecond = 1'000'000; // nanoseconds
constexpr std::uint64_t kClosest = 1000;          // frames of different aircraft are at least so far apart
constexpr std::size_t kAircraftPerPlace = 25;

constexpr unsigned bitOf(Equipment equipment) { return 1U << static_cast<unsigned>(equipment); }
constexpr unsigned kAll = 0xF;
constexpr unsigned kADSB = kAll & ~bitOf(Equipment::None);
constexpr unsigned kNewADSB = bitOf(Equipment::Version1) | bitOf(Equipment::Version2);

// What is sent without being asked, and how often: each interval varies by up to a fifth, as the standard requires.
struct Transmission {
    unsigned equipment;
    std::uint64_t interval; // milliseconds
    std::string (*frame)(Aircraft const&, FlightState const&, std::uint32_t count);
};
using Count = std::uint32_t;
constexpr Transmission kTransmissions[] = {
    {kAll, 1000, [](Aircraft const& a, FlightState const&, Count) { return allCallReply(a, 0); }},
    {kAll, 1000, [](Aircraft const& a, FlightState const& s, Count) { return airAirReply(a, s); }},
    {kAll, 5000, [](Aircraft const& a, FlightState const& s, Count) { return longAirAirReply(a, s); }},
    {kADSB, 500, [](Aircraft const& a, FlightState const& s, Count n) { return positionSquitter(a, s, n % 2 != 0); }},
    {kADSB, 500, [](Aircraft const& a, FlightState const& s, Count) { return velocitySquitter(a, s); }},
    {kADSB, 5000, [](Aircraft const& a, FlightState const&, Count) { return identificationSquitter(a); }},
    {kNewADSB, 5000, [](Aircraft const& a, FlightState const&, Count) { return aircraftStatusSquitter(a); }},
    {kNewADSB, 1250, [](Aircraft const& a, FlightState const&, Count) { return targetStatusSquitter(a); }},
    {kNewADSB, 2500, [](Aircraft const& a, FlightState const&, Count) { return operationalStatusSquitter(a); }},
};

// A radar passes every four seconds and more, asks for four replies each time, one every few milliseconds.
constexpr std::uint64_t kRotation = 4000;     // milliseconds of the first radar
constexpr std::uint64_t kRotationStep = 1100; // longer for each further one
constexpr std::uint64_t kInterrogation = 4;   // milliseconds between the replies
constexpr Count kRepliesPerPass = 4;

// All-call replies are for radars that have not locked the aircraft out; every other pass reads a register.
std::string interrogated(Aircraft const& aircraft, FlightState const& state, std::uint32_t interrogator, Count count) {
    bool const commB = count / kRepliesPerPass % 2 != 0;
    switch (count % kRepliesPerPass) {
    case 0: return allCallReply(aircraft, interrogator);
    case 1: return commB ? commBAltitudeReply(aircraft, state) : altitudeReply(aircraft, state);
    case 2: return commB ? commBIdentityReply(aircraft) : identityReply(aircraft);
    default: return altitudeReply(aircraft, state);
    }
}

Place randomPlace(Random& random) {
    double const sine = random.between(-1.0, 1.0); // evenly over the sphere
    return {std::asin(sine) * 180.0 / 3.14159265358979323846, random.between(-180.0, 180.0)};
}

} // namespace

bool Traffic::Event::operator>(Event const& other) const {
    return std::tie(nanoseconds, aircraft, kind) > std::tie(other.nanoseconds, other.aircraft, other.kind);
}

Traffic::Traffic(Settings const& settings)
    : _random(settings.seed)
    , _end(static_cast<std::uint64_t>(settings.seconds * 1e9))
    , _bitErrors(settings.bitErrors)
    , _interrogators(settings.interrogators) {
    makeAircraft(settings);
    for (std::uint32_t i = 0; i < _aircraft.size(); ++i) schedule(i);
}

void Traffic::makeAircraft(Settings const& settings) {
    auto places = settings.places;
    if (places.empty()) {
        for (std::size_t i = 0; i < settings.aircraft; i += kAircraftPerPlace) places.push_back(randomPlace(_random));
    }
    std::set<std::uint32_t> taken{0};
    while (_aircraft.size() < settings.aircraft) {
        auto const address = static_cast<std::uint32_t>(_random.below(0x1000000));
        if (!taken.insert(address).second) continue;
        _aircraft.emplace_back(address, places[_aircraft.size() % places.size()], settings.radius, _random);
    }
}

void Traffic::schedule(std::uint32_t aircraft) {
    auto const equipment = bitOf(_aircraft[aircraft].equipment());
    std::uint32_t kind = 0;
    for (auto const& transmission : kTransmissions) {
        auto const first = _random.below(transmission.interval * kMillisecond);
        if ((transmission.equipment & equipment) != 0) _events.push({first, aircraft, kind, 0});
        ++kind;
    }
    for (unsigned i = 0; i < _interrogators; ++i, ++kind) {
        _events.push({_random.below((kRotation + i * kRotationStep) * kMillisecond), aircraft, kind, 0});
    }
}

void Traffic::scheduleAgain(Event event) {
    ++event.count;
    if (event.kind < std::size(kTransmissions)) {
        auto const fifth = kTransmissions[event.kind].interval * kMillisecond / 5;
        event.nanoseconds += 4 * fifth + _random.below(2 * fifth);
    } else if (event.count % kRepliesPerPass != 0) {
        event.nanoseconds += kInterrogation * kMillisecond;
    } else {
        auto const interrogator = event.kind - std::size(kTransmissions);
        event.nanoseconds += (kRotation + interrogator * kRotationStep) * kMillisecond;
    }
    _events.push(event);
}

std::string Traffic::frameOf(Event const& event) const {
    auto const& aircraft = _aircraft[event.aircraft];
    auto const state = aircraft.at(static_cast<double>(event.nanoseconds) / 1e9);
    if (event.kind < std::size(kTransmissions)) return kTransmissions[event.kind].frame(aircraft, state, event.count);
    auto const interrogator = static_cast<std::uint32_t>(event.kind - std::size(kTransmissions) + 1);
    return interrogated(aircraft, state, interrogator, event.count);
}

bool Traffic::damage(std::string& bytes) {
    if (!_random.chance(_bitErrors)) return false;
    std::set<std::uint64_t> positions;
    auto const count = 1 + _random.below(3);
    while (positions.size() < count) positions.insert(_random.below(8 * bytes.size()));
    for (auto const position : positions) {
        auto& byte = bytes[position / 8];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (0x80U >> position % 8));
    }
    return true;
}

std::optional<Frame> Traffic::next() {
    if (_events.empty() || _events.top().nanoseconds >= _end) return {};
    auto event = _events.top();
    _events.pop();
    if (_last != 0 && event.nanoseconds < _last + kClosest) event.nanoseconds = _last + kClosest;
    _last = event.nanoseconds;

    Frame frame{event.nanoseconds, frameOf(event), event.aircraft, false};
    frame.damaged = damage(frame.bytes);
    scheduleAgain(event);
    return frame;
}

} // namespace quorvel::simulate
