// SPDX-License-Identifier: MIT
#include <modes/modes_message.h>

#include <modes/df_message.h>

#include "reference/repair.h"
#include "support/bytes.h"
#include "support/random_bytes.h"
#include "support/steered_clock.h"

#include <gtest/gtest.h>

using namespace quorvel::modes;
using test::fromHex;
using test::withBitsInverted;

namespace {

// A message class as a host may derive it.
class PlainMessage : public ModeSMessage {
public:
    explicit PlainMessage(unsigned char bits, ModeSMsgType type = DOWNLINK) : ModeSMessage(type), _bits(bits) {}
    unsigned char bits() const override { return _bits; }
    std::vector<ModeSMessageField const*> fields() const override { return {}; }
    bool decodeImpl() override { return result; }
    bool result = true;

private:
    unsigned char _bits;
};

auto const kSquitter = fromHex("8D4840D6202CC371C32CE0576098");
constexpr unsigned kSquitterParity = 0x576098;

} // namespace

TEST(ModeSMessage, StartsEmptyWithTheHostsTimeInWholeSeconds) {
    test::SteeredClock clock(1'714'566'896'789);
    PlainMessage const message(56);
    EXPECT_EQ(message.data(), "");
    EXPECT_FALSE(message.valid());
    EXPECT_EQ(message.modeSMsgType(), ModeSMessage::DOWNLINK);
    EXPECT_EQ(message.timeSource(), ModeSMessage::LOCAL);
    EXPECT_EQ(message.timeStamp(), 1'714'566'896'000U);
    EXPECT_EQ(message.signalAmplitude(), 0U);
    EXPECT_EQ(message.confidence(), ModeSMessage::NONE);
    EXPECT_EQ(message.calculatedParity(), 0U);
    EXPECT_EQ(message.calculateParity(), 0U);
    EXPECT_EQ(message.icaoAddress(), 0U);
    EXPECT_EQ(message.dataHexString(), "");
}

TEST(ModeSMessage, NumbersItsEnumerationsAsHostsKnowThem) {
    EXPECT_EQ(ModeSMessage::UPLINK, 0U);
    EXPECT_EQ(ModeSMessage::DOWNLINK, 1U);
    EXPECT_EQ(ModeSMessage::LOCAL, 0U);
    EXPECT_EQ(ModeSMessage::EXTERNAL, 1U);
    EXPECT_EQ(ModeSMessage::NONE, 0U);
    EXPECT_EQ(ModeSMessage::LOW, 1U);
    EXPECT_EQ(ModeSMessage::MEDIUM, 2U);
    EXPECT_EQ(ModeSMessage::HIGH, 3U);
}

TEST(ModeSMessage, DescribesItsDirection) {
    EXPECT_EQ(PlainMessage(56).description(), "Mode-S Downlink Format Message");
    EXPECT_EQ(PlainMessage(56, ModeSMessage::UPLINK).description(), "Mode-S Uplink Format Message");
    EXPECT_EQ(PlainMessage(56).modeSMsgTypeName(), "Downlink");
    EXPECT_EQ(PlainMessage(56, ModeSMessage::UPLINK).modeSMsgTypeName(), "Uplink");
    EXPECT_EQ(PlainMessage(56, static_cast<ModeSMessage::ModeSMsgType>(7)).modeSMsgTypeName(), "Downlink");
}

