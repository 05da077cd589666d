// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <airspace/airspace_export.h>
#include <airspace/counts.h>
#include <airspace/frame.h>
#include <airspace/place.h>
#include <airspace/reply.h>
#include <modes/adsb_target_report.h>
#include <modes/adsb_tracker.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quorvel::airspace {

/// What is done with a reply that the decoder has repaired. A repair that fits by chance makes an aircraft that
/// does not exist.
enum class RepairedReplies : std::uint8_t {
    Keep,  ///< they are taken like all others
    Known, ///< they update known aircraft and create none
    Drop,  ///< they are not given to the tracker
};

/// How frames are judged.
struct SkyOptions {
    bool altitudeCheck = false;                        ///< ignore altitudes that jump by more than 150 ft within 4 s
    RepairedReplies repaired = RepairedReplies::Known; ///< what is done with repaired replies
    PositionLimits positions;                          ///< what positions must satisfy
    TimeMs timeout = 0; ///< aircraft not heard for so many ms are dropped by `dropSilent`; 0 keeps them
};

/// Processes frames and keeps the aircraft that sent them, for one receiver or several merged:
/// decode, judge, track, check positions, make room, forget.
///
///     airspace::Sky sky;
///     for (auto const& frame : frames) sky.take(frame);
///     for (auto const& aircraft : sky.aircraft(stream.now())) show(aircraft);
///
/// The same frames give the same aircraft everywhere. Two things are judged by the clock of the host, as the
/// core library does: how long an address or an interrogator stays trusted (10 minutes, 1 minute). All else
/// goes by the times of the frames.
///
/// Threads: a sky is used from one thread at a time, its `const` functions too; separate skies may be used
/// from separate threads at once, and share nothing but the core's log. What it hands out (`Reply`,
/// `Aircraft`, reports) are values of the caller's own.
///
/// Bad frames never throw: they are counted and have no other effect. Once warm, no memory is allocated for
/// a frame.
class TREVALLO_AIRSPACE_EXPORT Sky {
public:
    /// A sky without aircraft.
    explicit Sky(SkyOptions const& options = {});
    ~Sky();

    /// Takes over all that the other holds; that one can only be destroyed or assigned to.
    Sky(Sky&&) noexcept;
    Sky& operator=(Sky&&) noexcept;

    /// Takes a frame with its time, and says what it meant. Mode A/C replies have no effect.
    Reply take(Frame const& frame);

    /// How long aircraft are kept that are not heard, in ms; 0 keeps them.
    void setTimeout(TimeMs timeout);

    /// Turns off the check of the speed of jumps, for times that do not say when positions were reported.
    void ignoreSpeeds();

    /// Drops the aircraft that have fallen silent, and those that were heard after the present, before a
    /// clock was set back: they would be young for as long as it went back. To be called about once a second.
    void dropSilent(TimeMs now);

    /// Drops all aircraft.
    void dropAll();

    /// All aircraft as they are at a moment, in the order of their addresses.
    std::vector<Aircraft> aircraft(TimeMs now) const;

    /// The aircraft of one address; none when there is none.
    std::optional<Aircraft> find(std::uint32_t address, TimeMs now) const;

    std::size_t size() const; ///< how many aircraft there are

    Counts const& counts() const; ///< of decoding, tracking and positions

    /// The core's message of the last frame taken; an empty pointer when it could not be decoded.
    std::shared_ptr<modes::ModeSMessage const> const& message() const;

    /// The core's report of an aircraft, for its page: its position is the one that passed the checks. An
    /// empty pointer when there is no such aircraft.
    std::shared_ptr<modes::ADSBTargetReport> report(std::uint32_t address) const;

    /// The core's tracker behind it, for its aircraft database. Replies go to `take`.
    modes::ADSBTracker& tracker();

    /// Called with every target that is dropped, so that a host can remember it. When it is called, whatever
    /// dropped the target has finished: the sky and its counts are without all that were dropped. So it may call
    /// any function of the sky, and set another handler, which is told of what is dropped later; it must not
    /// destroy the sky or assign to it. If it throws, the caller gets the exception, and the rest is not told.
    using Dropped = std::function<void(std::shared_ptr<modes::ADSBTarget const> const&)>;
    void onDropped(Dropped dropped);

private:
    struct TREVALLO_HIDDEN Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace quorvel::airspace
