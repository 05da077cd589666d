// SPDX-License-Identifier: MIT
#include <airspace/extended_squitter.h>

#include "airspace/readings/squitter_contents.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace quorvel::airspace {

namespace {

// What is known of a type code: its name, its register (0: none), the last bit of its subtype, which begins with ME 6 (0:
// none), and who reads it.
struct Type {
    std::string_view name;
    std::uint8_t registerNumber;
    std::uint8_t subtypeLast;
    void (*read)(SquitterSource const&, SquitterContent&);
};

constexpr Type kAirborne{"airborne position", 0x05, 0, readAirbornePosition};
constexpr Type kSurface{"surface position", 0x06, 0, readSurfacePosition};
constexpr Type kIdentification{"identification", 0x08, 0, readIdentification};
constexpr Type kReserved{"reserved", 0, 0, readUnread};

constexpr std::array<Type, 32> kTypes{{
    {"no position", 0, 0, readNoPosition}, // 0
    kIdentification,
    kIdentification,
    kIdentification,
    kIdentification,
    kSurface,
    kSurface,
    kSurface,
    kSurface, // 5
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    kAirborne,
    {"airborne velocity", 0x09, 8, readVelocity}, // 19
    kAirborne,
    kAirborne,
    kAirborne,
    {"test message", 0, 8, readTestMessage}, // 23
    {"surface system status", 0, 0, readUnread},
    kReserved,
    kReserved,
    {"trajectory change", 0, 0, readUnread}, // 27
    {"aircraft status", 0x61, 8, readAircraftStatus},
    {"target state", 0x62, 7, readTargetState},
    {"operational coordination", 0, 0, readUnread}, // 30
    {"operational status", 0x65, 8, readOperationalStatus},
}};

Type const& typeOf(std::string_view me) { return kTypes[static_cast<unsigned char>(me.front()) >> 3]; }

} // namespace

std::optional<std::uint8_t> subtypeOf(std::string_view me) {
    if (me.empty()) return std::nullopt;
    auto const& type = typeOf(me);
    if (type.subtypeLast == 0) return std::nullopt;
    auto const upToIt = static_cast<unsigned char>(me.front()) & 7U; // ME 6 to 8, of which it has all or the first
    return static_cast<std::uint8_t>(upToIt >> (8 - type.subtypeLast));
}

SquitterContent readContent(std::string_view me, SquitterOrigin origin, Reading const& how) {
    constexpr std::uint8_t kLastVersion = 2;
    auto const version = how.version ? std::optional(std::min(*how.version, kLastVersion)) : std::nullopt;
    UnreadSquitter unread;
    std::memcpy(unread.me.data(), me.data(), unread.me.size());
    SquitterContent content = unread;
    Type const& type = typeOf(me);
    type.read({RegisterBits(me), subtypeOf(me).value_or(0), origin, version}, content);
    return content;
}

SquitterContent readSquitterContent(std::string_view me, SquitterOrigin origin, Reading const& how) {
    return me.size() == RegisterBits::kBytes ? readContent(me, origin, how) : SquitterContent();
}

std::optional<std::uint8_t> registerOfTypeCode(std::uint8_t typeCode) {
    if (typeCode >= kTypes.size() || kTypes[typeCode].registerNumber == 0) return std::nullopt;
    return kTypes[typeCode].registerNumber;
}

std::string_view nameOfTypeCode(std::uint8_t typeCode) {
    return typeCode < kTypes.size() ? kTypes[typeCode].name : kReserved.name;
}

} // namespace quorvel::airspace
