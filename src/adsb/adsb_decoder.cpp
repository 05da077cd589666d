// SPDX-License-Identifier: MIT
#include <modes/adsb_decoder.h>

#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target_status_message.h>
#include <modes/adsb_test_message.h>
#include <modes/log.h>

#include "adsb/type_code.h"

#include <algorithm>
#include <iterator>

namespace quorvel::modes {

namespace {

std::string const kModule = "ADSBDecoder";

using Make = std::shared_ptr<ADSBMessage> (*)();

template <class Message> std::shared_ptr<ADSBMessage> make() { return std::make_shared<Message>(); }

// Which class decodes a type of message at which version; nothing where the version does not have the type.
// clang-format off
constexpr Make kMakers[][MOPS_UNKNOWN + 1] = {
    /* type          version 0                                    1                                            2                                            unknown */
    /* ACID      */ {make<ADSBIdentityMessage>,                   make<ADSBIdentityMessage>,                   make<ADSBIdentityMessage>,                   make<ADSBIdentityMessage>},
    /* POS_GND   */ {make<ADSBSurfacePositionMessage>,            make<ADSBSurfacePositionMessage>,            make<ADSBSurfacePositionMessage>,            make<ADSBSurfacePositionMessage>},
    /* POS_AIR   */ {make<ADSBAirbornePositionMessageV0>,         make<ADSBAirbornePositionMessageV1>,         make<ADSBAirbornePositionMessageV2>,         nullptr},
    /* AIR_VEL   */ {make<ADSBAirborneVelocityMessageV0>,         make<ADSBAirborneVelocityMessageV1>,         make<ADSBAirborneVelocityMessageV2>,         nullptr},
    /* TEST      */ {make<ADSBTestMessage>,                       make<ADSBTestMessage>,                       make<ADSBTestMessage>,                       make<ADSBTestMessage>},
    /* AC_STATUS */ {make<ADSBAircraftStatusMessageV0>,           make<ADSBAircraftStatusMessageV0>,           make<ADSBAircraftStatusMessageV2>,           nullptr},
    /* TG_STATUS */ {nullptr,                                     make<ADSBTargetStatusMessageV1>,             make<ADSBTargetStatusMessageV2>,             nullptr},
    /* OP_STATUS */ {make<ADSBAircraftOperationalStatusMessage>,  make<ADSBAircraftOperationalStatusMessage>,  make<ADSBAircraftOperationalStatusMessage>,  nullptr},
};
// clang-format on
static_assert(std::size(kMakers) == ADSBMessage::RESERVED, "one row for each message type");

} // namespace

ADSBDecoder::ADSBDecoder() { Log::log(Log::Info, kModule, "Initialized."); }

std::shared_ptr<ADSBMessage> ADSBDecoder::decode(MOPSVersion version, std::string const& me) const {
    if (me.size() < kPayloadBytes) return {};
    auto const typeCode = typeCodeOf(me);
    auto const type = ADSBMessage::typeByCode(typeCode);
    if (type == ADSBMessage::RESERVED) {
        Log::log(Log::Warning, kModule, "Unsupported type code = %u (%s).", typeCode,
                 ADSBMessage::typeFullName(type).c_str());
        return {};
    }
    auto const maker = kMakers[type][std::min<std::uint32_t>(version, MOPS_UNKNOWN)];
    if (!maker) return {};
    auto message = maker();
    return message->decode(me) ? message : nullptr;
}

} // namespace quorvel::modes
