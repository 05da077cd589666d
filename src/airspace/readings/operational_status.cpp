// SPDX-License-Identifier: MIT
#include <airspace/operational_status.h>

#include "airspace/readings/squitter_contents.h"

#include <array>

namespace quorvel::airspace {

namespace {

constexpr unsigned kAirborne = 0;
constexpr unsigned kSurface = 1;

std::uint8_t code(RegisterBits const& me, unsigned first, unsigned last) {
    return static_cast<std::uint8_t>(me.number(first, last));
}

void readAirborneCapability(OperationalStatus& status, RegisterBits const& me, bool isVersion1) {
    status.isTcasOperational = me.flag(11) != isVersion1;
    status.reportsAirVelocity = me.flag(15);
    status.reportsTargetState = me.flag(16);
    status.targetChange = code(me, 17, 18);
    if (!isVersion1) status.receivesUat = me.flag(19);
}

void readSurfaceCapability(OperationalStatus& status, RegisterBits const& me, bool isVersion1) {
    status.isLowPower = me.flag(15);
    if (isVersion1) {
        status.isPositionOffsetApplied = me.flag(11);
    } else {
        status.receivesUat = me.flag(16);
        status.nacV = code(me, 17, 19);
        status.nicSupplementC = me.flag(20);
    }
}

// The capability class field has these contents if its format bits are 0.
void readCapabilityClass(OperationalStatus& status, RegisterBits const& me, unsigned subtype, bool isVersion1) {
    if (subtype == kSurface) status.lengthWidth = code(me, 21, 24);
    if (me.number(9, 10) != 0) return;
    (isVersion1 ? status.hasTrafficDisplay : status.receivesExtendedSquitter) = me.flag(12);
    (subtype == kAirborne ? readAirborneCapability : readSurfaceCapability)(status, me, isVersion1);
}

// The same of the operational mode field.
void readOperationalMode(OperationalStatus& status, RegisterBits const& me, unsigned subtype, bool isVersion1) {
    if (me.number(25, 26) != 0) return;
    status.isAdvisoryActive = me.flag(27);
    status.isIdentActive = me.flag(28);
    if (isVersion1) {
        status.receivesAtcServices = me.flag(29);
        return;
    }
    status.hasSingleAntenna = me.flag(30);
    status.sda = code(me, 31, 32);
    if (subtype == kSurface) status.antennaOffset = code(me, 33, 40);
}

void readQuality(OperationalStatus& status, RegisterBits const& me, unsigned subtype, bool isVersion1) {
    status.nicSupplementA = me.flag(44);
    status.nacP = code(me, 45, 48);
    status.sil = code(me, 51, 52);
    if (subtype == kAirborne) {
        (isVersion1 ? status.barometricQuality : status.gva) = code(me, 49, 50);
        status.isNicBaroChecked = me.flag(53);
    } else {
        status.isTrackHeading = me.flag(53);
    }
    status.isMagneticNorth = me.flag(54);
    if (!isVersion1) status.silSupplement = me.flag(55);
}

// By code, from 1.
constexpr std::array<AircraftSize, 15> kSizes{{{15, 23}, {25, 28.5}, {25, 34}, {35, 33}, {35, 38}, {45, 39.5}, {45, 45},
    {55, 45}, {55, 52}, {65, 59.5}, {65, 67}, {75, 72.5}, {75, 80}, {85, 80}, {85, 90}}};
constexpr AircraftSize kSmallestSize{15, 11.5};

} // namespace

void readOperationalStatus(SquitterSource const& source, SquitterContent& content) {
    if (source.origin == SquitterOrigin::TisB || source.subtype > kSurface) return readUnread(source, content);
    auto const& me = source.me;
    auto& status = content.emplace<OperationalStatus>();
    status.version = code(me, 41, 43);
    status.isReadAsVersion2 = status.version == 3;
    status.capabilityClass = static_cast<std::uint16_t>(me.number(9, 24));
    status.operationalMode = static_cast<std::uint16_t>(me.number(25, 40));
    if (status.version < 1 || status.version > 3) return;
    bool const isVersion1 = status.version == 1;
    readCapabilityClass(status, me, source.subtype, isVersion1);
    readOperationalMode(status, me, source.subtype, isVersion1);
    readQuality(status, me, source.subtype, isVersion1);
}

std::optional<AircraftSize> sizeOf(std::uint8_t lengthWidth, std::uint8_t version) {
    if (lengthWidth == 0) return version < 2 ? std::optional(kSmallestSize) : std::nullopt;
    return lengthWidth <= kSizes.size() ? std::optional(kSizes[lengthWidth - 1]) : std::nullopt;
}

AntennaOffset antennaOffsetOf(std::uint8_t code) {
    constexpr int kStepMetres = 2;
    AntennaOffset offset;
    bool const isRight = (code & 0x80) != 0;
    auto const lateral = kStepMetres * (code >> 5 & 3);
    if (isRight || lateral != 0) offset.rightMetres = isRight ? lateral : -lateral;
    auto const longitudinal = code & 0x1F;
    offset.isCorrected = longitudinal == 1;
    if (longitudinal > 1) offset.aftMetres = kStepMetres * (longitudinal - 1);
    return offset;
}

} // namespace quorvel::airspace
