// SPDX-License-Identifier: MIT
#include "airspace/readings/payload.h"
#include "modes/parity.h"
#include "support/bytes.h"

#include <airspace/message.h>
#include <modes/df_message.h>

#include <gtest/gtest.h>

#include <random>
#include <type_traits>

using namespace quorvel::airspace;
using quorvel::modes::test::fromHex;
using quorvel::modes::test::withBits;
using test::Payload;

namespace {

constexpr std::uint32_t kAddress = 0x484FDE;

std::string frameOf(unsigned format) { return withBits(std::string(format < 16 ? 7 : 14, '\0'), 0, 5, format); }

// The frame with a parity field whose remainder is this.
std::string withRemainder(std::string frame, std::uint32_t remainder) {
    auto const bits = static_cast<unsigned>(8 * frame.size());
    auto const parity = quorvel::modes::parity::remainder(frame, bits) ^ remainder;
    return withBits(std::move(frame), bits - 24, 24, parity);
}

std::string squitter(unsigned format, unsigned control, Payload const& me) {
    auto frame = withBits(withBits(frameOf(format), 5, 3, control), 8, 24, kAddress);
    return withRemainder(frame.replace(4, 7, me.bytes()), 0);
}

template <class Reply> Reply replyOf(std::string const& frame, Reading const& how = {}) {
    return std::get<Reply>(read(frame, how));
}

void expectHeader(MessageHeader const& header, unsigned format, AddressKind kind, std::uint32_t address) {
    EXPECT_EQ(header.format, format);
    EXPECT_EQ(header.addressKind, kind);
    EXPECT_EQ(header.address, address);
}

} // namespace

static_assert(std::is_trivially_copyable_v<Message>);

// ICAO Annex 10 Vol. IV, 3.1.2.8.2
TEST(Message, OfFormat0HasEachField) {
    auto const frame = withBits(
        withBits(withBits(withBits(withBits(frameOf(0), 5, 1, 1), 6, 1, 1), 8, 3, 5), 13, 4, 11), 19, 13, 0x1030);
    auto const reply = replyOf<ShortAirAirReply>(withRemainder(frame, kAddress));
    expectHeader(reply, 0, AddressKind::Icao, kAddress);
    EXPECT_TRUE(reply.isOnGround);
    EXPECT_TRUE(reply.hasCrossLink);
    EXPECT_EQ(reply.sensitivity, 5);
    EXPECT_EQ(reply.reply, 11);
    EXPECT_EQ(reply.altitude.altitudeFt, 25000);
    auto const empty = replyOf<ShortAirAirReply>(frameOf(0));
    EXPECT_FALSE(empty.isOnGround || empty.hasCrossLink);
    EXPECT_EQ(empty.altitude.coding, AltitudeCoding::None);
}

// ICAO Annex 10 Vol. IV, 3.1.2.8.2.2
TEST(Message, TellsTheMaximumAirspeedOfItsReplyInformation) {
    std::optional<int> const none;
    EXPECT_EQ(airspeedOfReply(9)->aboveKt, none);
    EXPECT_EQ(airspeedOfReply(9)->atMostKt, 75);
    int const bounds[] = {75, 150, 300, 600, 1200};
    for (std::uint8_t i = 0; i < 4; ++i) {
        EXPECT_EQ(airspeedOfReply(static_cast<std::uint8_t>(10 + i))->aboveKt, bounds[i]);
        EXPECT_EQ(airspeedOfReply(static_cast<std::uint8_t>(10 + i))->atMostKt, bounds[i + 1]);
    }
    EXPECT_EQ(airspeedOfReply(14)->aboveKt, 1200);
    EXPECT_EQ(airspeedOfReply(14)->atMostKt, none);
    for (auto const code : {0, 1, 2, 3, 4, 5, 6, 7, 8, 15, 16}) {
        EXPECT_FALSE(airspeedOfReply(static_cast<std::uint8_t>(code)).has_value()) << code;
    }
}

