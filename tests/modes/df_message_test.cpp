// SPDX-License-Identifier: MIT
#include <modes/df_message.h>

#include "support/captured_log.h"
#include "support/frames.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::CapturedLog;
using test::fromHex;
using test::Holds;

namespace {

constexpr unsigned kAddress = 0x4840D6;
std::string const kMessage = fromHex("58C382D690C8AC");

// A format that has no class in the library, as a host may add it.
class AnyDFMessage : public DFMessage {
public:
    using DFMessage::DFMessage;
    unsigned char bits() const override { return 112; }
    std::vector<ModeSMessageField const*> fields() const override { return {}; }
};

class DF24Message : public AnyDFMessage {
public:
    DF24Message() : AnyDFMessage(DF24) {}
};

std::string names(ModeSMessage const& message) {
    std::string text;
    for (auto const* field : message.fields()) text += field->name() + "@" + std::to_string(field->pos()) + " ";
    return text;
}

} // namespace

TEST(DFMessage, NamesEveryFormat) {
    for (unsigned code = 0; code < 256; ++code) {
        auto const format = DFMessage::downlinkFormatByCode(static_cast<unsigned char>(code));
        EXPECT_EQ(format, std::min(code, 24U));
        EXPECT_EQ(AnyDFMessage(format).downlinkFormatName(), "DF-" + std::to_string(std::min(code, 24U)));
    }
    EXPECT_EQ(DFMessage::downlinkFormatByCode(30), DFMessage::DF24);
    EXPECT_EQ(DF0Message().downlinkFormatName(), "DF-0");
    EXPECT_EQ(DF17Message().downlinkFormatName(), "DF-17");
    EXPECT_EQ(DF24Message().downlinkFormatName(), "DF-24");
}

TEST(DFMessage, DescribesItselfByItsFormatUnlessTheClassDoes) {
    EXPECT_EQ(DF24Message().description(), "Mode-S DF-24 Message");
    EXPECT_EQ(DF17Message().DFMessage::description(), "Mode-S DF-17 Message");
}

TEST(DFMessage, AcceptsAllCodesOfFormat24) {
    for (unsigned code = 24; code < 32; ++code) {
        DF24Message message;
        EXPECT_TRUE(message.decode(std::string(1, static_cast<char>(code << 3)) + std::string(13, '\0')));
    }
}

TEST(DFMessage, RejectsFramesOfAnotherFormat) {
    CapturedLog log;
    DF4Message message;
    EXPECT_FALSE(message.decode(test::shortFrame(5, 0, kAddress)));
    EXPECT_FALSE(message.valid());
    EXPECT_THAT(log.take(), Holds(Log::Info, "DFMessage", "DF format mismatch."));
}

TEST(DFMessage, RejectsDecodingWithoutBytes) {
    DF4Message message;
    EXPECT_FALSE(message.decodeImpl());
    class Boundless : public DF24Message {
        unsigned char bits() const override { return 0; }
    } boundless;
    CapturedLog log;
    EXPECT_FALSE(boundless.decode(""));
    EXPECT_THAT(log.take(), Holds(Log::Info, "DFMessage", "DF format mismatch."));
}

TEST(DFMessage, IsADownlinkMessageOfItsLength) {
    EXPECT_EQ(DF0Message().modeSMsgType(), ModeSMessage::DOWNLINK);
    for (unsigned const bits : {DF0Message().bits(), DF4Message().bits(), DF5Message().bits(), DF11Message().bits()}) {
        EXPECT_EQ(bits, 56U);
    }
    for (unsigned const bits : {DF16Message().bits(), DF17Message().bits(), DF18Message().bits(), DF19Message().bits(),
             DF20Message().bits(), DF21Message().bits()}) {
        EXPECT_EQ(bits, 112U);
    }
}

template <class Reply> class EveryReply : public testing::Test {};
using Replies = testing::Types<DF0Message, DF4Message, DF5Message, DF11Message, DF16Message, DF17Message, DF18Message,
    DF19Message, DF20Message, DF21Message>;
TYPED_TEST_SUITE(EveryReply, Replies);

TYPED_TEST(EveryReply, IsInvalidWhenTheFrameIsOfAnotherFormat) {
    for (unsigned code = 0; code < 32; ++code) {
        TypeParam reply;
        if (DFMessage::downlinkFormatByCode(static_cast<unsigned char>(code)) == reply.downlinkFormat()) {
            continue;
        }
        CapturedLog log;
        EXPECT_FALSE(reply.decode(test::longFrame(code, kAddress, kMessage, 0))) << code;
        EXPECT_FALSE(reply.valid()) << code;
        EXPECT_EQ(reply.icaoAddress(), 0U) << code;
        EXPECT_THAT(log.take(), Holds(Log::Info, "DFMessage", "DF format mismatch."));
    }
}

