// SPDX-License-Identifier: MIT
#include <modes/modes_decoder.h>

#include <modes/modes_encapsulation.h>

#include "reference/grading.h"
#include "support/captured_log.h"
#include "support/frames.h"
#include "support/random_bytes.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;
using test::LogLine;
using test::SteeredClock;
using test::withBitsInverted;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr unsigned kAddress = 0x4840D6;
constexpr unsigned kOtherAddress = 0xABCDEF;
constexpr std::uint64_t kStart = 1'714'566'896'789;
std::string const kPayload = fromHex("58C382D690C8AC");
std::string const kSquitter = test::squitter(kAddress, kPayload);

std::string altitudeReply(unsigned address) { return test::shortFrame(4, test::altitudeCode(10000), address); }
std::string allCall(unsigned address, unsigned interrogator) { return test::shortFrame(11, address, interrogator); }

class ModeSDecoderTest : public testing::Test {
protected:
    SteeredClock clock{kStart};
    CapturedLog log;
    ModeSDecoder decoder;

    ModeSDecoderTest() { log.take(); }

    std::shared_ptr<ModeSMessage> decode(std::string const& frame) {
        return decoder.decode(ModeSMessage::DOWNLINK, frame);
    }

    // -1 when there is no message
    int confidence(std::string const& frame) {
        auto const message = decode(frame);
        return message ? static_cast<int>(message->confidence()) : -1;
    }

    void confirm(unsigned address) { ASSERT_EQ(confidence(test::squitter(address, kPayload)), ModeSMessage::HIGH); }
};

} // namespace

TEST_F(ModeSDecoderTest, SaysThatItIsInitialized) {
    ModeSDecoder const another;
    EXPECT_THAT(log.take(), Holds(Log::Info, "ModeSDecoder", "Initialized."));
}

TEST_F(ModeSDecoderTest, MakesNothingOfAnEmptyFrameInSilence) {
    EXPECT_FALSE(decode(""));
    EXPECT_FALSE(decoder.decode(ModeSMessage::UPLINK, ""));
    EXPECT_FALSE(decoder.decode(ModeSMessage::DOWNLINK, nullptr, 0));
    EXPECT_FALSE(decoder.decode(ModeSMessage::DOWNLINK, std::shared_ptr<ModeSEncapsulation>()));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ModeSDecoderTest, DoesNotDecodeUplinkFrames) {
    EXPECT_FALSE(decoder.decode(ModeSMessage::UPLINK, kSquitter));
    EXPECT_THAT(log.take(), Holds(Log::Debug, "ModeSDecoder", "Unsupported UF message detected."));
}

TEST_F(ModeSDecoderTest, ReportsFormatsWithoutAClass) {
    for (unsigned const code : {1U, 2U, 3U, 6U, 7U, 8U, 9U, 10U, 12U, 13U, 14U, 15U, 22U, 23U, 24U, 25U, 31U}) {
        EXPECT_FALSE(decode(std::string(1, static_cast<char>(code << 3)) + std::string(13, '\0')));
        auto const format = std::to_string(std::min(code, 24U));
        EXPECT_THAT(log.take(), Holds(Log::Debug, "ModeSDecoder", "Undefined DF-" + format + " message detected."));
    }
}

