// SPDX-License-Identifier: MIT
#include <modes/adsb_tracker.h>

#include "support/captured_log.h"
#include "track/replies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>

namespace quorvel::modes {
namespace {

using namespace test;
using ::testing::IsEmpty;

constexpr unsigned kAddress = 0x4840D6;
constexpr unsigned long long kTime = 1'700'000'000'000;
std::string const kNoPayload(7, '\0');

constexpr ModeSMessage::Confidence kConfidences[] = {
    ModeSMessage::NONE, ModeSMessage::LOW, ModeSMessage::MEDIUM, ModeSMessage::HIGH};

// A frame of each format that makes a target: air-air and altitude replies with 18800 ft, identity replies
// with 7700; vertical or flight status as given.
std::string frameOf(unsigned format, unsigned status = 0) {
    auto const altitude = altitudeCode(18'800);
    auto const identity = identityCode(07700);
    switch (format) {
    case 0: return shortFrame(0, verticalStatus(status) | altitude, kAddress);
    case 4: return shortFrame(4, flightStatus(status) | altitude, kAddress);
    case 5: return shortFrame(5, flightStatus(status) | identity, kAddress);
    case 16: return longFrame(16, verticalStatus(status) | altitude, kNoPayload, kAddress);
    case 20: return longFrame(20, flightStatus(status) | altitude, kNoPayload, kAddress);
    default: return longFrame(21, flightStatus(status) | identity, kNoPayload, kAddress);
    }
}

std::shared_ptr<ModeSMessage> replyOf(unsigned format, unsigned status = 0,
    ModeSMessage::Confidence confidence = ModeSMessage::HIGH, unsigned long long time = kTime) {
    auto const frame = frameOf(format, status);
    switch (format) {
    case 0: return reply<DF0Message>(frame, time, confidence);
    case 4: return reply<DF4Message>(frame, time, confidence);
    case 5: return reply<DF5Message>(frame, time, confidence);
    case 16: return reply<DF16Message>(frame, time, confidence);
    case 20: return reply<DF20Message>(frame, time, confidence);
    default: return reply<DF21Message>(frame, time, confidence);
    }
}

constexpr unsigned kFormats[] = {0, 4, 5, 16, 20, 21};

TEST(TrackerReplies, MakeATargetFromMediumConfidenceOn) {
    for (auto const format : kFormats) {
        for (auto const confidence : kConfidences) {
            ADSBTracker tracker;
            auto const target = tracker.procModeSMsg(replyOf(format, 0, confidence));
            EXPECT_EQ(target != nullptr, confidence >= ModeSMessage::MEDIUM) << "DF" << format;
            EXPECT_EQ(tracker.findTarget(kAddress), target);
        }
    }
}

TEST(TrackerReplies, StampAndCountTheirTarget) {
    for (auto const format : kFormats) {
        ADSBTracker tracker;
        auto const target = tracker.procModeSMsg(replyOf(format));
        ASSERT_TRUE(target) << "DF" << format;
        EXPECT_EQ(target->icaoAddr(), kAddress);
        EXPECT_EQ(target->trackId(), 1U);
        EXPECT_EQ(target->lastUpdate(), kTime);
        EXPECT_EQ(target->statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(format)), 1U);
        EXPECT_EQ(target->statisticDfMsgCount(), 1U);
        EXPECT_EQ(target->statisticLastUpdate(), kTime);
        EXPECT_FALSE(target->signalAmplitudeValid()); // extended squitters only
        EXPECT_EQ(tracker.procModeSMsg(replyOf(format)), target);
        EXPECT_EQ(target->statisticDfMsgCount(), 2U);
    }
}

TEST(TrackerReplies, CarryAltitudeOrSquawk) {
    for (auto const format : kFormats) {
        bool const identity = format == 5 || format == 21;
        ADSBTracker tracker;
        auto const target = tracker.procModeSMsg(replyOf(format));
        ASSERT_TRUE(target) << "DF" << format;
        EXPECT_EQ(target->altitudeBaroValid(), !identity) << "DF" << format;
        EXPECT_EQ(target->altitudeBaro(), identity ? 0 : 18'800) << "DF" << format;
        EXPECT_EQ(target->altitudeBaroLastUpdate(), identity ? 0 : kTime) << "DF" << format;
        EXPECT_EQ(target->squawkValid(), identity) << "DF" << format;
        EXPECT_EQ(target->squawk(), identity ? 07700U : 0U) << "DF" << format;
        EXPECT_EQ(target->squawkLastUpdate(), identity ? kTime : 0) << "DF" << format;
    }
}

TEST(TrackerReplies, DistinguishGroundFromAirByVerticalStatus) {
    for (unsigned const format : {0U, 16U}) {
        ADSBTracker tracker;
        auto const target = tracker.procModeSMsg(replyOf(format, 0));
        EXPECT_EQ(target->groundStatus(), ADSBTarget::AIRBORNE);
        EXPECT_EQ(target->groundStatusLastUpdate(), kTime);
        tracker.procModeSMsg(replyOf(format, 1));
        EXPECT_EQ(target->groundStatus(), ADSBTarget::ON_GROUND);
        EXPECT_FALSE(target->spiStatusValid());
        EXPECT_FALSE(target->alertStatusValid());
    }
}

TEST(TrackerReplies, CarryFlightStatus) {
    struct {
        unsigned status;
        ADSBTarget::GroundStatus ground;
        bool spi, alert;
    } const rows[] = {
        {0, ADSBTarget::AIRBORNE, false, false},
        {1, ADSBTarget::ON_GROUND, false, false},
        {2, ADSBTarget::AIRBORNE, false, true},
        {3, ADSBTarget::ON_GROUND, false, true},
        {4, ADSBTarget::UNKNOWN, true, true},
        {5, ADSBTarget::UNKNOWN, true, false},
    };
    for (unsigned const format : {4U, 5U, 20U, 21U}) {
        for (auto const& row : rows) {
            ADSBTracker tracker;
            auto const target = tracker.procModeSMsg(replyOf(format, row.status));
            EXPECT_EQ(target->groundStatus(), row.ground) << "FS " << row.status;
            EXPECT_EQ(target->groundStatusLastUpdate(), kTime);
            EXPECT_EQ(target->spiStatus(), row.spi) << "FS " << row.status;
            EXPECT_EQ(target->spiStatusLastUpdate(), kTime);
            EXPECT_EQ(target->alertStatus(), row.alert) << "FS " << row.status;
            EXPECT_EQ(target->alertStatusLastUpdate(), kTime);
        }
    }
}

TEST(TrackerReplies, LeaveTheStatusWithAReservedFlightStatus) {
    for (unsigned const format : {4U, 5U, 20U, 21U}) {
        for (unsigned const status : {6U, 7U}) {
            ADSBTracker tracker;
            auto const target = tracker.procModeSMsg(replyOf(format, 3, ModeSMessage::HIGH, kTime));
            tracker.procModeSMsg(replyOf(format, status, ModeSMessage::HIGH, kTime + 1000));
            EXPECT_EQ(target->groundStatus(), ADSBTarget::ON_GROUND);
            EXPECT_EQ(target->groundStatusLastUpdate(), kTime);
            EXPECT_TRUE(target->alertStatus());
            EXPECT_EQ(target->alertStatusLastUpdate(), kTime);
            EXPECT_EQ(target->spiStatusLastUpdate(), kTime);
            EXPECT_EQ(target->lastUpdate(), kTime + 1000);
            EXPECT_EQ(target->statisticDfMsgCount(), 2U);
            EXPECT_EQ(format == 4 || format == 20 ? target->altitudeBaroLastUpdate() : target->squawkLastUpdate(),
                kTime + 1000);
        }
    }
}

TEST(TrackerReplies, GoThroughTheAltitudeCheck) {
    struct {
        unsigned format;
        std::function<std::shared_ptr<ADSBTarget>(ADSBTracker&, int, unsigned long long)> altitudeAt;
    } const rows[] = {
        {0,
            [](ADSBTracker& tracker, int feet, unsigned long long time) {
                return tracker.procDF0Msg(reply<DF0Message>(shortFrame(0, altitudeCode(feet), kAddress), time));
            }},
        {4,
            [](ADSBTracker& tracker, int feet, unsigned long long time) {
                return tracker.procDF4Msg(reply<DF4Message>(shortFrame(4, altitudeCode(feet), kAddress), time));
            }},
        {16,
            [](ADSBTracker& tracker, int feet, unsigned long long time) {
                return tracker.procDF16Msg(
                    reply<DF16Message>(longFrame(16, altitudeCode(feet), kNoPayload, kAddress), time));
            }},
        {20,
            [](ADSBTracker& tracker, int feet, unsigned long long time) {
                return tracker.procDF20Msg(
                    reply<DF20Message>(longFrame(20, altitudeCode(feet), kNoPayload, kAddress), time));
            }},
    };
    for (auto const& row : rows) {
        ADSBTracker tracker;
        tracker.setAltituteBaroChecking(true, 4, 150);
        auto const target = row.altitudeAt(tracker, 10'000, kTime);
        row.altitudeAt(tracker, 10'500, kTime + 1000);
        EXPECT_EQ(target->altitudeBaro(), 10'000) << "DF" << row.format;
        EXPECT_EQ(target->lastUpdate(), kTime + 1000) << "DF" << row.format; // the reply counts all the same
        row.altitudeAt(tracker, 10'500, kTime + 4000);
        EXPECT_EQ(target->altitudeBaro(), 10'500) << "DF" << row.format;
    }
}

std::shared_ptr<DF11Message> allCall(unsigned address, ModeSMessage::Confidence confidence) {
    return reply<DF11Message>(shortFrame(11, capability(6) | address, 3), kTime, confidence);
}

TEST(TrackerAllCall, NeverMakesATarget) {
    ADSBTracker tracker;
    EXPECT_FALSE(tracker.procModeSMsg(allCall(kAddress, ModeSMessage::HIGH)));
    EXPECT_THAT(tracker.allTargets(), IsEmpty());
    EXPECT_EQ(tracker.getNextTrackId(), 1U);
}

TEST(TrackerAllCall, GivesAKnownTargetItsCapability) {
    for (auto const confidence : kConfidences) {
        ADSBTracker tracker;
        auto const target = tracker.createTarget(kAddress);
        bool const taken = confidence >= ModeSMessage::MEDIUM;
        EXPECT_EQ(tracker.procModeSMsg(allCall(kAddress, confidence)), taken ? target : nullptr);
        EXPECT_EQ(target->transponderCommCapability(), taken ? 6 : 0);
        EXPECT_EQ(target->transponderCommCapabilityValid(), taken);
        EXPECT_EQ(target->transponderCommCapabilityLastUpdate(), taken ? kTime : 0);
        EXPECT_EQ(target->lastUpdate(), taken ? kTime : 0);
        EXPECT_EQ(target->statisticDfMsgCount(DFMessage::DF11), taken ? 1U : 0U);
    }
}

TEST(TrackerDispatch, IgnoresWhatIsNoReply) {
    ADSBTracker tracker;
    CapturedLog log;
    EXPECT_FALSE(tracker.procModeSMsg(nullptr));
    EXPECT_FALSE(tracker.procDFMsg(nullptr));
    EXPECT_FALSE(tracker.procDF0Msg(nullptr));
    EXPECT_FALSE(tracker.procDF4Msg(nullptr));
    EXPECT_FALSE(tracker.procDF5Msg(nullptr));
    EXPECT_FALSE(tracker.procDF11Msg(nullptr));
    EXPECT_FALSE(tracker.procDF16Msg(nullptr));
    EXPECT_FALSE(tracker.procDF17Msg(nullptr));
    EXPECT_FALSE(tracker.procDF20Msg(nullptr));
    EXPECT_FALSE(tracker.procDF21Msg(nullptr));
    EXPECT_THAT(log.lines(), IsEmpty());
}

// A message of the host's own, uplink or downlink, that is not a DF message.
class OwnMessage : public ModeSMessage {
public:
    explicit OwnMessage(ModeSMsgType type) : ModeSMessage(type) { setConfidence(HIGH); }
    unsigned char bits() const override { return 56; }
    std::vector<ModeSMessageField const*> fields() const override { return {}; }
    bool decodeImpl() override { return true; }
};

TEST(TrackerDispatch, IgnoresUplinkAndForeignMessages) {
    ADSBTracker tracker;
    CapturedLog log;
    EXPECT_FALSE(tracker.procModeSMsg(std::make_shared<OwnMessage>(ModeSMessage::UPLINK)));
    EXPECT_FALSE(tracker.procModeSMsg(std::make_shared<OwnMessage>(ModeSMessage::DOWNLINK)));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(tracker.allTargets(), IsEmpty());
}

// A DF message of the host's own: its class is not that of its format.
class OwnDFMessage : public DFMessage {
public:
    explicit OwnDFMessage(DownlinkFormat format) : DFMessage(format) { setConfidence(HIGH); }
    unsigned char bits() const override { return 56; }
    std::vector<ModeSMessageField const*> fields() const override { return {}; }
};

TEST(TrackerDispatch, WarnsOfOtherFormats) {
    ADSBTracker tracker;
    CapturedLog log;
    for (unsigned format = 0; format <= 24; ++format) {
        auto const message = std::make_shared<OwnDFMessage>(static_cast<DFMessage::DownlinkFormat>(format));
        EXPECT_FALSE(tracker.procModeSMsg(message));
        constexpr unsigned kKnown[] = {0, 4, 5, 11, 16, 17, 20, 21};
        if (std::count(std::begin(kKnown), std::end(kKnown), format) != 0) {
            EXPECT_THAT(log.take(), IsEmpty()) << format; // known, but the class does not match
        } else {
            EXPECT_THAT(log.take(),
                Holds(Log::Warning, "ADSBTracker", "Unsupported DF-" + std::to_string(format) + " message detected."));
        }
    }
    EXPECT_THAT(tracker.allTargets(), IsEmpty());
}

TEST(TrackerDispatch, WarnsOfExtendedSquittersOfNonTransponders) {
    ADSBTracker tracker;
    CapturedLog log;
    EXPECT_FALSE(tracker.procModeSMsg(reply<DF18Message>(longFrame(18, kAddress, kNoPayload, 0), kTime)));
    EXPECT_THAT(log.take(), Holds(Log::Warning, "ADSBTracker", "Unsupported DF-18 message detected."));
}

} // namespace
} // namespace quorvel::modes