// ICAO Annex 10 Vol. IV, 3.1.2.6.5 to 3.1.2.6.8
TEST(Message, OfFormats4And5And20And21HasEachField) {
    auto const headed = [](unsigned format) {
        auto const frame = withBits(withBits(withBits(frameOf(format), 5, 3, 3), 8, 5, 17), 13, 6, 42);
        return withRemainder(withBits(frame, 19, 13, 0x0AAA), kAddress);
    };
    auto const expectFields = [](SurveillanceHeader const& reply, unsigned format) {
        expectHeader(reply, format, AddressKind::Icao, kAddress);
        EXPECT_EQ(reply.flightStatus.code, 3);
        EXPECT_EQ(reply.downlinkRequest, 17);
        EXPECT_EQ(reply.utility, 42);
    };
    expectFields(replyOf<AltitudeReply>(headed(4)), 4);
    expectFields(replyOf<IdentityReply>(headed(5)), 5);
    expectFields(replyOf<CommBAltitudeReply>(headed(20)), 20);
    expectFields(replyOf<CommBIdentityReply>(headed(21)), 21);
    EXPECT_EQ(replyOf<IdentityReply>(headed(5)).squawk.code, 07700);
    EXPECT_EQ(replyOf<CommBIdentityReply>(headed(21)).squawk.code, 07700);
    EXPECT_EQ(replyOf<AltitudeReply>(fromHex("20001718029FCD")).altitude.altitudeFt, 36000);
    auto const commB = replyOf<CommBAltitudeReply>(fromHex("A0001910CC300030AA0000EAE004"));
    EXPECT_EQ(commB.altitude.altitudeFt, 39000);
    EXPECT_EQ(std::string(commB.mb.begin(), commB.mb.end()), fromHex("CC300030AA0000"));
    auto const identity = replyOf<CommBIdentityReply>(fromHex("A8200A8002010000000000946C23"));
    EXPECT_EQ(identity.squawk.code, 07000);
    EXPECT_EQ(std::string(identity.mb.begin(), identity.mb.end()), fromHex("02010000000000"));
}

// ICAO Annex 10 Vol. IV, 3.1.2.6.5.1
TEST(FlightStatus, TellsAlertIdentAndGround) {
    std::optional<bool> const open;
    struct {
        bool hasAlert, hasIdent;
        std::optional<bool> isOnGround;
    } const rows[] = {{false, false, false}, {false, false, true}, {true, false, false}, {true, false, true},
        {true, true, open}, {false, true, open}, {false, false, open}, {false, false, open}};
    for (std::uint8_t code = 0; code < 8; ++code) {
        FlightStatus const status{code};
        EXPECT_EQ(status.hasAlert(), rows[code].hasAlert) << int{code};
        EXPECT_EQ(status.hasIdent(), rows[code].hasIdent) << int{code};
        EXPECT_EQ(status.isOnGround(), rows[code].isOnGround) << int{code};
    }
}

// ICAO Annex 10 Vol. IV, 3.1.2.5.2.2.1
TEST(Capability, TellsTheGroundWithCodes4And5Alone) {
    for (std::uint8_t code = 0; code < 8; ++code) {
        auto const expected = code == 4 ? std::optional(true) : code == 5 ? std::optional(false) : std::nullopt;
        EXPECT_EQ(Capability{code}.isOnGround(), expected) << int{code};
    }
}

// ICAO Annex 10 Vol. IV, 3.1.2.5.2.2 and 3.1.2.5.2.1.3
TEST(Message, OfFormat11HasTheInterrogatorsCodeInItsRemainder) {
    auto const frame = withBits(withBits(frameOf(11), 5, 3, 5), 8, 24, kAddress);
    for (std::uint32_t code = 0; code < 128; ++code) {
        auto const reply = replyOf<AllCallReply>(withRemainder(frame, code));
        expectHeader(reply, 11, AddressKind::Icao, kAddress);
        EXPECT_EQ(reply.capability.code, 5);
        EXPECT_EQ(reply.isIntact, code < 80) << code;
        EXPECT_EQ(reply.ii, code < 16 ? std::optional(static_cast<std::uint8_t>(code)) : std::nullopt) << code;
        bool const isSurveillance = code >= 16 && code < 80;
        EXPECT_EQ(reply.si, isSurveillance ? std::optional(static_cast<std::uint8_t>(code - 16)) : std::nullopt)
            << code;
    }
    EXPECT_FALSE(replyOf<AllCallReply>(withRemainder(frame, 0x800000)).isIntact);
}