TEST(AddressParityReplies, YieldTheAddressThatHidesInTheirParity) {
    DF0Message df0;
    ASSERT_TRUE(df0.decode(test::shortFrame(0, test::verticalStatus(1) | test::altitudeCode(18800), kAddress)));
    EXPECT_EQ(df0.icaoAddress(), kAddress);
    EXPECT_EQ(df0.constFieldAP().icaoAddress(), kAddress);
    EXPECT_EQ(df0.constFieldAP().parity(), df0.calculatedParity());
    EXPECT_EQ(df0.icaoAddress(), df0.fieldAP().addressParity() ^ df0.calculatedParity());
    EXPECT_EQ(df0.description(), "VS: GND; AC: 18800");
    EXPECT_EQ(names(df0), "VS@5 AC@19 AP@32 ");

    DF4Message df4;
    ASSERT_TRUE(df4.decode(test::shortFrame(4, test::flightStatus(2) | test::altitudeCode(1000), kAddress)));
    EXPECT_EQ(df4.icaoAddress(), kAddress);
    EXPECT_EQ(df4.description(), "FS: AIR, ALERT; AC: 1000");
    EXPECT_EQ(names(df4), "FS@5 AC@19 AP@32 ");

    DF5Message df5;
    ASSERT_TRUE(df5.decode(test::shortFrame(5, test::flightStatus(5) | test::identityCode(07700), kAddress)));
    EXPECT_EQ(df5.icaoAddress(), kAddress);
    EXPECT_EQ(df5.constFieldID().identity(), 07700U);
    EXPECT_EQ(df5.description(), "FS: SPI; ID: 7700");
    EXPECT_EQ(names(df5), "FS@5 ID@19 AP@32 ");

    DF16Message df16;
    ASSERT_TRUE(df16.decode(test::longFrame(16, test::altitudeCode(0), kMessage, kAddress)));
    EXPECT_EQ(df16.icaoAddress(), kAddress);
    EXPECT_EQ(df16.constFieldMV().data(), kMessage);
    EXPECT_EQ(df16.description(), "VS: AIR; AC: 0");
    EXPECT_EQ(names(df16), "VS@5 AC@19 MV@32 AP@88 ");

    DF20Message df20;
    ASSERT_TRUE(df20.decode(test::longFrame(20, test::altitudeCode(35000), kMessage, kAddress)));
    EXPECT_EQ(df20.icaoAddress(), kAddress);
    EXPECT_EQ(df20.constFieldMB().data(), kMessage);
    EXPECT_EQ(df20.description(), "FS: AIR; AC: 35000");
    EXPECT_EQ(names(df20), "FS@5 AC@19 MB@32 AP@88 ");

    DF21Message df21;
    ASSERT_TRUE(df21.decode(test::longFrame(21, test::identityCode(01234), kMessage, kAddress)));
    EXPECT_EQ(df21.icaoAddress(), kAddress);
    EXPECT_EQ(df21.description(), "FS: AIR; ID: 1234");
    EXPECT_EQ(names(df21), "FS@5 ID@19 MB@32 AP@88 ");
}

TEST(AllCallReply, CarriesAddressAndInterrogator) {
    DF11Message reply;
    ASSERT_TRUE(reply.decode(test::shortFrame(11, test::capability(5) | kAddress, 3)));
    EXPECT_EQ(reply.icaoAddress(), kAddress);
    EXPECT_EQ(reply.constFieldCA().capability(), 5U);
    EXPECT_EQ(reply.constFieldPI().interrogatorId(), 3U);
    EXPECT_EQ(reply.constFieldPI().parity(), reply.calculatedParity());
    EXPECT_EQ(names(reply), "CA@5 AA@8 PI@32 ");
    EXPECT_EQ(reply.description(), "CA: 5; AA: 4840D6; PI: " + reply.constFieldPI().description());
}

TEST(AllCallReply, NeverFailsOnItsParity) {
    CapturedLog log;
    DF11Message reply;
    EXPECT_TRUE(reply.decode(test::shortFrame(11, kAddress, 0xABCDEF)));
    EXPECT_EQ(reply.constFieldPI().interrogatorId(), 0xABCDEFU);
    EXPECT_TRUE(log.lines().empty());
}

template <class Reply> class ExtendedSquitter : public testing::Test {};
using Squitters = testing::Types<DF17Message, DF18Message, DF19Message>;
TYPED_TEST_SUITE(ExtendedSquitter, Squitters);