TEST_F(ModeSDecoderTest, MakesTheClassOfEachFormat) {
    auto const isOf = [&](auto const* type, std::string const& frame) {
        return dynamic_cast<decltype(type)>(decode(frame).get()) != nullptr;
    };
    EXPECT_TRUE(isOf(static_cast<DF0Message const*>(nullptr), test::shortFrame(0, 0, kAddress)));
    EXPECT_TRUE(isOf(static_cast<DF4Message const*>(nullptr), test::shortFrame(4, 0, kAddress)));
    EXPECT_TRUE(isOf(static_cast<DF5Message const*>(nullptr), test::shortFrame(5, 0, kAddress)));
    EXPECT_TRUE(isOf(static_cast<DF11Message const*>(nullptr), test::shortFrame(11, kAddress, 0)));
    EXPECT_TRUE(isOf(static_cast<DF16Message const*>(nullptr), test::longFrame(16, 0, kPayload, kAddress)));
    EXPECT_TRUE(isOf(static_cast<DF17Message const*>(nullptr), test::longFrame(17, kAddress, kPayload, 0)));
    EXPECT_TRUE(isOf(static_cast<DF18Message const*>(nullptr), test::longFrame(18, kAddress, kPayload, 0)));
    EXPECT_TRUE(isOf(static_cast<DF19Message const*>(nullptr), test::longFrame(19, kAddress, kPayload, 0)));
    EXPECT_TRUE(isOf(static_cast<DF20Message const*>(nullptr), test::longFrame(20, 0, kPayload, kAddress)));
    EXPECT_TRUE(isOf(static_cast<DF21Message const*>(nullptr), test::longFrame(21, 0, kPayload, kAddress)));
}

TEST_F(ModeSDecoderTest, MakesNothingOfAFrameThatIsTooShort) {
    EXPECT_FALSE(decode(altitudeReply(kAddress).substr(0, 6)));
    EXPECT_FALSE(decode(test::longFrame(19, kAddress, kPayload, 0).substr(0, 13)));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ModeSDecoderTest, KeepsTheHostsTimeWithoutAStampAndTakesTheReceiversWithOne) {
    auto message = decode(kSquitter);
    EXPECT_EQ(message->timeSource(), ModeSMessage::LOCAL);
    EXPECT_EQ(message->timeStamp(), kStart / 1000 * 1000);
    EXPECT_EQ(message->signalAmplitude(), 0U);

    message = decoder.decode(ModeSMessage::DOWNLINK, kSquitter, 0);
    EXPECT_EQ(message->timeSource(), ModeSMessage::LOCAL);
    EXPECT_EQ(message->timeStamp(), kStart / 1000 * 1000);

    message = decoder.decode(ModeSMessage::DOWNLINK, kSquitter, 12345);
    EXPECT_EQ(message->timeSource(), ModeSMessage::EXTERNAL);
    EXPECT_EQ(message->timeStamp(), 12345U);

    message = decoder.decode(ModeSMessage::DOWNLINK, kSquitter.data(), kSquitter.size());
    EXPECT_EQ(message->timeSource(), ModeSMessage::LOCAL);

    message = decoder.decode(ModeSMessage::DOWNLINK, kSquitter.data(), kSquitter.size(), 777);
    EXPECT_EQ(message->timeSource(), ModeSMessage::EXTERNAL);
    EXPECT_EQ(message->timeStamp(), 777U);

    auto const record = std::make_shared<ModeSEncapsulation>();
    record->setData(kSquitter);
    EXPECT_EQ(decoder.decode(ModeSMessage::DOWNLINK, record)->timeSource(), ModeSMessage::LOCAL);
    record->setTimeStamp(999);
    message = decoder.decode(ModeSMessage::DOWNLINK, record);
    EXPECT_EQ(message->timeSource(), ModeSMessage::EXTERNAL);
    EXPECT_EQ(message->timeStamp(), 999U);
    EXPECT_FALSE(decoder.decode(ModeSMessage::DOWNLINK, std::string(), 999));
}

