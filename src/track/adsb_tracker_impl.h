// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraftdb.h>
#include <modes/adsb_decoder.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_tracker.h>

#include "track/target_index.h"

#include <memory>
#include <string>

namespace quorvel::modes {

/// The name under which all sources of the tracker log.
inline std::string const kTrackerModule = "ADSBTracker";

/// What a tracker holds and does. The handlers of the public class lead here once their pointers are known to
/// hold something.
struct ADSBTracker::Impl {
    std::shared_ptr<ADSBTarget> createTarget(unsigned int icaoAddr);
    std::shared_ptr<ADSBTarget> findTarget(unsigned int icaoAddr) const;
    void renumber(ADSBTarget& target, unsigned int trackId);
    std::shared_ptr<ADSBTarget> kill(ADSBTarget const& target);

    // Replies: each returns the target that it updated.
    std::shared_ptr<ADSBTarget> track(DFMessage const& reply);
    std::shared_ptr<ADSBTarget> track(DF0Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF4Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF5Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF11Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF16Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF17Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF20Message const& reply);
    std::shared_ptr<ADSBTarget> track(DF21Message const& reply);
    template <class Reply> std::shared_ptr<ADSBTarget> trackAs(DFMessage const& reply);
    template <class Reply, class Copy> std::shared_ptr<ADSBTarget> trackTrusted(Reply const& reply, Copy const& copy);
    template <class Reply> std::shared_ptr<ADSBTarget> trackAirAir(Reply const& reply);
    template <class Reply> std::shared_ptr<ADSBTarget> trackAltitude(Reply const& reply);
    template <class Reply> std::shared_ptr<ADSBTarget> trackIdentity(Reply const& reply);
    void trackPayload(ADSBTarget& target, DF17Message const& reply);

    // ADS-B messages
    void update(ADSBTarget& target, ADSBMessage const& message);
    void update(ADSBTarget& target, ADSBIdentityMessage const& message);
    void update(ADSBTarget& target, ADSBAirbornePositionMessage const& message);
    void update(ADSBTarget& target, ADSBAirborneVelocityMessage const& message);
    void update(ADSBTarget& target, ADSBAircraftOperationalStatusMessage const& message);
    static void storeCPRFrame(ADSBTarget& target, ADSBAirbornePositionMessage const& message);
    void updateAltitude(ADSBTarget& target, int altitude, unsigned long long time) const;

    MOPSVersion versionFromDatabase(unsigned int icaoAddr) const;
    void confirmVersionFromDatabase(ADSBTarget& target, unsigned long long time) const;

    ADSBDecoder decoder;
    AircraftDB aircraftDb;
    TargetIndex targets;
    bool altitudeChecking = false;
    unsigned int altitudeCheckPeriod = 4;          // s
    unsigned int altitudeCheckMaxDifference = 150; // ft
};

} // namespace quorvel::modes
