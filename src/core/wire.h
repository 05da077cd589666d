// SPDX-License-Identifier: MIT
#pragma once

#include "core/bits.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// What transponders and receivers send: the numbers that every reader and writer of it needs.
namespace quorvel::modes::wire {

// Frames (ICAO Annex 10 Vol. IV, 3.1.2.3.1): lengths, and where fields begin that more than one format has.
inline constexpr std::size_t kModeAcFrameBytes = 2;
inline constexpr std::size_t kShortFrameBytes = 7;
inline constexpr std::size_t kLongFrameBytes = 14;
inline constexpr unsigned kFormatBits = 5;
inline constexpr unsigned kAddressAt = 8;
inline constexpr unsigned kAddressBits = 24;
inline constexpr unsigned kPayloadAt = 32; // of extended squitters
inline constexpr std::size_t kPayloadBytes = 7;
inline constexpr unsigned kTypeCodeBits = 5;
inline constexpr unsigned kParityBits = 24; // the last of each frame

/// Whether Mode A/C replies or Mode S frames are so long.
constexpr bool isFrameLength(std::size_t bytes) {
    return bytes == kModeAcFrameBytes || bytes == kShortFrameBytes || bytes == kLongFrameBytes;
}

/// The downlink format of a Mode S frame, 0 to 31; those from 24 up are all of format 24.
inline std::uint8_t formatCode(std::string_view frame) { return bits<std::uint8_t>(frame, 0, kFormatBits); }

/// The type code of the ADS-B message in an extended squitter.
inline std::uint8_t typeCode(std::string_view squitter) {
    return bits<std::uint8_t>(squitter, kPayloadAt, kTypeCodeBits);
}

// The time stamp of receivers has 48 bits. Those that keep UTC send 18 bits second of the day and 30 bits nanosecond,
// others a count of 12 MHz.
inline constexpr std::size_t kStampBytes = 6;
inline constexpr unsigned kStampBits = 8 * kStampBytes;
inline constexpr unsigned kNanosecondBits = 30;
inline constexpr std::uint64_t kSecondsPerDay = 86'400;
inline constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
inline constexpr std::uint64_t kNanosecondsPerMs = 1'000'000;
inline constexpr std::uint64_t kDayMs = 1000 * kSecondsPerDay;
inline constexpr std::int64_t kTicksPerMs = 12'000;

/// The stamp whose first byte is at `at`.
inline std::uint64_t stampAt(std::string_view bytes, std::size_t at) {
    return bits<std::uint64_t>(bytes, 8 * at, kStampBits);
}

/// The stamp of a second of the day and a nanosecond in it, and the two of a stamp.
constexpr std::uint64_t stampOf(std::uint64_t second, std::uint64_t nanosecond) {
    return second << kNanosecondBits | nanosecond;
}
constexpr std::uint64_t secondOf(std::uint64_t stamp) { return stamp >> kNanosecondBits; }
constexpr std::uint64_t nanosecondOf(std::uint64_t stamp) {
    return stamp & ((std::uint64_t{1} << kNanosecondBits) - 1);
}

constexpr bool canBeTimeOfDay(std::uint64_t stamp) {
    return secondOf(stamp) < kSecondsPerDay && nanosecondOf(stamp) < kNanosecondsPerSecond;
}

/// A stamp as milliseconds since midnight.
constexpr std::uint64_t timeOfDayMs(std::uint64_t stamp) {
    return secondOf(stamp) * 1000 + nanosecondOf(stamp) / kNanosecondsPerMs;
}

/// The start of the UTC day of a time, both in milliseconds since 1970-01-01 00:00:00 UTC. Receivers do not send the
/// day.
constexpr std::uint64_t midnightBefore(std::uint64_t ms) { return ms - ms % kDayMs; }

/// From one time of day to another in ms, over midnight where that is nearer.
constexpr std::int64_t msBetweenTimesOfDay(std::uint64_t from, std::uint64_t to) {
    auto const later = static_cast<std::int64_t>((to + kDayMs - from % kDayMs) % kDayMs);
    auto const day = static_cast<std::int64_t>(kDayMs);
    return later > day / 2 ? later - day : later;
}

/// From one count to another, at 48 bits, so that a counter goes on across its wrap.
constexpr std::int64_t ticksBetween(std::uint64_t from, std::uint64_t to) {
    constexpr unsigned kUnused = 64 - kStampBits;
    return static_cast<std::int64_t>((to - from) << kUnused) >> kUnused;
}

/// A record of a Beast stream without doubling, head and body.
///
///     0x1A  type  time stamp, 6 bytes  signal, 1 byte  body
///
/// Types "1" to "3" are frames of 2, 7 and 14 bytes. Types "4" and "5" are the receiver's own status and
/// position, with 14 bytes. Aggregators put a record of type 0xE3 before the frames of each receiver, whose
/// identity of 8 bytes is all that it has after the type.
struct BeastRecord {
    static constexpr char kEscape = '\x1A';
    static constexpr char kIdentityType = '\xE3';
    static constexpr std::size_t kHeadBytes = 2;
    static constexpr std::size_t kStampAt = kHeadBytes;
    static constexpr std::size_t kSignalAt = kStampAt + kStampBytes;
    static constexpr std::size_t kBodyAt = kSignalAt + 1;
    static constexpr std::size_t kStatusBytes = 14;
    static constexpr std::size_t kIdentityAt = kHeadBytes;
    static constexpr std::size_t kIdentityBytes = 8;
    static constexpr std::size_t kLongestBytes = kBodyAt + kLongFrameBytes;

    /// Bytes of the frame in a record of this type; 0 for types that have none.
    static constexpr std::size_t frameBytes(char type) {
        switch (type) {
        case '1': return kModeAcFrameBytes;
        case '2': return kShortFrameBytes;
        case '3': return kLongFrameBytes;
        default: return 0;
        }
    }

    /// The type of the record of a frame of so many bytes; 0 for lengths that no frame has.
    static constexpr char typeOf(std::size_t bytes) {
        for (char const type : {'1', '2', '3'}) {
            if (frameBytes(type) == bytes) return type;
        }
        return 0;
    }

    /// Whether records of this type are the receiver's own.
    static constexpr bool isStatus(char type) { return type == '4' || type == '5'; }

    /// Bytes of a record of this type, 0x1A and type included; 0 for other values.
    static constexpr std::size_t bytes(char type) {
        if (auto const frame = frameBytes(type); frame > 0) return kBodyAt + frame;
        if (isStatus(type)) return kBodyAt + kStatusBytes;
        return type == kIdentityType ? kIdentityAt + kIdentityBytes : 0;
    }
};

} // namespace quorvel::modes::wire