TEST_F(ModeSDecoderTest, TrustsRepliesWithAHiddenAddressWhenItIsKnown) {
    std::string const replies[] = {
        test::shortFrame(0, test::altitudeCode(5000), kAddress),
        test::shortFrame(4, test::altitudeCode(5000), kAddress),
        test::shortFrame(5, test::identityCode(07700), kAddress),
        test::longFrame(16, test::altitudeCode(5000), kPayload, kAddress),
        test::longFrame(20, test::altitudeCode(5000), kPayload, kAddress),
        test::longFrame(21, test::identityCode(07700), kPayload, kAddress),
    };
    for (auto const& reply : replies) EXPECT_EQ(confidence(reply), ModeSMessage::LOW);
    confirm(kAddress);
    for (auto const& reply : replies) EXPECT_EQ(confidence(reply), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, TakesEveryIdentityForPossible) {
    for (unsigned squawk = 0; squawk <= 07777; ++squawk) {
        auto const identity = test::identityCode(squawk);
        ASSERT_EQ(confidence(test::shortFrame(5, identity, kAddress)), ModeSMessage::LOW) << squawk;
        ASSERT_EQ(confidence(test::longFrame(21, identity, kPayload, kAddress)), ModeSMessage::LOW) << squawk;
    }
}

TEST_F(ModeSDecoderTest, DoesNotTrustMetricAltitudes) {
    auto const metric = 1U << 6;
    std::string const replies[] = {
        test::shortFrame(0, metric, kAddress),
        test::shortFrame(4, metric, kAddress),
        test::longFrame(16, metric, kPayload, kAddress),
        test::longFrame(20, metric, kPayload, kAddress),
    };
    for (auto const& reply : replies) EXPECT_EQ(confidence(reply), ModeSMessage::NONE);
    confirm(kAddress);
    for (auto const& reply : replies) EXPECT_EQ(confidence(reply), ModeSMessage::NONE);
}

TEST_F(ModeSDecoderTest, TakesAMetricReplyOfAKnownAddressAsASignOfLife) {
    confirm(kAddress);
    clock.advanceSeconds(600);
    EXPECT_EQ(confidence(test::shortFrame(4, 1U << 6, kAddress)), ModeSMessage::NONE);
    clock.advanceSeconds(600);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, ForgetsAnAddressAfterTenMinutes) {
    confirm(kAddress);
    clock.advanceSeconds(600);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH) << "and refreshes it";
    clock.advanceSeconds(600);
    EXPECT_EQ(confidence(test::shortFrame(5, 0, kAddress)), ModeSMessage::HIGH) << "and refreshes it";
    clock.advanceSeconds(601);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::LOW) << "and does not refresh it";
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::LOW);
    confirm(kAddress);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH);
}

// Times of frames are the receiver's; freshness is measured on the host's clock.
TEST_F(ModeSDecoderTest, MeasuresFreshnessOnTheHostsClock) {
    decoder.decode(ModeSMessage::DOWNLINK, kSquitter, 1000);
    auto const reply = altitudeReply(kAddress);
    EXPECT_EQ(decoder.decode(ModeSMessage::DOWNLINK, reply, kStart * 2)->confidence(), ModeSMessage::HIGH);
    clock.advanceSeconds(601);
    EXPECT_EQ(decoder.decode(ModeSMessage::DOWNLINK, reply, 1001)->confidence(), ModeSMessage::LOW);
}

TEST_F(ModeSDecoderTest, NeverTakesAnUnseenAddressForFreshEvenAtTheEpoch) {
    clock.set(5000);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::LOW);
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::NONE);
}

TEST_F(ModeSDecoderTest, LearnsAddressesFromExtendedSquitters) {
    EXPECT_EQ(confidence(test::longFrame(18, kAddress, kPayload, 0)), ModeSMessage::HIGH);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH);
    EXPECT_EQ(confidence(test::longFrame(19, kOtherAddress, kPayload, 0)), ModeSMessage::HIGH);
    EXPECT_EQ(confidence(altitudeReply(kOtherAddress)), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, GradesReservedMilitarySquittersLow) {
    EXPECT_EQ(confidence(test::longFrame(19, 3U << 24 | kAddress, kPayload, 0)), ModeSMessage::LOW);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::LOW);
    EXPECT_EQ(confidence(altitudeReply(0)), ModeSMessage::LOW);
}

TEST_F(ModeSDecoderTest, DoesNotRepairMilitarySquitters) {
    EXPECT_FALSE(decode(withBitsInverted(test::longFrame(19, kAddress, kPayload, 0), {40})));
    EXPECT_THAT(log.take(), Holds(Log::Info, "DF19Message", "Parity check failed."));
}

