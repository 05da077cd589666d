// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_message.h>
#include <modes/adsb_target.h>
#include <modes/df_message.h>
#include <modes/export.h>
#include <modes/modes_message.h>

#include <memory>
#include <string>
#include <vector>

namespace quorvel::modes {

class ADSBAirbornePositionMessage;
class ADSBAirbornePositionMessageV0;
class ADSBAirbornePositionMessageV1;
class ADSBAirbornePositionMessageV2;
class ADSBAirborneVelocityMessage;
class ADSBAirborneVelocityMessageV0;
class ADSBAirborneVelocityMessageV1;
class ADSBAirborneVelocityMessageV2;
class ADSBAircraftOperationalStatusMessage;
class ADSBIdentityMessage;
class ADSBTargetReport;

/// Keeps the table of targets up to date with decoded replies.
///
///     ModeSDecoder decoder;
///     ADSBTracker tracker;
///     for (auto const& frame : ModeSEncapsulation::extract(buffer, ModeSEncapsulation::Avr))
///         tracker.procModeSMsg(decoder.decode(ModeSMessage::DOWNLINK, frame));
///     for (auto const& target : tracker.allTargets()) show(*target->report());
///     tracker.killTargets(now - 60'000);
///
/// Replies go to `procModeSMsg`, which takes each to the handler of its kind. Every handler of replies
/// returns the target that the reply updated, or an empty pointer when there is none: no message, confidence
/// below `MEDIUM` (for DF17 below `HIGH`), or no track number left. The handlers of ADS-B messages change
/// nothing if either pointer is empty, and take nothing from a message of another version than the target's
/// that only that version carries.
///
/// Source: positions from pairs of frames, ICAO Doc 9871, C.2.6; versions, RTCA DO-260B, 2.2.3.2.7.2.5 and
/// appendix N; track numbers, inference of version 0 and the check of altitudes are this library's own.
///
/// The tracker has no clock and no time-out: all times are those of the replies, in milliseconds since
/// 1970-01-01 00:00:00 UTC, and the host says which targets are stale. Targets are handed out as shared
/// pointers that the host may keep. Not locked: driven from one thread. Logs under "ADSBTracker".
class TREVALLO_EXPORT ADSBTracker {
public:
    /// No targets, altitude checking off, no database file.
    ADSBTracker();

    /// Saves nothing: a host that wants the database's file updated calls `saveAircraftDb` before.
    ~ADSBTracker();

    ADSBTracker(ADSBTracker const&) = delete;
    ADSBTracker& operator=(ADSBTracker const&) = delete;

    /// Forgets every target, without updating the aircraft database, and numbers tracks from 1 again.
    /// Database and altitude checking stay.
    void reset();

    /// Switches the plausibility check of barometric altitudes: within `period` seconds of the last accepted
    /// altitude, one that differs by more than `maxDifference` feet is ignored. Off, 4 s and 150 ft at the
    /// start.
    void setAltituteBaroChecking(bool enable, unsigned int period, unsigned int maxDifference);

    /// Takes a reply of any kind to its handler. Uplink frames are ignored.
    std::shared_ptr<ADSBTarget> procModeSMsg(std::shared_ptr<ModeSMessage> const& message);

    /// Takes a reply to the handler of its downlink format. Other formats than those below are logged at
    /// `Warning` and ignored.
    std::shared_ptr<ADSBTarget> procDFMsg(std::shared_ptr<DFMessage> const& message);

    /// Air-air surveillance, short and long: vertical status and altitude.
    std::shared_ptr<ADSBTarget> procDF0Msg(std::shared_ptr<DF0Message> const& message);
    std::shared_ptr<ADSBTarget> procDF16Msg(std::shared_ptr<DF16Message> const& message);

    /// Altitude replies, surveillance and Comm-B: flight status and altitude.
    std::shared_ptr<ADSBTarget> procDF4Msg(std::shared_ptr<DF4Message> const& message);
    std::shared_ptr<ADSBTarget> procDF20Msg(std::shared_ptr<DF20Message> const& message);

    /// Identity replies, surveillance and Comm-B: flight status and squawk.
    std::shared_ptr<ADSBTarget> procDF5Msg(std::shared_ptr<DF5Message> const& message);
    std::shared_ptr<ADSBTarget> procDF21Msg(std::shared_ptr<DF21Message> const& message);

    /// All-call reply: the transponder's capability. Never makes a target.
    std::shared_ptr<ADSBTarget> procDF11Msg(std::shared_ptr<DF11Message> const& message);

    /// Extended squitter: the ADS-B message in it, decoded for the version that the aircraft is believed to
    /// follow, and that belief itself. A payload that cannot be decoded updates time and amplitude only.
    std::shared_ptr<ADSBTarget> procDF17Msg(std::shared_ptr<DF17Message> const& message);

