// SPDX-License-Identifier: MIT
#include <airspace/velocity.h>

#include "airspace/readings/squitter_contents.h"

#include <cmath>

namespace quorvel::airspace {

namespace {

constexpr std::uint32_t kDifferenceBeyondScale = 127;
constexpr int kSupersonicStepKt = 4;

// A number whose code 0 is no information and whose code 1 is 0, with the sign bit in front.
std::optional<std::int32_t> offsetNumber(RegisterBits const& me, unsigned sign, unsigned last, int step) {
    auto const code = static_cast<int>(me.number(sign + 1, last));
    if (code == 0) return std::nullopt;
    return me.flag(sign) ? -step * (code - 1) : step * (code - 1);
}

void readOverGround(RegisterBits const& me, int step, HorizontalVelocity& velocity) {
    velocity.eastKt = offsetNumber(me, 14, 24, step);
    velocity.northKt = offsetNumber(me, 25, 35, step);
}

void readThroughAir(RegisterBits const& me, int step, HorizontalVelocity& velocity) {
    if (me.flag(14)) velocity.headingDegrees = me.number(15, 24) * (360.0 / 1024);
    velocity.airspeedType = me.flag(25) ? AirspeedType::True : AirspeedType::Indicated;
    if (auto const code = static_cast<int>(me.number(26, 35)); code != 0) velocity.airspeedKt = step * (code - 1);
}

// Into a velocity that is empty so far.
void readHorizontal(SquitterSource const& source, HorizontalVelocity& velocity) {
    switch (source.subtype) {
    case 1: return readOverGround(source.me, 1, velocity);
    case 2: return readOverGround(source.me, kSupersonicStepKt, velocity);
    case 3: return readThroughAir(source.me, 1, velocity);
    case 4: return readThroughAir(source.me, kSupersonicStepKt, velocity);
    default: return;
    }
}

std::optional<std::int32_t> heightDifference(RegisterBits const& me) {
    if (me.number(50, 56) == kDifferenceBeyondScale) return std::nullopt;
    return offsetNumber(me, 49, 56, 25);
}

void readTisBVelocity(SquitterSource const& source, SquitterContent& content) {
    auto const& me = source.me;
    auto& velocity = content.emplace<TisBVelocity>();
    velocity.nacP = static_cast<std::uint8_t>(me.number(10, 13));
    readHorizontal(source, velocity.horizontal);
    velocity.verticalRateFtMin = offsetNumber(me, 37, 46, 64);
    velocity.nicSupplement = me.flag(47);
    if (me.flag(36)) {
        velocity.gnssMinusBarometricFt = heightDifference(me);
    } else {
        velocity.nacV = static_cast<std::uint8_t>(me.number(48, 50));
        velocity.sil = static_cast<std::uint8_t>(me.number(51, 52));
    }
}

bool isAssigned(unsigned subtype) { return subtype >= 1 && subtype <= 4; }

} // namespace

std::optional<double> HorizontalVelocity::groundSpeedKt() const {
    if (!eastKt || !northKt) return std::nullopt;
    double const east = *eastKt;
    double const north = *northKt;
    return std::sqrt(east * east + north * north);
}

std::optional<double> HorizontalVelocity::trackDegrees() const {
    if (!eastKt || !northKt || (*eastKt == 0 && *northKt == 0)) return std::nullopt;
    constexpr double kDegrees = 57.295779513082320877; // of a radian
    double const track = std::atan2(*eastKt, *northKt) * kDegrees;
    return track < 0.0 ? track + 360.0 : track;
}

void readVelocity(SquitterSource const& source, SquitterContent& content) {
    if (source.origin == SquitterOrigin::TisB) {
        return (isAssigned(source.subtype) ? readTisBVelocity : readUnread)(source, content);
    }
    auto const& me = source.me;
    auto& velocity = content.emplace<AirborneVelocity>();
    velocity.isIntentChanging = me.flag(9);
    velocity.isIfrCapable = me.flag(10);
    velocity.nacV = static_cast<std::uint8_t>(me.number(11, 13));
    if (!isAssigned(source.subtype)) return;
    readHorizontal(source, velocity.horizontal);
    velocity.verticalRateSource = me.flag(36) ? VerticalRateSource::Barometric : VerticalRateSource::Gnss;
    velocity.verticalRateFtMin = offsetNumber(me, 37, 46, 64);
    velocity.gnssMinusBarometricFt = heightDifference(me);
    velocity.isDifferenceBeyondScale = me.number(50, 56) == kDifferenceBeyondScale;
}

} // namespace quorvel::airspace
