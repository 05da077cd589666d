// SPDX-License-Identifier: MIT
#include "airspace/readings/squitter_contents.h"

#include "airspace/readings/read_into.h"
#include "airspace/readings/six_bit_text.h"

namespace quorvel::airspace {

namespace {

constexpr unsigned kFirstGnssHeightType = 20;

unsigned typeCodeOf(RegisterBits const& me) { return me.number(1, 5); }

SurveillanceStatus surveillanceStatusOf(RegisterBits const& me, unsigned first) {
    return static_cast<SurveillanceStatus>(me.number(first, first + 1));
}

void readCompactPosition(RegisterBits const& me, bool isOnSurface, CompactPosition& position) {
    position.latitude = me.number(23, 39);
    position.longitude = me.number(40, 56);
    position.isOdd = me.flag(22);
    position.isOnSurface = isOnSurface;
}

// The bytes of MB that an advisory is read from.
ResolutionAdvisory advisoryOf(RegisterBits const& me) {
    std::array<char, RegisterBits::kBytes> bytes;
    for (unsigned i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(me.number(8 * i + 1, 8 * i + 8));
    return readResolutionAdvisory({bytes.data(), bytes.size()});
}

// Code 1 is less than half a step, the last one more than its lower bound.
std::optional<SpeedRange> coarseSpeed(std::uint32_t code) {
    constexpr double kStepKt = 32.0;
    constexpr std::uint32_t kLast = 63;
    if (code == 0) return std::nullopt;
    auto const upper = kStepKt * code - kStepKt / 2;
    return SpeedRange{code == 1 ? 0.0 : upper - kStepKt, code == kLast ? std::nullopt : std::optional(upper)};
}

} // namespace

void readUnread(SquitterSource const& /*source*/, SquitterContent& /*content*/) {}

void readNoPosition(SquitterSource const& source, SquitterContent& content) {
    content = NoPosition{surveillanceStatusOf(source.me, 6), readSquitterAltitudeCode(source.me.number(9, 20))};
}

void readIdentification(SquitterSource const& source, SquitterContent& content) {
    auto const& me = source.me;
    auto const set = static_cast<char>('A' + (4 - typeCodeOf(me)));
    content = Identification{{set, static_cast<std::uint8_t>(me.number(6, 8))}, sixBitText<8>(me.value())};
}

void readSurfacePosition(SquitterSource const& source, SquitterContent& content) {
    auto const& me = source.me;
    auto& surface = content.emplace<SurfacePosition>();
    surface.movement = static_cast<std::uint8_t>(me.number(6, 12));
    surface.speed = speedOfMovement(surface.movement, source.version.value_or(0));
    if (me.flag(13)) surface.trackDegrees = me.number(14, 20) * (360.0 / 128);
    surface.isTimeSynchronized = me.flag(21);
    readCompactPosition(me, true, surface.position);
}

void readAirbornePosition(SquitterSource const& source, SquitterContent& content) {
    auto const& me = source.me;
    bool const isGnss = typeCodeOf(me) >= kFirstGnssHeightType;
    auto& airborne = content.emplace<AirbornePosition>();
    airborne.surveillanceStatus = surveillanceStatusOf(me, 6);
    airborne.nicSupplementB = me.flag(8);
    airborne.altitudeType = isGnss ? AltitudeType::Gnss : AltitudeType::Barometric;
    readSquitterInto(airborne.altitude, me.number(9, 20));
    airborne.isTimeSynchronized = me.flag(21);
    readCompactPosition(me, false, airborne.position);
}

void readTestMessage(SquitterSource const& source, SquitterContent& content) {
    constexpr unsigned kModeACode = 7;
    if (source.subtype != kModeACode || !source.mayBeOfVersion(0, 1)) return readUnread(source, content);
    content = TestMessage{readIdentityCode(source.me.number(9, 21))};
}

void readAircraftStatus(SquitterSource const& source, SquitterContent& content) {
    constexpr unsigned kEmergency = 1;
    constexpr unsigned kAdvisory = 2;
    auto const& me = source.me;
    bool const isGroundStations = source.origin == SquitterOrigin::TisB;
    if (source.subtype == kEmergency && !isGroundStations) {
        content = EmergencyStatus{static_cast<EmergencyState>(me.number(9, 11)), readIdentityCode(me.number(12, 24))};
    } else if (source.subtype == kAdvisory && !isGroundStations && source.mayBeOfVersion(2, 2)) {
        content = AdvisoryBroadcast{advisoryOf(me)};
    } else {
        readUnread(source, content);
    }
}

CoarsePosition readCoarsePosition(std::string_view bytes) {
    CoarsePosition coarse;
    if (bytes.size() != RegisterBits::kBytes) return coarse;
    RegisterBits const me(bytes);
    coarse.surveillanceStatus = surveillanceStatusOf(me, 2);
    coarse.serviceVolume = static_cast<std::uint8_t>(me.number(4, 7));
    readSquitterInto(coarse.altitude, me.number(8, 19));
    if (me.flag(20)) coarse.trackDegrees = me.number(21, 25) * (360.0 / 32);
    coarse.groundSpeed = coarseSpeed(me.number(26, 31));
    coarse.isOdd = me.flag(32);
    coarse.latitude = static_cast<std::uint16_t>(me.number(33, 44));
    coarse.longitude = static_cast<std::uint16_t>(me.number(45, 56));
    return coarse;
}

} // namespace quorvel::airspace