TEST_F(ModeSDecoderTest, TrustsAnInterrogatorAfterTenReplies) {
    confirm(kAddress);
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::LOW);
    for (int reply = 2; reply < 10; ++reply) {
        EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::MEDIUM) << reply;
    }
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::HIGH);
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::HIGH);
    EXPECT_EQ(confidence(allCall(kAddress, 4)), ModeSMessage::LOW) << "each interrogator is judged alone";
}

TEST_F(ModeSDecoderTest, TrustsSquittersWithoutInterrogatorFromTheSecondOn) {
    confirm(kAddress);
    EXPECT_EQ(confidence(allCall(kAddress, 0)), ModeSMessage::LOW);
    EXPECT_EQ(confidence(allCall(kAddress, 0)), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, ForgetsAnInterrogatorAfterAMinute) {
    confirm(kAddress);
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::LOW);
    for (int reply = 2; reply < 10; ++reply) confidence(allCall(kAddress, 3));
    clock.advanceSeconds(60);
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::HIGH);
    clock.advanceSeconds(61);
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::LOW) << "and counts from one again";
    EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::MEDIUM);
}

TEST_F(ModeSDecoderTest, LearnsAnAddressFromATrustedInterrogator) {
    confirm(kAddress);
    EXPECT_EQ(confidence(allCall(kOtherAddress, 3)), ModeSMessage::NONE);
    for (int reply = 1; reply < 10; ++reply) confidence(allCall(kAddress, 3));
    EXPECT_EQ(confidence(allCall(kOtherAddress, 3)), ModeSMessage::NONE) << "nine replies are not enough";
    EXPECT_EQ(confidence(altitudeReply(kOtherAddress)), ModeSMessage::LOW);
    confidence(allCall(kAddress, 3));
    EXPECT_EQ(confidence(allCall(kOtherAddress, 3)), ModeSMessage::HIGH);
    EXPECT_EQ(confidence(altitudeReply(kOtherAddress)), ModeSMessage::HIGH);

    clock.advanceSeconds(61);
    EXPECT_EQ(confidence(allCall(0x123456, 3)), ModeSMessage::NONE) << "the interrogator has fallen silent";
}

TEST_F(ModeSDecoderTest, KeepsAnInterrogatorCurrentByRepliesOfUnknownAircraft) {
    confirm(kAddress);
    for (int reply = 0; reply < 10; ++reply) confidence(allCall(kAddress, 3));
    for (unsigned address = 1; address < 5; ++address) {
        clock.advanceSeconds(60);
        EXPECT_EQ(confidence(allCall(address, 3)), ModeSMessage::HIGH) << address;
    }
}

TEST_F(ModeSDecoderTest, AllCallRepliesKeepAnAddressKnown) {
    confirm(kAddress);
    for (int i = 0; i < 3; ++i) {
        clock.advanceSeconds(500);
        EXPECT_EQ(confidence(allCall(kAddress, 3)), ModeSMessage::LOW);
    }
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, ReturnsRepliesToInvalidInterrogatorsUntrusted) {
    confirm(kAddress);
    EXPECT_EQ(confidence(allCall(kAddress, 79)), ModeSMessage::LOW);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(confidence(allCall(kAddress, 80)), ModeSMessage::NONE);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ModeSDecoder", "Invalid interrogator id, II = 80"));
    clock.advanceSeconds(600);
    EXPECT_EQ(confidence(allCall(kAddress, 0xFFFFFF)), ModeSMessage::NONE);
    EXPECT_THAT(log.take(), Holds(Log::Info, "ModeSDecoder", "Invalid interrogator id, II = 16777215"));
    clock.advanceSeconds(1);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::LOW) << "they do not keep the address known";
}

