// SPDX-License-Identifier: MIT
// What holds for every message class.
#include <modes/adsb_airborne_position_message.h>
#include <modes/adsb_airborne_velocity_message.h>
#include <modes/adsb_aircraft_status_message.h>
#include <modes/adsb_identity_message.h>
#include <modes/adsb_operational_status_message.h>
#include <modes/adsb_surface_position_message.h>
#include <modes/adsb_target_status_message.h>
#include <modes/adsb_test_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::Holds;

template <class Message> class EveryMessageClass : public testing::Test {};
using MessageClasses = testing::Types<ADSBIdentityMessage, ADSBSurfacePositionMessage, ADSBAirbornePositionMessage,
    ADSBAirbornePositionMessageV0, ADSBAirbornePositionMessageV1, ADSBAirbornePositionMessageV2,
    ADSBAirborneVelocityMessage, ADSBAirborneVelocityMessageV0, ADSBAirborneVelocityMessageV1,
    ADSBAirborneVelocityMessageV2, ADSBAircraftStatusMessage, ADSBAircraftStatusMessageV0, ADSBAircraftStatusMessageV2,
    ADSBTargetStatusMessage, ADSBTargetStatusMessageV1, ADSBTargetStatusMessageV2, ADSBAircraftOperationalStatusMessage,
    ADSBTestMessage>;
TYPED_TEST_SUITE(EveryMessageClass, MessageClasses);

TYPED_TEST(EveryMessageClass, DecodesNothingWithoutAPayload) {
    CapturedLog log;
    TypeParam message;
    EXPECT_FALSE(message.decodeImpl());
    EXPECT_TRUE(message.fields().empty());
    EXPECT_FALSE(message.description().empty());
    EXPECT_TRUE(log.lines().empty());
}

TYPED_TEST(EveryMessageClass, RejectsPayloadsOfOtherTypes) {
    for (unsigned code = 0; code < 32; ++code) {
        TypeParam message;
        if (ADSBMessage::typeByCode(static_cast<std::uint8_t>(code)) == message.type()) continue;
        CapturedLog log;
        EXPECT_FALSE(message.decode(test::payload(code)));
        EXPECT_THAT(log.take(), Holds(Log::Error, "ADSBMessage", "Type code mismatch."));
    }
}
