// SPDX-License-Identifier: MIT
#pragma once

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target_status_message.h>
#include <modes/adsb_test_message.h>
#include <modes/mops_version.h>

#include <string>
#include <type_traits>

namespace quorvel::modes {

/// The type of a payload, `RESERVED` when nothing decodes it: it is too short, or its type code is reserved,
/// which goes to the log.
ADSBMessage::ADSBMessageType decodableType(std::string const& me);

namespace detail {

struct NoClass {};

template <class Message, class Use> auto withClass(Use const& use) {
    using Result = decltype(use.template operator()<ADSBTestMessage>());
    if constexpr (std::is_same_v<Message, NoClass>) {
        return Result{};
    } else {
        return use.template operator()<Message>();
    }
}

template <class Version0, class Version1, class Version2, class Unknown, class Use>
auto withClassOf(MOPSVersion version, Use const& use) {
    switch (version) {
    case MOPS_V0: return withClass<Version0>(use);
    case MOPS_V1: return withClass<Version1>(use);
    case MOPS_V2: return withClass<Version2>(use);
    default: return withClass<Unknown>(use);
    }
}

} // namespace detail

/// Calls `use.operator()<Message>()` with the class that decodes a type of message at a version, and returns
/// its result: a default one where the version does not have the type.
template <class Use> auto withMessageClass(ADSBMessage::ADSBMessageType type, MOPSVersion version, Use const& use) {
    using detail::NoClass;
    using detail::withClassOf;
    using Identity = ADSBIdentityMessage;
    using Surface = ADSBSurfacePositionMessage;
    using Test = ADSBTestMessage;
    using AircraftV0 = ADSBAircraftStatusMessageV0; // there is none of version 1
    using AircraftV2 = ADSBAircraftStatusMessageV2;
    using TargetV1 = ADSBTargetStatusMessageV1;
    using TargetV2 = ADSBTargetStatusMessageV2;
    using Operational = ADSBAircraftOperationalStatusMessage;
    using PositionV0 = ADSBAirbornePositionMessageV0;
    using PositionV1 = ADSBAirbornePositionMessageV1;
    using PositionV2 = ADSBAirbornePositionMessageV2;
    using VelocityV0 = ADSBAirborneVelocityMessageV0;
    using VelocityV1 = ADSBAirborneVelocityMessageV1;
    using VelocityV2 = ADSBAirborneVelocityMessageV2;
    // clang-format off
    switch (type) { //                                         version 0    1            2            unknown
    case ADSBMessage::ACID:      return withClassOf<Identity,    Identity,    Identity,    Identity>(version, use);
    case ADSBMessage::POS_GND:   return withClassOf<Surface,     Surface,     Surface,     Surface>(version, use);
    case ADSBMessage::POS_AIR:   return withClassOf<PositionV0,  PositionV1,  PositionV2,  NoClass>(version, use);
    case ADSBMessage::AIR_VEL:   return withClassOf<VelocityV0,  VelocityV1,  VelocityV2,  NoClass>(version, use);
    case ADSBMessage::TEST:      return withClassOf<Test,        Test,        Test,        Test>(version, use);
    case ADSBMessage::AC_STATUS: return withClassOf<AircraftV0,  AircraftV0,  AircraftV2,  NoClass>(version, use);
    case ADSBMessage::TG_STATUS: return withClassOf<NoClass,     TargetV1,    TargetV2,    NoClass>(version, use);
    case ADSBMessage::OP_STATUS: return withClassOf<Operational, Operational, Operational, NoClass>(version, use);
    default:                     return detail::withClass<NoClass>(use);
    }
    // clang-format on
}

} // namespace quorvel::modes
