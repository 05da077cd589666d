// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace quorvel::airspace {

/// Milliseconds since the base of a track; 0 is never.
using TrackTime = std::uint32_t;

/// Which items are ruled alike by their sources.
enum class ItemClass : std::uint8_t {
    Identity,  ///< callsign, category, version
    Squawk,    ///< Mode A code
    Ground,    ///< whether it is on the ground
    Status,    ///< alert, ident, emergency, advisory
    Place,     ///< position, with what is known of its integrity
    Altitude,  ///< heights and their difference
    Motion,    ///< over ground and vertical
    Air,       ///< through the air, and attitude
    Intent,    ///< what is selected
    Integrity, ///< accuracy and integrity that is sent apart from positions
    Weather,   ///< wind and temperature
};

/// How the sources of a class of items are ranked, 1 being the best, and how long an item keeps a worse one out.
struct Precedence {
    std::array<std::uint8_t, 7> rank; ///< by `Source`
    TrackTime freshMs;                ///< since its last update
};

/// By `ItemClass`. A message of the aircraft itself comes first, then what a ground station repeats, then replies, then
/// what a ground station has worked out. Times are several periods of the messages that bring the item: RTCA DO-260B,
/// 2.2.3.3.2.
inline constexpr std::array<Precedence, 11> kPrecedences{{
    // none, ADS-B, ADS-R, TIS-B, Mode S, Comm-B, derived
    {{9, 1, 2, 4, 3, 3, 5}, 60'000}, // Identity
    {{9, 1, 2, 4, 3, 3, 5}, 15'000}, // Squawk
    {{9, 1, 2, 4, 3, 3, 5}, 15'000}, // Ground
    {{9, 1, 2, 4, 3, 3, 5}, 5'000},  // Status
    {{9, 1, 2, 3, 4, 4, 5}, 10'000}, // Place
    {{9, 1, 3, 4, 2, 2, 5}, 5'000},  // Altitude
    {{9, 1, 2, 4, 3, 3, 5}, 5'000},  // Motion
    {{9, 1, 2, 3, 1, 1, 5}, 5'000},  // Air
    {{9, 1, 2, 4, 3, 3, 5}, 10'000}, // Intent
    {{9, 1, 2, 3, 4, 4, 5}, 30'000}, // Integrity
    {{9, 1, 2, 3, 1, 1, 5}, 60'000}, // Weather
}};

constexpr Precedence const& precedenceOf(ItemClass itemClass) {
    return kPrecedences[static_cast<std::size_t>(itemClass)];
}

/// One item of a track, as small as it can be kept: its value, what brought it, when it was last reported and when it
/// last became different.
template <class T, ItemClass Class> struct PackedItem {
    T value{};
    Source source = Source::None; // None: never reported
    TrackTime updated = 0;
    TrackTime changed = 0;

    bool isThere() const { return source != Source::None; }

    /// Whether it was reported within a time before now, by default that in which it keeps worse sources out.
    bool isFresh(TrackTime now, TrackTime within = precedenceOf(Class).freshMs) const {
        return isThere() && (updated >= now || now - updated <= within);
    }

    /// Its value if it is fresh.
    std::optional<T> fresh(TrackTime now, TrackTime within = precedenceOf(Class).freshMs) const {
        return isFresh(now, within) ? std::optional(value) : std::nullopt;
    }

    /// Whether a report of this source may replace it now.
    bool admits(Source from, TrackTime now) const {
        if (!isThere()) return true;
        auto const& rank = precedenceOf(Class).rank;
        auto const own = rank[static_cast<std::size_t>(source)];
        auto const other = rank[static_cast<std::size_t>(from)];
        return other < own || (other == own ? now >= updated : !isFresh(now));
    }

    /// Takes a report, unless a better source is fresh. False if it was not taken.
    bool offer(T const& reported, Source from, TrackTime now) {
        if (!admits(from, now)) return false;
        if (!isThere() || !(reported == value)) changed = now;
        value = reported;
        source = from;
        updated = now;
        return true;
    }

    /// The same of a value that may be missing.
    template <class Reported> bool offer(std::optional<Reported> const& reported, Source from, TrackTime now) {
        return reported && offer(static_cast<T>(*reported), from, now);
    }

    /// Moves its times back by a step, when the base of its track goes on by that.
    void rebase(TrackTime step) {
        for (auto* time : {&updated, &changed}) {
            if (*time != 0) *time = *time > step ? *time - step : 1;
        }
    }
};

/// Holds a value that a reply reports until a second reply agrees.
template <class T> struct Corroboration {
    static constexpr TrackTime kWithinMs = 15'000;

    T value{};
    TrackTime reported = 0;

    /// Whether this is the second report of a value within that time.
    bool confirms(T const& candidate, TrackTime now) {
        bool const agrees = reported != 0 && value == candidate && now >= reported && now - reported <= kWithinMs;
        value = candidate;
        reported = now;
        return agrees;
    }

    void rebase(TrackTime step) { reported = reported > step ? reported - step : 0; }
};

} // namespace quorvel::airspace
