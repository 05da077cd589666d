// SPDX-License-Identifier: MIT
#pragma once

#include <airspace/aircraft.h>
#include <airspace/airspace_export.h>
#include <airspace/counts.h>
#include <airspace/frame.h>
#include <airspace/reply.h>
#include <airspace/sky_options.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quorvel::airspace {

/// Processes frames and keeps the aircraft that sent them, for one receiver or several merged: parity, repair, trust,
/// reading by the standards, tracks, positions, room, forgetting.
///
///     airspace::Sky sky;
///     for (auto const& frame : frames) sky.take(frame);
///     for (auto const& aircraft : sky.aircraft(stream.now())) show(aircraft);
///
/// It goes by the times of the frames alone, so that a replay at any speed gives the same aircraft.
///
/// Each item of an aircraft ages by its own time. A better source is not overwritten by a worse one while it is fresh,
/// and a single reply to an interrogation, whose parity hides its address, changes neither ground state nor squawk nor
/// callsign of an aircraft that squitters otherwise. ADS-B, ADS-R and TIS-B of one ICAO address are one aircraft.
///
/// There may be 100,000 aircraft, of less than 1 KB each. When more are sent, those that have been silent for the longest
/// time make room.
///
/// Threads: a sky is used from one thread at a time, its `const` functions too; separate skies share nothing, and may be
/// used from separate threads at once. What it hands out (`Reply`, `Aircraft`) are values of the caller's own.
///
/// Bad frames never throw: they are counted and have no other effect. Once warm, no memory is allocated for a frame of a known aircraft.
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

    /// Takes frames in turn, and calls `each(frame, reply)` after each of them. The same as one by one, in half the
    /// time when there are many thousands of aircraft: what is known of them is fetched from memory ahead of their frames.
    template <class Each> void takeAll(Frames const& frames, Each&& each) {
        constexpr std::size_t ahead = 16;
        for (std::size_t i = 0; i != frames.size(); ++i) {
            if (i + ahead < frames.size()) expect(frames[i + ahead]);
            each(frames[i], take(frames[i]));
        }
    }

    /// The same where what they meant does not matter.
    void takeAll(Frames const& frames) {
        takeAll(frames, [](Frame const&, Reply const&) {});
    }

    /// Fetches from memory what is known of the aircraft of a frame that is taken soon: some 16 frames later, as
    /// `takeAll` does. It changes nothing but the time that `take` needs.
    void expect(Frame const& frame);

    /// How long aircraft are kept that are not heard, in ms; 0 keeps them.
    void setTimeout(TimeMs timeout);

    /// Turns off the check of the speed of jumps, for times that do not say when positions were reported.
    void ignoreSpeeds();

    /// Drops the aircraft that have fallen silent, and those that were heard after the present, before a
    /// clock was set back: they would be young for as long as it went back. To be called about once a second.
    void dropSilent(TimeMs now);

    /// Drops all aircraft.
    void dropAll();

    /// All aircraft as they are at a moment: those of ICAO addresses, then others by kind, each in the order of addresses.
    std::vector<Aircraft> aircraft(TimeMs now) const;

    /// The aircraft of one address; none when there is none.
    std::optional<Aircraft> find(std::uint32_t address, TimeMs now, AddressKind kind = AddressKind::Icao) const;

    /// The aircraft that a reply was given to, right after it was taken; none when it was given to none.
    std::optional<Aircraft> find(Reply const& reply, TimeMs now) const;

    std::size_t size() const; ///< how many aircraft there are

    Counts const& counts() const; ///< of decoding, tracking and positions

private:
    struct TREVALLO_HIDDEN Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace quorvel::airspace
