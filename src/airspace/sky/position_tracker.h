// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <airspace/compact_position.h>
#include <airspace/frame.h>
#include <airspace/place.h>

#include <array>
#include <cstdint>
#include <optional>

namespace quorvel::airspace {

/// A position message as it was received, with what is known beside it.
struct PositionReport {
    CompactPosition position;            ///< as it was sent
    TimeMs time = 0;                     ///< of reception
    Source source = Source::AdsB;        ///< whose: messages of different sources make no pair
    bool isRepaired = false;             ///< damaged bits of it were repaired
    std::optional<double> groundSpeedKt; ///< reported within the last seconds, kt
    std::optional<double> radiusMetres;  ///< containment radius Rc by its NIC, m
};

/// The places of one aircraft by its position messages.
///
/// The first place comes from a pair of messages (within 10 s in the air, 25 s on the surface, 50 s there up to 25 kt);
/// from then on each message gives one, near the last. On the surface, the side on which a pair lies is that of the last
/// place, or of the receiver. Where there is a pair as well, both ways must give the same place.
///
/// A place must be within range of the receiver and reachable from the last one at the reported speed. When a pair says
/// otherwise, no place is given until pairs agree again: with the last place, or three in a row with each other, which
/// are believed then. A repaired message gives no place and makes no pair: a wrong repair looks like any other message.
///
/// Source: RTCA DO-260B, 2.2.10.3 and A.1.7.
class PositionTracker {
public:
    /// What became of a message.
    enum class Verdict : std::uint8_t {
        Incomplete, ///< it needs another one
        Repaired,   ///< it was repaired
        Given,      ///< it gave a place
        Believed,   ///< it gave a place, far from the last one, which was wrong
        OutOfRange, ///< its place is too far from the receiver
        TooFast,    ///< its place cannot be reached from the last one
        Ambiguous,  ///< near the last place it lies elsewhere than by its pair
    };

    /// Takes the next message. When it gives a place, that is `place()` from then on.
    Verdict take(PositionReport const& report, PositionLimits const& limits);

    /// The last place; none before the first.
    std::optional<Place> place() const { return _isPlaced ? std::optional(_last.place) : std::nullopt; }

    TimeMs time() const { return _last.time; }         ///< of the last place; 0 before the first
    std::uint32_t refused() const { return _refused; } ///< messages whose place was refused

private:
    struct Fix {
        Place place;
        TimeMs time = 0;
    };
    struct Half {
        CompactPosition position;
        TimeMs time = 0; // 0: there is none
        Source source = Source::None;
    };

    std::optional<Place> fromPair(PositionReport const& report, std::optional<Place> const& reference) const;
    std::optional<Place> nearLast(PositionReport const& report) const;
    Verdict judge(PositionReport const& report, Place const& place, std::optional<Place> const& paired,
        PositionLimits const& limits) const;
    Verdict refuse(PositionReport const& report, std::optional<Place> const& paired, Verdict verdict);
    Verdict give(Fix const& fix, Verdict verdict);

    std::array<Half, 2> _halves; // even, odd
    Fix _last;
    Fix _rival;                     // the last place by a pair that was refused
    std::uint32_t _refused = 0;     // in all
    std::uint8_t _rivalsInARow = 0; // that could be one flight
    bool _isPlaced = false;
};

} // namespace quorvel::airspace