// ICAO Annex 10 Vol. IV, 3.1.2.8.3 and 4.3.8.4.2.4
TEST(Message, OfFormat16HasAnAdvisoryInItsPayload) {
    auto const reply = replyOf<LongAirAirReply>(fromHex("80E1103030E20200000000051475"));
    EXPECT_EQ(reply.format, 16);
    EXPECT_FALSE(reply.isOnGround);
    EXPECT_EQ(reply.sensitivity, 7);
    EXPECT_EQ(reply.reply, 2);
    EXPECT_EQ(reply.altitude.altitudeFt, 25000);
    EXPECT_EQ(std::string(reply.mv.begin(), reply.mv.end()), fromHex("30E20200000000"));
    ASSERT_TRUE(reply.advisory.has_value());
    EXPECT_EQ(reply.advisory->ara, 14464);
    EXPECT_EQ(reply.advisory->rac, 8);
}

TEST(Message, OfFormat16HasNoAdvisoryInAnotherPayloadAndNeverAThreat) {
    auto const other = frameOf(16).replace(4, 7, fromHex("31E20200000000"));
    EXPECT_FALSE(replyOf<LongAirAirReply>(other).advisory.has_value());
    auto const full = frameOf(16).replace(4, 7, fromHex("30FFFFFFFFFFFF"));
    for (auto const type : {0U, 1U, 2U, 3U}) {
        auto const advisory = replyOf<LongAirAirReply>(withBits(full, 32 + 28, 2, type)).advisory;
        EXPECT_EQ(advisory->threatType, ThreatType::None);
        EXPECT_FALSE(advisory->threatAddress || advisory->threatAltitudeFt || advisory->threatRangeNm ||
                     advisory->threatBearingDegrees);
    }
}

// ICAO Annex 10 Vol. IV, 3.1.2.8.6
TEST(Message, OfFormat17HasCapabilityTypeAndContent) {
    auto const reply = replyOf<ExtendedSquitter>(fromHex("8D406B902015A678D4D220AA4BDA"));
    expectHeader(reply, 17, AddressKind::Icao, 0x406B90);
    EXPECT_TRUE(reply.isIntact());
    EXPECT_EQ(reply.capability->code, 5);
    EXPECT_EQ(reply.controlField, std::nullopt);
    EXPECT_EQ(reply.origin, SquitterOrigin::Aircraft);
    EXPECT_EQ(reply.typeCode, 4);
    EXPECT_EQ(reply.subtype, std::nullopt);
    EXPECT_EQ(std::get<Identification>(reply.content).callsign.text(), "EZY85MH");
}

TEST(Message, ThatIsDamagedIsReadAsItStands) {
    auto const reply = replyOf<ExtendedSquitter>(fromHex("8D406B902015A678D4D220AA4BDB"));
    EXPECT_FALSE(reply.isIntact());
    EXPECT_EQ(reply.remainder, 1U);
    EXPECT_EQ(std::get<Identification>(reply.content).callsign.text(), "EZY85MH");
}

TEST(Message, IsReadByTheVersionThatIsTold) {
    auto const frame = squitter(17, 5, Payload::ofType(28).with(6, 8, 2));
    EXPECT_TRUE(std::holds_alternative<AdvisoryBroadcast>(replyOf<ExtendedSquitter>(frame).content));
    EXPECT_TRUE(std::holds_alternative<UnreadSquitter>(replyOf<ExtendedSquitter>(frame, {1}).content));
}

