// SPDX-License-Identifier: MIT
#include "simulate/traffic.h"

#include "simulate/squitter_payloads.h"
#include "simulate/transponder.h"

#include <set>
#include <span>
#include <tuple>
#include <utility>

namespace quorvel::simulate {

namespace {

constexpr std::uint64_t kMillisecond = 1'000'000; // nanoseconds
constexpr std::uint64_t kClosest = 1000;          // frames of different aircraft are at least so far apart

using Count = std::uint32_t;

// What is sent without being asked, by whom, and how often: each interval varies by up to a fifth, as the standard
// requires.
struct Transmission {
    bool (*isSentBy)(Profile const&);
    std::uint64_t interval; // milliseconds
    std::string (*frame)(Aircraft const&, FlightState const&, Count count);
};

bool isAny(Profile const&) { return true; }
bool hasADSB(Profile const& profile) { return profile.equipment != Equipment::None; }
bool hasNewADSB(Profile const& profile) { return hasADSB(profile) && profile.equipment != Equipment::Version0; }

bool hasModeS(Profile const& profile) { return profile.hasModeS; }
bool answersInAir(Profile const& profile) { return profile.hasModeS && !profile.onGround; }
bool hasAcas(Profile const& profile) { return answersInAir(profile) && profile.capabilities.hasAcas; }
bool squitters(Profile const& profile) { return profile.transmitter != Transmitter::None; }
bool squittersInAir(Profile const& profile) { return squitters(profile) && !profile.onGround; }
bool tellsTargetState(Profile const& profile) { return squitters(profile) && profile.capabilities.reportsTargetState; }
bool tellsStatus(Profile const& profile) { return squitters(profile) && profile.capabilities.tellsOperationalStatus; }
bool tellsModeACode(Profile const& profile) { return squitters(profile) && profile.capabilities.tellsModeACode; }
bool isRebroadcast(Profile const& profile) { return profile.groundStation == GroundStation::Rebroadcast; }
bool isTisB(Profile const& profile) { return profile.groundStation == GroundStation::TisB; }
bool isCoarseTisB(Profile const& profile) { return profile.groundStation == GroundStation::CoarseTisB; }

// While there is an advisory, it takes turns with the emergency status. Ground stations repeat the latter alone.
PayloadWriter statusMessage(Aircraft const& aircraft, FlightState const& state, Count count, Sender sender) {
    bool const tellsAdvisory = sender == Sender::Aircraft && aircraft.version() == 2 && count % 2 != 0;
    if (tellsAdvisory && state.advisory != AdvisoryPhase::None) return advisoryMessage(aircraft, state);
    return emergencyMessage(aircraft, sender);
}

std::string acquisition(Aircraft const& a, FlightState const& s, Count) { return allCallReply(a, s, 0); }
std::string airAir(Aircraft const& a, FlightState const& s, Count) { return airAirReply(a, s); }
std::string longAirAir(Aircraft const& a, FlightState const& s, Count) { return longAirAirReply(a, s); }

// The squitters of the aircraft itself, and those of ground stations about it.
template <Sender sender> std::string sent(Aircraft const& a, FlightState const& s, PayloadWriter const& message) {
    return sender == Sender::Aircraft ? squitter(a, s, message) : groundStationSquitter(a, message);
}
template <Sender sender> std::string position(Aircraft const& a, FlightState const& s, Count n) {
    return sent<sender>(a, s, positionMessage(a, s, n % 2 != 0, sender));
}
template <Sender sender> std::string velocity(Aircraft const& a, FlightState const& s, Count) {
    return sent<sender>(a, s, velocityMessage(a, s, sender));
}
template <Sender sender> std::string identification(Aircraft const& a, FlightState const& s, Count) {
    return sent<sender>(a, s, identificationMessage(a));
}
template <Sender sender> std::string status(Aircraft const& a, FlightState const& s, Count n) {
    return sent<sender>(a, s, statusMessage(a, s, n, sender));
}
template <Sender sender> std::string targetState(Aircraft const& a, FlightState const& s, Count) {
    return sent<sender>(a, s, targetStateMessage(a, s, sender));
}
template <Sender sender> std::string operationalStatus(Aircraft const& a, FlightState const& s, Count) {
    return sent<sender>(a, s, operationalStatusMessage(a, s, sender));
}
std::string coarsePosition(Aircraft const& a, FlightState const& s, Count n) {
    return groundStationSquitter(a, coarsePositionMessage(a, s, n % 2 != 0));
}
std::string modeACode(Aircraft const& a, FlightState const& s, Count) { return squitter(a, s, testMessage(a)); }

constexpr Transmission kAdsbTransmissions[] = {
    {isAny, 1000, acquisition},
    {isAny, 1000, airAir},
    {isAny, 5000, longAirAir},
    {hasADSB, 500, position<Sender::Aircraft>},
    {hasADSB, 500, velocity<Sender::Aircraft>},
    {hasADSB, 5000, identification<Sender::Aircraft>},
    {hasNewADSB, 5000, status<Sender::Aircraft>},
    {hasNewADSB, 1250, targetState<Sender::Aircraft>},
    {hasNewADSB, 2500, operationalStatus<Sender::Aircraft>},
};

constexpr Transmission kAllTransmissions[] = {
    {hasModeS, 1000, acquisition},
    {answersInAir, 1000, airAir},
    {hasAcas, 5000, longAirAir},
    {squitters, 500, position<Sender::Aircraft>},
    {squittersInAir, 500, velocity<Sender::Aircraft>},
    {squitters, 5000, identification<Sender::Aircraft>},
    {squitters, 2500, status<Sender::Aircraft>},
    {tellsTargetState, 1250, targetState<Sender::Aircraft>},
    {tellsStatus, 2500, operationalStatus<Sender::Aircraft>},
    {tellsModeACode, 10'000, modeACode},
    {isRebroadcast, 1000, position<Sender::Rebroadcast>},
    {isRebroadcast, 1000, velocity<Sender::Rebroadcast>},
    {isRebroadcast, 5000, identification<Sender::Rebroadcast>},
    {isRebroadcast, 5000, status<Sender::Rebroadcast>},
    {isRebroadcast, 2500, targetState<Sender::Rebroadcast>},
    {isRebroadcast, 2500, operationalStatus<Sender::Rebroadcast>},
    {isTisB, 1000, position<Sender::TisB>},
    {isTisB, 1000, velocity<Sender::TisB>},
    {isTisB, 5000, identification<Sender::TisB>},
    {isCoarseTisB, 2000, coarsePosition},
};

std::span<Transmission const> transmissionsOf(Mix mix) {
    return mix == Mix::Adsb ? std::span<Transmission const>(kAdsbTransmissions) : kAllTransmissions;
}

// A radar passes every four seconds and more, asks for four replies each time, one every few milliseconds.
constexpr std::uint64_t kRotation = 4000;     // milliseconds of the first radar
constexpr std::uint64_t kRotationStep = 1100; // longer for each further one
constexpr std::uint64_t kInterrogation = 4;   // milliseconds between the replies
constexpr Count kRepliesPerPass = 4;

// Interrogators above this one have a surveillance identifier instead, of code label 1.
constexpr std::uint32_t kLastInterrogatorCode = 2;
constexpr std::uint32_t kFirstSurveillanceIdentifier = 16;

std::uint32_t codeOf(std::uint32_t interrogator, Mix mix) {
    bool const hasIdentifier = mix == Mix::All && interrogator > kLastInterrogatorCode;
    return hasIdentifier ? kFirstSurveillanceIdentifier + interrogator : interrogator;
}

// Every other pass reads two registers. Radars begin with different ones.
unsigned registerAskedFor(Profile const& profile, std::uint32_t interrogator, Count count) {
    auto const pass = count / kRepliesPerPass;
    if (pass % 2 == 0) return 0;
    return profile.registers[(6 * interrogator + pass / 2 * 2 + count % 2) % profile.registers.size()];
}

} // namespace

bool Traffic::Event::operator>(Event const& other) const {
    return std::tie(nanoseconds, aircraft, kind) > std::tie(other.nanoseconds, other.aircraft, other.kind);
}

Traffic::Traffic(Settings const& settings)
    : _random(settings.seed)
    , _end(static_cast<std::uint64_t>(settings.seconds * 1e9))
    , _bitErrors(settings.bitErrors)
    , _interrogators(settings.interrogators)
    , _mix(settings.mix)
    , _aircraft(makeFleet(settings.mix, settings.aircraft, settings.places, settings.radius, _random)) {
    for (std::uint32_t i = 0; i < _aircraft.size(); ++i) schedule(i);
}

void Traffic::schedule(std::uint32_t aircraft) {
    auto const& profile = _aircraft[aircraft].profile();
    std::uint32_t kind = 0;
    for (auto const& transmission : transmissionsOf(_mix)) {
        auto const first = _random.below(transmission.interval * kMillisecond);
        if (transmission.isSentBy(profile)) _events.push({first, aircraft, kind, 0});
        ++kind;
    }
    for (unsigned i = 0; i < _interrogators; ++i, ++kind) {
        auto const first = _random.below((kRotation + i * kRotationStep) * kMillisecond);
        if (profile.hasModeS) _events.push({first, aircraft, kind, 0});
    }
}

void Traffic::scheduleAgain(Event event) {
    auto const transmissions = transmissionsOf(_mix);
    ++event.count;
    if (event.kind < transmissions.size()) {
        auto const fifth = transmissions[event.kind].interval * kMillisecond / 5;
        event.nanoseconds += 4 * fifth + _random.below(2 * fifth);
    } else if (event.count % kRepliesPerPass != 0) {
        event.nanoseconds += kInterrogation * kMillisecond;
    } else {
        auto const interrogator = event.kind - transmissions.size();
        event.nanoseconds += (kRotation + interrogator * kRotationStep) * kMillisecond;
    }
    _events.push(event);
}

// All-call replies are for radars that have not locked the aircraft out.
Frame Traffic::interrogated(Event const& event) const {
    auto const& aircraft = _aircraft[event.aircraft];
    auto const state = aircraft.at(static_cast<double>(event.nanoseconds) / 1e9);
    auto const interrogator = static_cast<std::uint32_t>(event.kind - transmissionsOf(_mix).size() + 1);
    auto const number = registerAskedFor(aircraft.profile(), interrogator, event.count);
    auto const frame = [&](std::string bytes, unsigned registerNumber = 0) {
        return Frame{event.nanoseconds, std::move(bytes), event.aircraft, false, registerNumber};
    };
    switch (event.count % kRepliesPerPass) {
    case 0: return frame(allCallReply(aircraft, state, codeOf(interrogator, _mix)));
    case 1:
        if (number != 0) return frame(commBAltitudeReply(aircraft, state, number), number);
        return frame(altitudeReply(aircraft, state));
    case 2:
        if (number != 0) return frame(commBIdentityReply(aircraft, state, number), number);
        return frame(identityReply(aircraft, state));
    default: return frame(altitudeReply(aircraft, state));
    }
}

Frame Traffic::frameOf(Event const& event) const {
    auto const transmissions = transmissionsOf(_mix);
    if (event.kind >= transmissions.size()) return interrogated(event);
    auto const& aircraft = _aircraft[event.aircraft];
    auto const state = aircraft.at(static_cast<double>(event.nanoseconds) / 1e9);
    auto const& transmission = transmissions[event.kind];
    return {event.nanoseconds, transmission.frame(aircraft, state, event.count), event.aircraft, false};
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

    auto frame = frameOf(event);
    frame.damaged = damage(frame.bytes);
    scheduleAgain(event);
    return frame;
}

} // namespace quorvel::simulate