TEST_F(ModeSDecoderTest, RepairsOneBitOfASquitter) {
    for (unsigned const format : {17U, 18U}) {
        auto const frame = test::longFrame(format, kAddress, kPayload, 0);
        auto const name = std::to_string(format);
        for (unsigned position = 5; position < 88; ++position) {
            auto const message = decode(withBitsInverted(frame, {position}));
            ASSERT_TRUE(message) << position;
            EXPECT_EQ(message->data(), frame);
            EXPECT_EQ(message->confidence(), ModeSMessage::HIGH);
            EXPECT_EQ(message->icaoAddress(), kAddress);
            EXPECT_THAT(log.take(),
                ElementsAre(LogLine{Log::Info, "DF" + name + "Message", "Parity check failed."},
                    LogLine{Log::Info, "ModeSDecoder",
                        "Fix 1 bit error in DF-" + name + " message at " + std::to_string(position) + "."}));
        }
    }
}

TEST_F(ModeSDecoderTest, RepairsTwoBitsOfASquitter) {
    for (unsigned const format : {17U, 18U}) {
        auto const frame = test::longFrame(format, kAddress, kPayload, 0);
        auto const name = std::to_string(format);
        auto const message = decode(withBitsInverted(frame, {33, 60}));
        ASSERT_TRUE(message);
        EXPECT_EQ(message->data(), frame);
        EXPECT_EQ(message->confidence(), ModeSMessage::HIGH);
        EXPECT_THAT(log.take(),
            ElementsAre(LogLine{Log::Info, "DF" + name + "Message", "Parity check failed."},
                LogLine{Log::Info, "ModeSDecoder", "Fix 2 bits error in DF-" + name + " message at 33 and 60."}));
    }
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH) << "a repaired squitter confirms its address";
}

TEST_F(ModeSDecoderTest, GivesUpOnThreeDamagedBits) {
    for (unsigned const format : {17U, 18U}) {
        auto const frame = test::longFrame(format, kAddress, kPayload, 0);
        auto const name = std::to_string(format);
        EXPECT_FALSE(decode(withBitsInverted(frame, {12, 33, 60})));
        EXPECT_THAT(
            log.take(), ElementsAre(LogLine{Log::Info, "DF" + name + "Message", "Parity check failed."},
                            LogLine{Log::Info, "ModeSDecoder", "Unable to fix error in DF-" + name + " message."}));
    }
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::LOW);
}

// The bits of the parity field say what the parity should be, so damage there cannot be found.
TEST_F(ModeSDecoderTest, CannotRepairTheParityField) {
    for (unsigned position = 88; position < 112; ++position) {
        EXPECT_FALSE(decode(withBitsInverted(kSquitter, {position}))) << position;
        EXPECT_EQ(log.take().back(), (LogLine{Log::Info, "ModeSDecoder", "Unable to fix error in DF-17 message."}));
    }
}

TEST_F(ModeSDecoderTest, CannotRepairASquitterThatIsTooShort) {
    for (std::size_t length = 1; length < 14; ++length) {
        EXPECT_FALSE(decode(kSquitter.substr(0, length)));
        EXPECT_THAT(log.take(), Holds(Log::Info, "ModeSDecoder", "Unable to fix error in DF-17 message."));
    }
}

// A frame of another format whose damage made a squitter of it turns back into that format when it is
// repaired.
TEST_F(ModeSDecoderTest, DropsARepairedFrameOfAnotherFormat) {
    for (auto const& [format, other, position] : {std::tuple{"17", 16U, 4U}, {"18", 16U, 3U}}) {
        auto const frame = test::longFrame(other, kAddress, kPayload, 0);
        auto const name = std::string(format);
        EXPECT_FALSE(decode(withBitsInverted(frame, {position})));
        EXPECT_THAT(log.take(),
            ElementsAre(LogLine{Log::Info, "DF" + name + "Message", "Parity check failed."},
                LogLine{Log::Info, "ModeSDecoder",
                    "Fix 1 bit error in DF-" + name + " message at " + std::to_string(position) + "."},
                LogLine{Log::Info, "DFMessage", "DF format mismatch."},
                LogLine{Log::Error, "ModeSDecoder", "Faild to decode DF-" + name + " message after CRC fixing."}));
    }
}