    /// Emitter category and callsign.
    void procADSBIdentificationMsg(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBIdentityMessage> const& message);

    /// Airborne state, altitude, position, quality indicators. Frames of both kinds make a position when
    /// they are at most 10 s apart, measured on the low 32 bits of their times.
    void procADSBAirbornePositionMsg(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirbornePositionMessage> const& message);

    /// Ground speed, heading, barometric vertical rate and, for version 0, NUCr.
    void procADSBAirborneVelocityMsg(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirborneVelocityMessage> const& message);

    /// MOPS version and NIC supplement A.
    void procADSBAircraftOperationalStatusMsg(std::shared_ptr<ADSBTarget> const& target,
        std::shared_ptr<ADSBAircraftOperationalStatusMessage> const& message);

    /// What only one version's messages carry: NIC supplement B in positions of version 2, NUCr in velocities
    /// of version 0, nothing in the others. The handlers above take the same from a message of the target's
    /// version. Here NIC supplement B is taken whatever that version is; NUCr only while it is 0.
    void procADSBAirbornePositionMsgV0(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirbornePositionMessageV0> const& message);
    void procADSBAirbornePositionMsgV1(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirbornePositionMessageV1> const& message);
    void procADSBAirbornePositionMsgV2(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirbornePositionMessageV2> const& message);
    void procADSBAirborneVelocityMsgV0(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirborneVelocityMessageV0> const& message);
    void procADSBAirborneVelocityMsgV1(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirborneVelocityMessageV1> const& message);
    void procADSBAirborneVelocityMsgV2(
        std::shared_ptr<ADSBTarget> const& target, std::shared_ptr<ADSBAirborneVelocityMessageV2> const& message);

    /// Decodes a 7-byte ME payload for the version that the aircraft is known to follow: the target's if
    /// confirmed, else the database's, else `MOPS_V0`. Changes nothing. Empty if it cannot be decoded.
    std::shared_ptr<ADSBMessage> decodeADSBMsg(unsigned int icaoAddr, std::string const& payload) const;

    /// Takes over the valid items of a report made elsewhere, its track number included (0 if that is not
    /// valid); version, quality indicators and statistics are not taken. The heading is stamped with the
    /// report's own time. Returns the target; empty for a report that is absent or not valid, or when no
    /// track number is left.
    std::shared_ptr<ADSBTarget> procTargetReport(std::shared_ptr<ADSBTargetReport> const& report);

    /// Saves the aircraft database to its present file, if it has one, then loads the one at `path`. What the
    /// CSV library throws for files that cannot be read or written passes to the caller.
    void setAircraftDbFile(std::string const& path);

    /// Saves the aircraft database to its file; does nothing without one. Exceptions as above.
    void saveAircraftDb();

    /// The target of an address; a new one with the next free track number where there is none; an empty
    /// pointer when all numbers are in use.
    std::shared_ptr<ADSBTarget> createTarget(unsigned int icaoAddr);

    /// The next free track number, 0 when there are 4095 targets. Numbers are handed out in rising order from
    /// 1 to 4095 and then from 1 again, without those in use; each call moves on.
    unsigned int getNextTrackId();

    /// The target of an address, or an empty pointer.
    std::shared_ptr<ADSBTarget> findTarget(unsigned int icaoAddr);
    std::shared_ptr<ADSBTarget const> findConstTarget(unsigned int icaoAddr) const;

    /// All targets, or those last updated after `since` and, if given, not after `until`; in the order of
    /// their addresses.
    std::vector<std::shared_ptr<ADSBTarget>> allTargets() const;
    std::vector<std::shared_ptr<ADSBTarget>> allTargetsSince(unsigned long long since) const;
    std::vector<std::shared_ptr<ADSBTarget>> allTargetsSince(unsigned long long since, unsigned long long until) const;

    /// Drops one target, and hands it to the aircraft database and the caller; empty, and nothing changes,
    /// unless the address is tracked under this number. Logged at `Debug`.
    std::shared_ptr<ADSBTarget> killTarget(unsigned int const& trackId, unsigned int const& icaoAddr);

    /// Drops every target last updated at `time` or before, as above, in the order of their addresses.
    std::vector<std::shared_ptr<ADSBTarget>> killTargets(unsigned long long time);

    /// Sets a barometric altitude in feet unless the plausibility check rejects it.
    void updateTargetAltituteBaro(std::shared_ptr<ADSBTarget> const& target, int altitude, unsigned long long time);

private:
    struct TREVALLO_HIDDEN Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace quorvel::modes