// ICAO Annex 10 Vol. IV, 3.1.2.8.7; RTCA DO-260B, 2.2.3.2.1.5 and 2.2.17.2
TEST(Message, OfFormat18HasTheAddressOfItsControlFieldAndFlag) {
    struct {
        unsigned control;
        SquitterOrigin origin;
        AddressKind plain, flagged;
    } const rows[] = {
        {0, SquitterOrigin::Aircraft, AddressKind::Icao, AddressKind::Icao},
        {1, SquitterOrigin::Aircraft, AddressKind::NonIcao, AddressKind::NonIcao},
        {2, SquitterOrigin::TisB, AddressKind::Icao, AddressKind::TrackFile},
        {5, SquitterOrigin::TisB, AddressKind::TisB, AddressKind::Reserved},
        {6, SquitterOrigin::Rebroadcast, AddressKind::Icao, AddressKind::NonIcao},
    };
    struct {
        Payload me;
        unsigned flag;
    } const messages[] = {{Payload::ofType(0), 8}, {Payload::ofType(5), 21}, {Payload::ofType(8), 21},
        {Payload::ofType(9), 8}, {Payload::ofType(18), 8}, {Payload::ofType(19).with(6, 8, 1), 9},
        {Payload::ofType(20), 8}, {Payload::ofType(22), 8}, {Payload::ofType(28).with(6, 8, 1), 56},
        {Payload::ofType(29).with(6, 7, 1), 51}, {Payload::ofType(31), 56}};
    for (auto const& row : rows) {
        for (auto const& message : messages) {
            auto const plain = replyOf<ExtendedSquitter>(squitter(18, row.control, message.me));
            expectHeader(plain, 18, row.plain, kAddress);
            EXPECT_EQ(plain.origin, row.origin);
            EXPECT_EQ(plain.controlField, row.control);
            EXPECT_FALSE(plain.capability.has_value());
            auto const flagged = replyOf<ExtendedSquitter>(squitter(18, row.control, message.me.with(message.flag)));
            expectHeader(flagged, 18, row.flagged, kAddress);
        }
    }
}

TEST(Message, OfFormat18WithControlField3IsACoarsePosition) {
    auto const me = Payload().with(8, 19, 0xC38);
    auto const plain = replyOf<ExtendedSquitter>(squitter(18, 3, me));
    expectHeader(plain, 18, AddressKind::Icao, kAddress);
    EXPECT_EQ(std::get<CoarsePosition>(plain.content).altitude.altitudeFt, 38000);
    EXPECT_EQ(plain.typeCode, std::nullopt);
    expectHeader(replyOf<ExtendedSquitter>(squitter(18, 3, me.with(1))), 18, AddressKind::TrackFile, kAddress);
}

TEST(Message, OfFormat18WithControlField4Or7IsNotReadFurther) {
    auto const me = Payload::ofType(11);
    auto const management = replyOf<ExtendedSquitter>(squitter(18, 4, me));
    EXPECT_EQ(management.addressKind, AddressKind::None);
    auto const& bytes = std::get<GroundStationManagement>(management.content).me;
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), me.bytes());
    auto const reserved = replyOf<ExtendedSquitter>(squitter(18, 7, me));
    EXPECT_EQ(reserved.addressKind, AddressKind::Reserved);
    EXPECT_TRUE(std::holds_alternative<UnreadSquitter>(reserved.content));
    EXPECT_EQ(reserved.typeCode, std::nullopt);
}

// ICAO Annex 10 Vol. IV, 3.1.2.8.8
TEST(Message, OfFormat19HasItsApplicationAlone) {
    auto const reply = replyOf<MilitarySquitter>(withBits(frameOf(19), 5, 3, 6));
    expectHeader(reply, 19, AddressKind::None, 0);
    EXPECT_EQ(reply.application, 6);
}