TYPED_TEST(ExtendedSquitter, CarriesItsAddressWhenItsParityIsRight) {
    TypeParam reply;
    auto const frame = test::longFrame(reply.downlinkFormat(), kAddress, kMessage, 0);
    ASSERT_TRUE(reply.decode(frame));
    EXPECT_EQ(reply.icaoAddress(), kAddress);
    EXPECT_EQ(reply.constFieldME().data(), kMessage);
    EXPECT_EQ(reply.constFieldPI().interrogatorId(), 0U);
    EXPECT_EQ(reply.constFieldPI().parity(), reply.calculatedParity());
    auto const first = reply.constFieldAA().valid() ? reply.fields().front()->name() : "";
    EXPECT_EQ(names(reply), first + "@5 AA@8 ME@32 PI@88 ");
    EXPECT_EQ(reply.description(), first + ": 0; AA: 4840D6; ME: 58C382D690C8AC");
}

TYPED_TEST(ExtendedSquitter, IsInvalidWithoutAnAddressWhenItsParityIsWrong) {
    CapturedLog log;
    TypeParam reply;
    auto const good = test::longFrame(reply.downlinkFormat(), kAddress, kMessage, 0);
    EXPECT_FALSE(reply.decode(test::withBitsInverted(good, {40})));
    EXPECT_EQ(reply.icaoAddress(), 0U);
    auto const module = "DF" + std::to_string(reply.downlinkFormat()) + "Message";
    EXPECT_THAT(log.take(), Holds(Log::Info, module, "Parity check failed."));
    // what the repair needs is there
    TypeParam intact;
    ASSERT_TRUE(intact.decode(good));
    EXPECT_EQ(reply.constFieldPI().parity(), intact.calculatedParity());
    EXPECT_EQ(reply.constFieldAA().icaoAddress(), kAddress);
}

TEST(MilitarySquitter, IsValidAndEmptyWhenItIsReserved) {
    for (unsigned code = 1; code < 8; ++code) {
        CapturedLog log;
        DF19Message reply;
        EXPECT_TRUE(reply.decode(test::longFrame(19, code << 24 | kAddress, kMessage, 0)));
        EXPECT_TRUE(reply.valid());
        EXPECT_EQ(reply.icaoAddress(), 0U);
        EXPECT_EQ(names(reply), "AF@5 ");
        EXPECT_EQ(reply.constFieldAF().code(), code);
        EXPECT_THAT(log.take(),
            Holds(Log::Info, "DF19Message", "AF = " + std::to_string(code) + ", reserved for military applications."));
    }
}

TEST(MilitarySquitter, ListsOnlyTheApplicationFieldUntilItIsDecoded) { EXPECT_EQ(names(DF19Message()), "AF@0 "); }

TEST(DFMessage, HandsOutItsFieldsForChangeAndForReading) {
    DF0Message df0;
    EXPECT_EQ(&df0.fieldVS(), &df0.constFieldVS());
    EXPECT_EQ(&df0.fieldAC(), &df0.constFieldAC());
    EXPECT_EQ(&df0.fieldAP(), &df0.constFieldAP());
    DF4Message df4;
    EXPECT_EQ(&df4.fieldFS(), &df4.constFieldFS());
    EXPECT_EQ(&df4.fieldAC(), &df4.constFieldAC());
    EXPECT_EQ(&df4.fieldAP(), &df4.constFieldAP());
    DF5Message df5;
    EXPECT_EQ(&df5.fieldFS(), &df5.constFieldFS());
    EXPECT_EQ(&df5.fieldID(), &df5.constFieldID());
    EXPECT_EQ(&df5.fieldAP(), &df5.constFieldAP());
    DF11Message df11;
    EXPECT_EQ(&df11.fieldCA(), &df11.constFieldCA());
    EXPECT_EQ(&df11.fieldAA(), &df11.constFieldAA());
    EXPECT_EQ(&df11.fieldPI(), &df11.constFieldPI());
    DF16Message df16;
    EXPECT_EQ(&df16.fieldVS(), &df16.constFieldVS());
    EXPECT_EQ(&df16.fieldAC(), &df16.constFieldAC());
    EXPECT_EQ(&df16.fieldMV(), &df16.constFieldMV());
    EXPECT_EQ(&df16.fieldAP(), &df16.constFieldAP());
    DF17Message df17;
    EXPECT_EQ(&df17.fieldCA(), &df17.constFieldCA());
    EXPECT_EQ(&df17.fieldAA(), &df17.constFieldAA());
    EXPECT_EQ(&df17.fieldME(), &df17.constFieldME());
    EXPECT_EQ(&df17.fieldPI(), &df17.constFieldPI());
    DF18Message df18;
    EXPECT_EQ(&df18.fieldCF(), &df18.constFieldCF());
    DF19Message df19;
    EXPECT_EQ(&df19.fieldAF(), &df19.constFieldAF());
    DF20Message df20;
    EXPECT_EQ(&df20.fieldMB(), &df20.constFieldMB());
    EXPECT_EQ(&df20.fieldFS(), &df20.constFieldFS());
    DF21Message df21;
    EXPECT_EQ(&df21.fieldID(), &df21.constFieldID());
    EXPECT_EQ(&df21.fieldMB(), &df21.constFieldMB());
}