TEST(ModeSMessage, KeepsWhatItIsGiven) {
    PlainMessage message(56);
    message.setTimeSource(ModeSMessage::EXTERNAL);
    message.setTimeStamp(123'456'789'012);
    message.setSignalAmplitude(200);
    message.setConfidence(ModeSMessage::MEDIUM);
    message.setIcaoAddress(0x4840D6);
    EXPECT_EQ(message.timeSource(), ModeSMessage::EXTERNAL);
    EXPECT_EQ(message.timeStamp(), 123'456'789'012U);
    EXPECT_EQ(message.signalAmplitude(), 200U);
    EXPECT_EQ(message.confidence(), ModeSMessage::MEDIUM);
    EXPECT_EQ(message.icaoAddress(), 0x4840D6U);
}

TEST(ModeSMessage, ShowsAddressAndParityWithTwoToSixDigits) {
    PlainMessage message(112);
    struct {
        unsigned address;
        char const* text;
    } const cases[] = {
        {0, "00"}, {0xA, "0A"}, {0x123, "123"}, {0xABCD, "ABCD"}, {0x4840D6, "4840D6"}, {0x1234567, "123456"}};
    for (auto const& [address, text] : cases) {
        message.setIcaoAddress(address);
        EXPECT_EQ(message.icaoAddressHexString(), text);
    }
    EXPECT_EQ(message.calculatedParityHexString(), "00");
    EXPECT_TRUE(message.decode(kSquitter));
    EXPECT_EQ(message.calculatedParityHexString(), "576098");
    EXPECT_EQ(message.dataHexString(), "8D4840D6202CC371C32CE0576098");
}

TEST(ModeSMessage, DecodesOnlyWhenThereAreEnoughBytes) {
    PlainMessage message(56);
    EXPECT_TRUE(message.decode(fromHex("5D4CA2D46B609F")));
    auto const parity = message.calculatedParity();
    EXPECT_NE(parity, 0U);

    EXPECT_FALSE(message.decode(fromHex("FFFFFFFFFFFF")));
    EXPECT_FALSE(message.valid());
    EXPECT_EQ(message.data(), fromHex("FFFFFFFFFFFF"));
    EXPECT_EQ(message.calculatedParity(), parity) << "no parity is computed of too few bytes";

    EXPECT_TRUE(message.decode(fromHex("5D4CA2D46B609FFF")));
    EXPECT_EQ(message.calculatedParity(), parity) << "bytes after the frame do not count";
    EXPECT_EQ(message.data().size(), 8U);
}

TEST(ModeSMessage, IsAsValidAsItsFields) {
    PlainMessage message(56);
    message.result = false;
    EXPECT_FALSE(message.decode(std::string(7, '\0')));
    EXPECT_FALSE(message.valid());
    message.result = true;
    EXPECT_TRUE(message.decode(std::string(7, '\0')));
    EXPECT_TRUE(message.valid());
}

TEST(ModeSMessage, DecodesBytesGivenByPointerAndSize) {
    PlainMessage message(112);
    EXPECT_TRUE(message.decode(kSquitter.data(), kSquitter.size()));
    EXPECT_EQ(message.data(), kSquitter);
    EXPECT_FALSE(message.decode(nullptr, 0));
}

TEST(ModeSMessage, HasItsLengthInBytes) {
    EXPECT_EQ(PlainMessage(56).size(), 7U);
    EXPECT_EQ(PlainMessage(112).size(), 14U);
    EXPECT_EQ(PlainMessage(0).size(), 0U);
    EXPECT_EQ(PlainMessage(0).calculateParity(kSquitter), 0U);
}

TEST(ModeSMessage, ComputesTheParityOfOtherBytesOfItsLength) {
    EXPECT_EQ(PlainMessage(112).calculateParity(kSquitter), kSquitterParity);
    EXPECT_EQ(PlainMessage(56).calculateParity(fromHex("5D4CA2D46B609F")),
        reference::parityOfFrame(fromHex("5D4CA2D46B609F")));
    EXPECT_EQ(PlainMessage(112).calculateParity(""), 0U);
}

TEST(ModeSMessage, RepairsOneBit) {
    PlainMessage const message(112);
    auto bytes = withBitsInverted(kSquitter, {20});
    unsigned char pos = 99;
    ASSERT_TRUE(message.fixError1Bit(bytes, pos, kSquitterParity));
    EXPECT_EQ(pos, 20U);
    EXPECT_EQ(bytes, kSquitter);
}

TEST(ModeSMessage, RepairsTwoBits) {
    PlainMessage const message(112);
    auto bytes = withBitsInverted(kSquitter, {5, 60});
    auto const damaged = bytes;
    unsigned char first = 99;
    unsigned char second = 98;
    EXPECT_FALSE(message.fixError1Bit(bytes, first, kSquitterParity));
    EXPECT_EQ(bytes, damaged);
    EXPECT_EQ(first, 99U);
    ASSERT_TRUE(message.fixError2Bits(bytes, first, second, kSquitterParity));
    EXPECT_EQ(first, 5U);
    EXPECT_EQ(second, 60U);
    EXPECT_EQ(bytes, kSquitter);
}

TEST(ModeSMessage, LeavesEverythingAsItWasWhenItCannotRepair) {
    PlainMessage const message(112);
    auto bytes = withBitsInverted(kSquitter, {5, 33, 60});
    auto const damaged = bytes;
    unsigned char first = 99;
    unsigned char second = 98;
    EXPECT_FALSE(message.fixError1Bit(bytes, first, 0x1000000));
    EXPECT_FALSE(message.fixError2Bits(bytes, first, second, 0x1000000));
    EXPECT_EQ(bytes, damaged);
    EXPECT_EQ(first, 99U);
    EXPECT_EQ(second, 98U);
}

// Bits of the parity field do not change the parity, so they "repair" a frame that needs no repair.
TEST(ModeSMessage, TriesTheParityFieldToo) {
    PlainMessage const message(112);
    auto bytes = kSquitter;
    unsigned char first = 0;
    unsigned char second = 0;
    ASSERT_TRUE(message.fixError1Bit(bytes, first, kSquitterParity));
    EXPECT_EQ(first, 88U);
    EXPECT_EQ(bytes, withBitsInverted(kSquitter, {88}));

    bytes = kSquitter;
    ASSERT_TRUE(message.fixError2Bits(bytes, first, second, kSquitterParity));
    EXPECT_EQ(first, 88U);
    EXPECT_EQ(second, 89U);

    bytes = withBitsInverted(kSquitter, {7});
    ASSERT_TRUE(message.fixError2Bits(bytes, first, second, kSquitterParity));
    EXPECT_EQ(first, 7U);
    EXPECT_EQ(second, 88U);
}

TEST(ModeSMessage, RepairsShortFramesAndKeepsWhatFollowsThem) {
    auto const frame = test::withParity(fromHex("5D4CA2D4"));
    auto const parity = reference::parityOfFrame(frame);
    PlainMessage const message(56);
    auto bytes = withBitsInverted(frame, {13}) + "tail";
    unsigned char first = 0;
    unsigned char second = 0;
    ASSERT_TRUE(message.fixError1Bit(bytes, first, parity));
    EXPECT_EQ(first, 13U);
    EXPECT_EQ(bytes, frame + "tail");

    bytes = withBitsInverted(frame, {0, 31}) + "tail";
    ASSERT_TRUE(message.fixError2Bits(bytes, first, second, parity));
    EXPECT_EQ(bytes, frame + "tail");
}

TEST(ModeSMessage, RepairsNoFrameThatIsTooShortOrHasNoBits) {
    unsigned char first = 0;
    unsigned char second = 0;
    for (std::size_t size = 0; size < 14; ++size) { // though the damaged bits are there
        for (auto const& damaged : {withBitsInverted(kSquitter, {3}), withBitsInverted(kSquitter, {3, 6})}) {
            auto const before = damaged.substr(0, size);
            auto bytes = before;
            EXPECT_FALSE(PlainMessage(112).fixError1Bit(bytes, first, kSquitterParity)) << size;
            EXPECT_FALSE(PlainMessage(112).fixError2Bits(bytes, first, second, kSquitterParity)) << size;
            EXPECT_FALSE(PlainMessage(0).fixError1Bit(bytes, first, 0)) << size;
            EXPECT_FALSE(PlainMessage(0).fixError2Bits(bytes, first, second, 0)) << size;
            EXPECT_EQ(bytes, before);
        }
    }
}

TEST(ModeSMessage, RepairsAsTheSearchDoesForAnyParity) {
    test::Noise noise(7);
    PlainMessage const message(56);
    for (int i = 0; i < 100; ++i) {
        auto const frame = noise.bytes(7);
        auto const wanted = static_cast<unsigned>(noise.below(0x1000000));
        auto bytes = frame;
        unsigned char first = 0;
        unsigned char second = 0;
        auto const expected = reference::searchPair(frame, wanted);
        ASSERT_EQ(message.fixError2Bits(bytes, first, second, wanted), expected.has_value());
        if (!expected) continue;
        EXPECT_EQ(first, expected->first);
        EXPECT_EQ(second, expected->second);
        EXPECT_EQ(bytes, withBitsInverted(frame, {first, second}));
    }
}