TEST_F(ModeSDecoderTest, SharesNothingWithAnotherDecoder) {
    confirm(kAddress);
    ModeSDecoder other;
    EXPECT_EQ(other.decode(ModeSMessage::DOWNLINK, altitudeReply(kAddress))->confidence(), ModeSMessage::LOW);
}

TEST_F(ModeSDecoderTest, HandsOutMessagesThatOutliveIt) {
    auto other = std::make_unique<ModeSDecoder>();
    auto const message = other->decode(ModeSMessage::DOWNLINK, kSquitter);
    other.reset();
    EXPECT_EQ(message->icaoAddress(), kAddress);
    EXPECT_EQ(message->fields().size(), 4U);
}

// Squitters of ever new addresses, replies with hidden addresses and all-call replies of few and of many
// aircraft, while the clock runs in small steps and in large ones.
TEST_F(ModeSDecoderTest, GradesAsThePlainRulesDoThatForgetNothing) {
    constexpr std::uint64_t kSeed = 11;
    test::Noise noise(kSeed);
    reference::Grading plain;
    Log::setShowLevel(Log::Error);
    auto now = kStart / 1000;
    for (unsigned step = 0; step < 60'000; ++step) {
        if (noise.below(20) == 0) now += noise.below(noise.below(50) == 0 ? 700 : 10);
        clock.set(1000 * now);
        plain.setNow(static_cast<long long>(now));
        auto const address = static_cast<unsigned>(1 + noise.below(noise.below(4) == 0 ? 0xFFFFFF : 40));
        auto const interrogator = static_cast<unsigned>(noise.below(noise.below(4) == 0 ? 90 : 3));
        switch (noise.below(3)) {
        case 0: ASSERT_EQ(confidence(test::squitter(address, kPayload)), plain.squitter(address)) << step; break;
        case 1: ASSERT_EQ(confidence(altitudeReply(address)), plain.hiddenAddress(address)) << step; break;
        default: ASSERT_EQ(confidence(allCall(address, interrogator)), plain.allCall(address, interrogator)) << step;
        }
    }
}

TEST(Interrogator, IsAllZeroWhenNew) {
    ModeSDecoder::Interrogator const interrogator;
    static_assert(std::is_same_v<decltype(interrogator.time), std::int64_t>);
    static_assert(std::is_same_v<decltype(interrogator.counter), std::uint32_t>);
    EXPECT_EQ(interrogator.time, 0);
    EXPECT_EQ(interrogator.counter, 0U);
}

TEST_F(ModeSDecoderTest, LearnsSeparatelyFromItsCopies) {
    confirm(kAddress);
    auto copy = decoder;
    EXPECT_EQ(copy.decode(ModeSMessage::DOWNLINK, altitudeReply(kAddress))->confidence(), ModeSMessage::HIGH);
    confirm(kOtherAddress);
    EXPECT_EQ(copy.decode(ModeSMessage::DOWNLINK, altitudeReply(kOtherAddress))->confidence(), ModeSMessage::LOW);
    copy = decoder;
    EXPECT_EQ(copy.decode(ModeSMessage::DOWNLINK, altitudeReply(kOtherAddress))->confidence(), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, KnowsAfterAMoveWhatItKnewBefore) {
    confirm(kAddress);
    auto moved = std::move(decoder);
    EXPECT_EQ(moved.decode(ModeSMessage::DOWNLINK, altitudeReply(kAddress))->confidence(), ModeSMessage::HIGH);
    decoder = std::move(moved);
    EXPECT_EQ(confidence(altitudeReply(kAddress)), ModeSMessage::HIGH);
}

TEST_F(ModeSDecoderTest, IsCopiedWithoutAWord) {
    auto const copy = decoder;
    EXPECT_THAT(log.take(), IsEmpty());
}