// ICAO Annex 10 Vol. IV, 3.1.2.7.3
TEST(Message, OfFormat24BeginsWithTwoBits) {
    for (unsigned format = 24; format < 32; ++format) {
        auto const frame = withBits(withBits(frameOf(format), 3, 1, 1), 4, 4, 9);
        auto const reply =
            replyOf<ExtendedLengthReply>(withRemainder(frame.substr(0, 1) + std::string(13, '\x5A'), kAddress));
        expectHeader(reply, 24, AddressKind::Icao, kAddress);
        EXPECT_TRUE(reply.isAcknowledgement);
        EXPECT_EQ(reply.segment, 9);
        EXPECT_EQ(reply.md.front(), 0x5A);
        EXPECT_EQ(reply.md.back(), 0x5A);
    }
}

TEST(Message, OfOtherFormatsHasAHeaderAlone) {
    for (auto const format : {1U, 2U, 3U, 6U, 7U, 8U, 9U, 10U, 12U, 13U, 14U, 15U, 22U, 23U}) {
        auto const reply = replyOf<OtherReply>(withRemainder(frameOf(format), 7));
        expectHeader(reply, format, AddressKind::None, 0);
        EXPECT_EQ(reply.remainder, 7U);
    }
}

TEST(Message, OfTooFewBytesIsNothing) {
    for (unsigned first = 0; first < 256; ++first) {
        std::size_t const enough = first < 128 ? 7 : 14;
        for (std::size_t size = 0; size < enough; ++size) {
            auto const message = read(std::string(size, static_cast<char>(first)));
            EXPECT_TRUE(std::holds_alternative<std::monostate>(message)) << first << " " << size;
            EXPECT_EQ(headerOf(message), nullptr);
        }
    }
}

TEST(Message, OfMoreBytesIsReadFromTheFirstOfThem) {
    auto const reply = replyOf<AltitudeReply>(fromHex("20001718029FCD") + std::string(20, '\xFF'));
    EXPECT_EQ(reply.altitude.altitudeFt, 36000);
    EXPECT_EQ(reply.remainder, replyOf<AltitudeReply>(fromHex("20001718029FCD")).remainder);
}

TEST(Message, OfAnyBytesHasAHeaderWithItsFormat) {
    constexpr unsigned kSeed = 20261122;
    std::mt19937 random(kSeed);
    for (int i = 0; i < 200'000; ++i) {
        std::string frame(14, '\0');
        for (auto& byte : frame) byte = static_cast<char>(random());
        auto const message = read(frame);
        auto const* const header = headerOf(message);
        ASSERT_NE(header, nullptr);
        auto const first = static_cast<unsigned char>(frame.front()) >> 3;
        ASSERT_EQ(header->format, first < 24 ? first : 24) << "seed " << kSeed;
        ASSERT_LE(header->address, 0xFFFFFFU);
        ASSERT_LE(header->remainder, 0xFFFFFFU);
    }
}

TEST(Message, IsTheSameOfAFrameAndOfTheCoresMessage) {
    auto const bytes = fromHex("20001718029FCD");
    auto const expected = replyOf<AltitudeReply>(bytes);
    EXPECT_EQ(std::get<AltitudeReply>(read(Frame::of(bytes))).remainder, expected.remainder);
    quorvel::modes::DF4Message message;
    message.decode(bytes);
    EXPECT_EQ(std::get<AltitudeReply>(read(message)).remainder, expected.remainder);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(read(Frame::of(fromHex("0AAA")))));
}

TEST(Message, GivesTheRegisterBytesOfCommBRepliesAlone) {
    auto const altitude = read(fromHex("A0001690200414B5D32820A11DB7"));
    EXPECT_EQ(registerBytes(altitude), fromHex("200414B5D32820"));
    auto const identity = read(fromHex("A8001690200414B5D32820A11DB7"));
    EXPECT_EQ(registerBytes(identity), fromHex("200414B5D32820"));
    EXPECT_EQ(registerBytes(read(fromHex("8D4840D6202CC371C32CE0576098"))), "");
    EXPECT_EQ(registerBytes(Message()), "");
}
