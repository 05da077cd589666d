// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <airspace/airspace_export.h>
#include <airspace/counts.h>
#include <airspace/frame.h>
#include <airspace/reply.h>
#include <airspace/sky_options.h>
#include <modes/adsb_target_report.h>
#include <modes/adsb_tracker.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quorvel::airspace {

/// The aircraft as the core library's own decoder and tracker read them, for hosts that want its messages, its reports
/// with their pages, or its aircraft database. What it reads differs from the standards where the core does so on
/// purpose; `Sky` goes by the standards.
///
/// It decodes, judges, tracks, checks positions, makes room among the 4,095 track numbers, and forgets. How long an
/// address or an interrogator stays trusted (10 minutes, 1 minute) goes by the clock of the host, all else by the times of
/// the frames.
///
/// Threads: a sky is used from one thread at a time, its `const` functions too; separate skies may be used
/// from separate threads at once, and share nothing but the core's log. What it hands out (`Reply`,
/// `Aircraft`, reports) are values of the caller's own.
///
/// Bad frames never throw: they are counted and have no other effect. Once warm, no memory is allocated for
/// a frame.
class TREVALLO_AIRSPACE_EXPORT CoreSky {
public:
    /// A sky without aircraft.
    explicit CoreSky(SkyOptions const& options = {});
    ~CoreSky();

    /// Takes over all that the other holds; that one can only be destroyed or assigned to.
    CoreSky(CoreSky&&) noexcept;
    CoreSky& operator=(CoreSky&&) noexcept;

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

    /// All aircraft as they are at a moment, in the order of their addresses. Items that the core does not read are
    /// empty.
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
